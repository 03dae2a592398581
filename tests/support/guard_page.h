// Arrays that end where the accessible memory ends: reading or writing past them faults.
#ifndef QORUTILS_TESTS_SUPPORT_GUARD_PAGE_H_
#define QORUTILS_TESTS_SUPPORT_GUARD_PAGE_H_

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

// n elements, the last of which ends exactly at an inaccessible page. They are zero unless they
// are copied from `source`. With n = 0, data() itself may not be read.
template <typename T>
class GuardedArray {
    static_assert(std::is_trivially_copyable<T>::value, "the elements are copied as bytes");

  public:
    explicit GuardedArray(std::size_t n) : size_(n) {
        std::size_t const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        std::size_t const accessible = (n * sizeof(T) + page - 1) / page * page;
        mapped_ = accessible + page;
        void* const base =
            mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (base == MAP_FAILED) throw std::bad_alloc();
        base_ = static_cast<char*>(base);
        if (mprotect(base_ + accessible, page, PROT_NONE) != 0) {
            munmap(base_, mapped_);
            throw std::bad_alloc();
        }
        data_ = static_cast<T*>(static_cast<void*>(base_ + accessible - n * sizeof(T)));
    }
    GuardedArray(T const* source, std::size_t n) : GuardedArray(n) {
        if (n != 0) std::memcpy(data_, source, n * sizeof(T));
    }
    ~GuardedArray() { munmap(base_, mapped_); }
    GuardedArray(GuardedArray const&) = delete;
    GuardedArray& operator=(GuardedArray const&) = delete;

    T* data() { return data_; }
    T const* data() const { return data_; }
    std::size_t size() const { return size_; }

  private:
    char* base_;
    std::size_t mapped_;
    T* data_;
    std::size_t size_;
};

#endif  // QORUTILS_TESTS_SUPPORT_GUARD_PAGE_H_
