// Private: a whole file in memory, for reading.

#ifndef QORUTILS_FS_MAPPED_FILE_H_
#define QORUTILS_FS_MAPPED_FILE_H_

#include <sys/mman.h>

#include <cstddef>

#include "qorutils/fs/system_calls.h"

namespace base {

// data() is null unless there is a file of 1 to 2147483647 bytes that may be read and written.
// On purpose: the descriptor stays open when the file has another size.
class MappedFile {
  public:
    explicit MappedFile(char const* name) : file_(OpenFile(name, O_RDWR)) {
        struct stat64 status;
        if (file_ == -1 || Stat32(file_, &status) != 0) return;
        auto const size = static_cast<std::size_t>(status.st_size);
        void* const view = mmap(nullptr, size, PROT_READ, MAP_SHARED, file_, 0);
        if (view == MAP_FAILED) return;
        data_ = view;
        size_ = size;
    }

    // On purpose: an interrupted close is repeated.
    ~MappedFile() {
        if (data_ == nullptr) return;
        munmap(data_, size_);
        RetryOnEintr([this] { return close(file_); });
    }

    MappedFile(MappedFile const&) = delete;
    MappedFile& operator=(MappedFile const&) = delete;

    void* data() const { return data_; }
    std::size_t size() const { return size_; }

  private:
    int file_;
    void* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace base

#endif  // QORUTILS_FS_MAPPED_FILE_H_
