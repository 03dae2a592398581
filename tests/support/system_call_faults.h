// System calls that fail on demand.
//
// A program that links system_call_faults.cpp stands before the C library: what the library under
// test and the libraries that it uses ask of the system goes through there first.
#ifndef QORUTILS_TESTS_SUPPORT_SYSTEM_CALL_FAULTS_H_
#define QORUTILS_TESTS_SUPPORT_SYSTEM_CALL_FAULTS_H_

#include <cstddef>
#include <limits>

// Calls with and without 64 in their name count as one.
enum class SystemCall {
    kClose,
    kDup,
    kFsync,
    kFtruncate,
    kFutimens,
    kLseek,
    kMmap,
    kMunmap,
    kOpen,  // creat and mkstemp, too
    kOpendir,
    kPread,
    kRead,
    kReaddir,
    kStat,  // fstat, lstat, fstatat and statx, too
    kUnlink,
    kWrite,
    kCount
};

// While it lives, a run of the calls of one kind fails. One fault a kind at a time.
class SystemCallFault {
  public:
    static int constexpr kAlways = std::numeric_limits<int>::max();

    // The first `skipped` calls succeed, the next `times` set errno to `error` and fail as the call
    // does; later ones succeed. A failing close closes its descriptor, as the real one does.
    SystemCallFault(SystemCall call, int error, int times = kAlways, int skipped = 0);
    ~SystemCallFault();
    SystemCallFault(SystemCallFault const&) = delete;
    SystemCallFault& operator=(SystemCallFault const&) = delete;

    // Calls of this kind since construction, failed or not.
    int Calls() const;

  private:
    SystemCall call_;
};

// While it lives, reads and writes move at most `size` bytes a call; 0 stands for the end of a file
// and for a device that takes nothing.
class ShortTransfers {
  public:
    explicit ShortTransfers(std::size_t size);
    ~ShortTransfers();
    ShortTransfers(ShortTransfers const&) = delete;
    ShortTransfers& operator=(ShortTransfers const&) = delete;
};

#endif  // QORUTILS_TESTS_SUPPORT_SYSTEM_CALL_FAULTS_H_
