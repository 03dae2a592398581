// What the tests of platform files share.
#ifndef QORUTILS_TESTS_SUPPORT_PLATFORM_FILE_FIXTURE_H_
#define QORUTILS_TESTS_SUPPORT_PLATFORM_FILE_FIXTURE_H_

#include <qorutils/fs/platform_file.h>

#include <unistd.h>

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/temporary_directory.h"

// What a creating call gave; closes the descriptor.
class Opened {
  public:
    using Create = int (*)(qor_text::CQorStringT<wchar_t> const&, int, bool*,
                           base::PlatformFileError*);

    Opened(std::wstring const& path, int flags, Create create = base::CreatePlatformFile) {
        errno = 0;
        file_ = create(path.c_str(), flags, &created, &error);
        errnoAfter = errno;
    }
    Opened(Opened const&) = delete;
    Opened& operator=(Opened const&) = delete;
    ~Opened() {
        if (file_ != -1) close(file_);
    }

    operator int() const { return file_; }

    bool created = true;
    base::PlatformFileError error = base::kFileErrorInUse;
    int errnoAfter = 0;

  private:
    int file_;
};

// A directory with a file "old" that holds "0123456789".
class PlatformFile : public testing::Test {
  protected:
    PlatformFile() { directory_.MakeFile("old", "0123456789"); }

    std::wstring Path(std::string const& name) const { return directory_.WidePath(name); }

    TemporaryDirectory directory_;
};

// The first bytes of the file, at most `size`, read into memory that ends at a guard page.
inline std::string Read(int file, unsigned int size) {
    GuardedArray<char> bytes(size);
    int const n = base::ReadPlatformFile(file, bytes.data(), size);
    return n < 0 ? "failed" : std::string(bytes.data(), static_cast<std::size_t>(n));
}

#endif  // QORUTILS_TESTS_SUPPORT_PLATFORM_FILE_FIXTURE_H_
