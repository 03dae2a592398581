// Files as wholes: read, written, and replaced in one step.

#ifndef QORUTILS_TOOLS_QORINI_FILE_BYTES_H_
#define QORUTILS_TOOLS_QORINI_FILE_BYTES_H_

#include <sys/stat.h>

#include <functional>
#include <string>

namespace qorini {

// A descriptor that is closed with the object.
class Descriptor {
  public:
    explicit Descriptor(int file) : file_(file) {}
    ~Descriptor();
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    int get() const { return file_; }

  private:
    int file_;
};

// What all functions here cannot do, they say in a Complaint that names the file.

// Of a regular file of less than 2 GiB, as the settings store reads no other. It may be a link.
std::string ReadFile(std::string const& path);

// To a descriptor; `path` is for the Complaint.
void WriteAll(int file, std::string const& bytes, std::string const& path);

// Who may read, write and execute it.
mode_t PermissionsOf(std::string const& path);

// A file that is to be replaced, or made. While the object lives, other such objects for files of
// the same folder wait, in other processes too: the folder is locked by flock.
class TargetFile {
  public:
    // A link stands for the file it leads to. What the process's mask leaves of `newMode` is for a
    // file that is made.
    explicit TargetFile(std::string const& path, mode_t newMode = 0666);

    // Whether there was a file, and what it held; the user must be allowed to write it.
    bool exists() const { return exists_; }
    std::string const& bytes() const { return bytes_; }

    // Nothing happens to a file that holds these bytes already. Else the new file is written beside
    // the old one, synced, and shown to `verify` by a descriptor; unless that throws, or the old
    // one has changed meanwhile, it takes the old one's place. It has its mode, and its owner and
    // group as far as the system allows that.
    void Replace(std::string const& bytes, std::function<void(int file)> const& verify);

  private:
    bool Read(std::string* bytes, struct stat64* status) const;
    void RefuseIfChanged() const;

    std::string const path_;  // as the user named it
    std::string const realPath_;
    std::string const name_;
    Descriptor const folder_;
    std::string bytes_;
    mode_t const newMode_;
    struct stat64 status_ {};
    bool exists_ = false;
};

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_FILE_BYTES_H_
