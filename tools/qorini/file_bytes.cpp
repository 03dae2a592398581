#include "file_bytes.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "complaint.h"

namespace qorini {

namespace {

// There is one in a folder at a time: who writes it holds the folder's lock. One that is found was
// left by a process that was killed.
constexpr char kNewName[] = ".qorini.new";

struct stat64 StatusOf(int file, std::string const& path) {
    struct stat64 status;
    if (fstat64(file, &status) != 0) throw SystemComplaint(path);
    if (S_ISDIR(status.st_mode)) errno = EISDIR;
    if (S_ISDIR(status.st_mode)) throw SystemComplaint(path);
    if (!S_ISREG(status.st_mode)) throw Complaint(path + ": not a regular file");
    if (status.st_size > INT_MAX) throw Complaint(path + ": 2 GiB or more");
    return status;
}

std::string ReadAll(int file, std::string const& path) {
    std::string bytes(static_cast<std::size_t>(StatusOf(file, path).st_size), '\0');
    std::size_t size = 0;
    while (size < bytes.size()) {
        ssize_t const n = read(file, &bytes[size], bytes.size() - size);
        if (n == -1 && errno == EINTR) continue;
        if (n == -1) throw SystemComplaint(path);
        if (n == 0) throw Complaint(path + ": was cut short while it was read");
        size += static_cast<std::size_t>(n);
    }
    return bytes;
}

// Those that a user sends wait until the object goes: the new file is then in place, or removed.
class HeldSignals {
  public:
    HeldSignals() {
        sigset_t held;
        sigemptyset(&held);
        for (int const number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&held, number);
        sigprocmask(SIG_BLOCK, &held, &before_);
    }
    ~HeldSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals(HeldSignals const&) = delete;
    HeldSignals& operator=(HeldSignals const&) = delete;

  private:
    sigset_t before_;
};

int OpenNewFile(int folder, std::string const& path, mode_t mode) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    unlinkat(folder, kNewName, 0);
    int const file = openat64(folder, kNewName, kFlags, mode);
    if (file == -1) throw SystemComplaint(path + ": " + kNewName + " beside it");
    return file;
}

// Gone with the object unless it took the place of another.
class NewFile {
  public:
    NewFile(int folder, std::string const& path, mode_t mode)
        : folder_(folder), path_(path), file_(OpenNewFile(folder, path, mode)) {}
    ~NewFile() {
        if (!isInPlace_) unlinkat(folder_, kNewName, 0);
    }
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    int file() const { return file_.get(); }

    void Write(std::string const& bytes) const { WriteAll(file(), bytes, path_); }

    void Sync() const {
        if (fsync(file()) != 0) throw SystemComplaint(path_);
    }

    // The mode last: a change of the owner takes bits from it. Those that lend an owner's or a
    // group's rights are not for another's.
    void TakeOwnerAndMode(struct stat64 const& old) const {
        mode_t mode = old.st_mode & 07777;
        struct stat64 const fresh = StatusOf(file(), path_);
        bool const isOthers = fresh.st_uid != old.st_uid || fresh.st_gid != old.st_gid;
        if (isOthers && fchown(file(), old.st_uid, old.st_gid) != 0) {
            mode &= 0777;
            if (fchown(file(), static_cast<uid_t>(-1), old.st_gid) != 0) mode = WithoutGroup(mode);
        }
        if (fchmod(file(), mode) != 0) throw SystemComplaint(path_);
    }

    void TakePlaceOf(std::string const& name) {
        if (renameat(folder_, kNewName, folder_, name.c_str()) != 0) throw SystemComplaint(path_);
        isInPlace_ = true;
    }

  private:
    // Who was of the group is one of the others then, and the other way round: both may do what
    // both could do before.
    static mode_t WithoutGroup(mode_t mode) {
        mode_t const common = (mode >> 3) & mode & 07;
        return (mode & 0700) | common << 3 | common;
    }

