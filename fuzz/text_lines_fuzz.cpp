// The input is a file. Its lines are read from the file itself and from a pipe; each line, and the
// position behind it, is compared with the plain reading of one byte after another.

#include <qorutils/formats/text_lines.h>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <string>

#include "require.h"
#include "support/byte_file.h"
#include "support/reference_lines.h"

namespace {

using reference_lines::Line;
using Wide = qor_text::CQorStringT<wchar_t>;

// What a pipe holds without anybody reading.
constexpr std::size_t kLargestFile = 32768;

std::wstring NextLine(int fd) {
    Wide line(L'x', fd % 300);
    qor_formats::ReadLine(fd, line);
    Require(line.c_str()[line.GetLength()] == L'\0');
    return std::wstring(line.begin(), line.end());
}

void ReadFile(std::string const& bytes) {
    static ByteFile file;
    file.Set(bytes);
    std::size_t position = 0;
    for (int atEnd = 0; atEnd < 2; atEnd += position == bytes.size() ? 1 : 0) {
        Line const expected = reference_lines::LineAt(bytes, position);
        Require(expected.text == NextLine(file.descriptor()));
        Require(static_cast<long long>(expected.next) == file.Position());
        position = expected.next;
    }
}

void ReadPipe(std::string const& bytes) {
    BytePipe pipe(bytes);
    pipe.CloseWriting();
    for (std::wstring const& line : reference_lines::LinesOf(bytes, false))
        Require(line == NextLine(pipe.descriptor()));
    Require(NextLine(pipe.descriptor()).empty());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::setlocale(LC_ALL, "C.UTF-8");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size > kLargestFile) return 0;
    std::string const bytes(reinterpret_cast<char const*>(input), size);
    ReadFile(bytes);
    ReadPipe(bytes);
    return 0;
}
