#include "support/system_call_faults.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>

#include "support/next_in_line.h"

namespace {

struct Plan {
    int error = 0;
    int firstFailing = 0;
    int failing = 0;
    int calls = 0;
};

Plan plans[static_cast<int>(SystemCall::kCount)];
std::size_t longestTransfer = std::numeric_limits<std::size_t>::max();

Plan& PlanOf(SystemCall call) {
    return plans[static_cast<int>(call)];
}

bool Fails(SystemCall call) {
    Plan& plan = PlanOf(call);
    int const number = plan.calls++;
    if (number < plan.firstFailing || number - plan.firstFailing >= plan.failing) return false;
    errno = plan.error;
    return true;
}

}  // namespace

SystemCallFault::SystemCallFault(SystemCall call, int error, int times, int skipped) : call_(call) {
    PlanOf(call).error = error;
    PlanOf(call).firstFailing = skipped;
    PlanOf(call).failing = times;
    PlanOf(call).calls = 0;
}

SystemCallFault::~SystemCallFault() {
    PlanOf(call_) = Plan();
}

int SystemCallFault::Calls() const {
    return PlanOf(call_).calls;
}

ShortTransfers::ShortTransfers(std::size_t size) {
    longestTransfer = size;
}

ShortTransfers::~ShortTransfers() {
    longestTransfer = std::numeric_limits<std::size_t>::max();
}

// The C library's own function behind the one that stands before it here.
#define NEXT(function) \
    static auto const next = NextInLine(static_cast<decltype(&function)>(nullptr), #function)

extern "C" {

int close(int file) {
    NEXT(close);
    int const result = next(file);
    return Fails(SystemCall::kClose) ? -1 : result;
}

int dup(int file) noexcept {
    NEXT(dup);
    return Fails(SystemCall::kDup) ? -1 : next(file);
}

int fsync(int file) {
    NEXT(fsync);
    return Fails(SystemCall::kFsync) ? -1 : next(file);
}

int ftruncate64(int file, off64_t length) noexcept {
    NEXT(ftruncate64);
    return Fails(SystemCall::kFtruncate) ? -1 : next(file, length);
}

int futimens(int file, timespec const times[2]) noexcept {
    NEXT(futimens);
    return Fails(SystemCall::kFutimens) ? -1 : next(file, times);
}

off64_t lseek64(int file, off64_t offset, int whence) noexcept {
    NEXT(lseek64);
    return Fails(SystemCall::kLseek) ? -1 : next(file, offset, whence);
}

void* mmap(void* address, std::size_t size, int access, int flags, int file,
           off_t offset) noexcept {
    NEXT(mmap);
    // Anonymous memory is the heap's, and no business of a file's.
    if (file != -1 && Fails(SystemCall::kMmap)) return MAP_FAILED;
    return next(address, size, access, flags, file, offset);
}

void* mmap64(void* address, std::size_t size, int access, int flags, int file,
             off64_t offset) noexcept {
    NEXT(mmap64);
    if (file != -1 && Fails(SystemCall::kMmap)) return MAP_FAILED;
    return next(address, size, access, flags, file, offset);
}

int open(char const* name, int flags, ...) {
    NEXT(open);
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Fails(SystemCall::kOpen) ? -1 : next(name, flags, mode);
}

int open64(char const* name, int flags, ...) {
    NEXT(open64);
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Fails(SystemCall::kOpen) ? -1 : next(name, flags, mode);
}

int creat(char const* name, mode_t mode) {
    NEXT(creat);
    return Fails(SystemCall::kOpen) ? -1 : next(name, mode);
}

int creat64(char const* name, mode_t mode) {
    NEXT(creat64);
    return Fails(SystemCall::kOpen) ? -1 : next(name, mode);
}

int mkstemp(char* name) {
    NEXT(mkstemp);
    return Fails(SystemCall::kOpen) ? -1 : next(name);
}

int mkstemp64(char* name) {
    NEXT(mkstemp64);
    return Fails(SystemCall::kOpen) ? -1 : next(name);
}

DIR* opendir(char const* name) {
    NEXT(opendir);
    return Fails(SystemCall::kOpendir) ? nullptr : next(name);
}

ssize_t pread(int file, void* data, std::size_t size, off_t offset) {
    NEXT(pread);
    return Fails(SystemCall::kPread) ? -1
                                     : next(file, data, std::min(size, longestTransfer), offset);
}

ssize_t pread64(int file, void* data, std::size_t size, off64_t offset) {
    NEXT(pread64);
    return Fails(SystemCall::kPread) ? -1
                                     : next(file, data, std::min(size, longestTransfer), offset);
}

ssize_t read(int file, void* data, std::size_t size) {
    NEXT(read);
    return Fails(SystemCall::kRead) ? -1 : next(file, data, std::min(size, longestTransfer));
}

dirent64* readdir64(DIR* directory) {
    NEXT(readdir64);
    return Fails(SystemCall::kReaddir) ? nullptr : next(directory);
}

int stat64(char const* name, struct stat64* status) noexcept {
    NEXT(stat64);
    return Fails(SystemCall::kStat) ? -1 : next(name, status);
}

int lstat64(char const* name, struct stat64* status) noexcept {
    NEXT(lstat64);
    return Fails(SystemCall::kStat) ? -1 : next(name, status);
}

int fstat64(int file, struct stat64* status) noexcept {
    NEXT(fstat64);
    return Fails(SystemCall::kStat) ? -1 : next(file, status);
}

int fstatat64(int directory, char const* name, struct stat64* status, int flags) noexcept {
    NEXT(fstatat64);
    return Fails(SystemCall::kStat) ? -1 : next(directory, name, status, flags);
}

int statx(int directory, char const* name, int flags, unsigned int mask,
          struct statx* status) noexcept {
    NEXT(statx);
    return Fails(SystemCall::kStat) ? -1 : next(directory, name, flags, mask, status);
}

int munmap(void* address, std::size_t size) noexcept {
    NEXT(munmap);
    return Fails(SystemCall::kMunmap) ? -1 : next(address, size);
}

int unlink(char const* name) noexcept {
    NEXT(unlink);
    return Fails(SystemCall::kUnlink) ? -1 : next(name);
}

ssize_t write(int file, void const* data, std::size_t size) {
    NEXT(write);
    return Fails(SystemCall::kWrite) ? -1 : next(file, data, std::min(size, longestTransfer));
}

}  // extern "C"
