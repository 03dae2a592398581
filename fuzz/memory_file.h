// A file that lies in memory alone: on a disk, emptying and filling it again and again takes long.

#ifndef QORUTILS_FUZZ_MEMORY_FILE_H_
#define QORUTILS_FUZZ_MEMORY_FILE_H_

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

class MemoryFile {
  public:
    MemoryFile() : file_(memfd_create("fuzz", 0)) {
        if (file_ == -1) std::abort();
    }
    ~MemoryFile() { close(file_); }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;

    // Under this name it can be opened.
    std::wstring Path() const { return L"/proc/self/fd/" + std::to_wstring(file_); }

    void Set(std::string const& content) {
        auto const size = static_cast<ssize_t>(content.size());
        if (ftruncate(file_, 0) != 0 || pwrite(file_, content.data(), content.size(), 0) != size)
            std::abort();
    }

    std::string Content() const {
        std::string content(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
        auto const size = static_cast<ssize_t>(content.size());
        if (pread(file_, &content[0], content.size(), 0) != size) std::abort();
        return content;
    }

  private:
    int file_;
};

#endif  // QORUTILS_FUZZ_MEMORY_FILE_H_