    int folder_;
    std::string path_;
    Descriptor const file_;
    bool isInPlace_ = false;
};

std::string RealPath(std::string const& path) {
    std::unique_ptr<char, void (*)(void*)> const real(realpath(path.c_str(), nullptr), std::free);
    return real == nullptr ? std::string() : real.get();
}

std::string FolderOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Not by whether there is something: that may be a file that another process has just made.
bool IsLink(std::string const& path) {
    char target;
    return readlink(path.c_str(), &target, 1) != -1;
}

// The path of the file itself, which may be missing. It ends in a name, in "." for the root folder.
std::string Resolved(std::string const& path) {
    std::string const real = RealPath(path);
    if (!real.empty()) return real == "/" ? "/." : real;
    if (errno != ENOENT || path.empty() || path.back() == '/') throw SystemComplaint(path);
    if (IsLink(path)) throw Complaint(path + ": a symbolic link that leads nowhere");
    std::string const folder = RealPath(FolderOf(path));
    if (folder.empty()) throw SystemComplaint(path);
    return folder + "/" + path.substr(path.rfind('/') + 1);
}

int OpenFolder(std::string const& folder, std::string const& path) {
    int const file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file == -1) throw SystemComplaint(path + ": its folder");
    return file;
}

}  // namespace

Descriptor::~Descriptor() {
    if (file_ != -1) close(file_);
}

std::string ReadFile(std::string const& path) {
    // Without waiting for somebody to write into a FIFO.
    Descriptor const file(open64(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() == -1) throw SystemComplaint(path);
    return ReadAll(file.get(), path);
}

void WriteAll(int file, std::string const& bytes, std::string const& path) {
    for (std::size_t size = 0; size < bytes.size();) {
        ssize_t const n = write(file, bytes.data() + size, bytes.size() - size);
        if (n == -1 && errno == EINTR) continue;
        if (n <= 0) throw SystemComplaint(path);
        size += static_cast<std::size_t>(n);
    }
}

mode_t PermissionsOf(std::string const& path) {
    struct stat64 status;
    if (stat64(path.c_str(), &status) != 0) throw SystemComplaint(path);
    return status.st_mode & 0777;
}

TargetFile::TargetFile(std::string const& path, mode_t newMode)
    : path_(path),
      realPath_(Resolved(path)),
      name_(realPath_.substr(realPath_.rfind('/') + 1)),
      folder_(OpenFolder(FolderOf(realPath_), path)),
      newMode_(newMode) {
    if (name_ == kNewName)
        throw Complaint(path + ": the name is kept for new files that are being written");
    int result = 0;
    do result = flock(folder_.get(), LOCK_EX);
    while (result == -1 && errno == EINTR);
    if (result == -1) throw SystemComplaint(path + ": its folder cannot be locked");
    exists_ = Read(&bytes_, &status_);
}

bool TargetFile::Read(std::string* bytes, struct stat64* status) const {
    constexpr int kFlags = O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
    Descriptor const file(openat64(folder_.get(), name_.c_str(), kFlags));
    if (file.get() == -1 && errno == ENOENT) return false;
    if (file.get() == -1) throw SystemComplaint(path_);
    *status = StatusOf(file.get(), path_);
    *bytes = ReadAll(file.get(), path_);
    return true;
}

// The lock is kept by this program alone.
void TargetFile::RefuseIfChanged() const {
    std::string bytes;
    struct stat64 status {};
    if (Read(&bytes, &status) != exists_ || bytes != bytes_)
        throw Complaint(path_ + ": another program has changed it meanwhile");
}

void TargetFile::Replace(std::string const& bytes, std::function<void(int file)> const& verify) {
    if (exists_ && bytes == bytes_) return;
    if (exists_ && status_.st_nlink > 1)
        throw Complaint(path_ + ": has another name, a hard link, that would keep the old content");
    HeldSignals const held;
    NewFile fresh(folder_.get(), path_, exists_ ? 0600 : newMode_);
    fresh.Write(bytes);
    if (exists_) fresh.TakeOwnerAndMode(status_);
    fresh.Sync();
    verify(fresh.file());
    RefuseIfChanged();
    fresh.TakePlaceOf(name_);
    if (fsync(folder_.get()) != 0) throw SystemComplaint(path_ + ": is changed, but not synced");
}

}  // namespace qorini
