// The first byte of an input chooses the locale, the rest is a settings file. It is read from the
// memory that the system maps it to, and from memory that ends, like the file, at an inaccessible
// page; both results are compared with the rules of the format.

#include <qorutils/fs/qor_ini_file.h>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <string>

#include "memory_file.h"
#include "require.h"
#include "silent_log.h"
#include "support/guard_page.h"
#include "support/reference_ini.h"

namespace {

using qor::text_utils::EQorTextEncoding;
using reference_ini::Settings;

constexpr std::size_t kLargestFile = 16384;
constexpr auto kNoEncoding = static_cast<EQorTextEncoding>(77);

// ---- Memory instead of a mapping ----

bool isGuarded = false;
void* guardedView = nullptr;

void* PlaceAtEnd(int file, std::size_t size) {
    static GuardedArray<char> memory(kLargestFile);
    guardedView = memory.data() + kLargestFile - size;
    Require(pread(file, guardedView, size, 0) == static_cast<ssize_t>(size));
    return guardedView;
}

}  // namespace

// These stand before the C library's.
extern "C" void* mmap(void* address, std::size_t size, int protection, int flags, int file,
                      off_t offset) noexcept {
    if (isGuarded && file != -1) return PlaceAtEnd(file, size);
    long const result = syscall(SYS_mmap, address, size, protection, flags, file, offset);
    return reinterpret_cast<void*>(result);
}

extern "C" int munmap(void* address, std::size_t size) noexcept {
    if (address != guardedView) return static_cast<int>(syscall(SYS_munmap, address, size));
    guardedView = nullptr;
    return 0;
}

namespace {

// ---- Reading ----

struct Expected {
    bool isGood;
    EQorTextEncoding encoding;
    Settings settings;
};

Expected ExpectedOf(std::string bytes) {
    unsigned int markLength = 0;
    Expected expected;
    expected.encoding = static_cast<EQorTextEncoding>(qor::text_utils::detect_text_encoding(
        &bytes[0], static_cast<unsigned int>(bytes.size()), &markLength));
    bool const isWide = expected.encoding == qor::text_utils::eTextEncodingUtf16LE;
    expected.isGood = reference_ini::Parse(bytes.substr(markLength), isWide, expected.settings);
    return expected;
}

void RequireRead(Expected const& expected, MemoryFile const& file) {
    qor_settings::CThreeTupleStore store;
    store[L"Old"].values[L"k"] = L"before";
    auto encoding = kNoEncoding;
    bool const isGood = qor_settings::readSettingsAsIni(file.Path().c_str(), store, encoding);
    Require(expected.isGood == isGood);
    Require(encoding == (isGood ? expected.encoding : kNoEncoding));
    Require(reference_ini::IsSame(expected.settings, store));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    SilenceLog();
    return 0;
}

// An empty file would keep its descriptor open.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size < 2 || size > kLargestFile) return 0;
    std::setlocale(LC_ALL, (input[0] & 1) != 0 ? "C.UTF-8" : "C");
    std::string const bytes(reinterpret_cast<char const*>(input) + 1, size - 1);
    Expected const expected = ExpectedOf(bytes);

    static MemoryFile file;
    file.Set(bytes);
    RequireRead(expected, file);
    isGuarded = true;
    RequireRead(expected, file);
    isGuarded = false;
    Require(guardedView == nullptr);
    return 0;
}
