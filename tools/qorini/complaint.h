// How a command ends when it cannot do what it was asked.

#ifndef QORUTILS_TOOLS_QORINI_COMPLAINT_H_
#define QORUTILS_TOOLS_QORINI_COMPLAINT_H_

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace qorini {

enum ExitStatus : int {
    kOk = 0,
    kNotFound = 1,  // for check: something to report
    kUsage = 2,
    kRefused = 3,
};

// what() is the line for the user, without the name of the program.
class Complaint : public std::runtime_error {
  public:
    explicit Complaint(std::string const& words, ExitStatus status = kRefused)
        : std::runtime_error(words), status_(status) {}

    ExitStatus status() const { return status_; }

  private:
    ExitStatus status_;
};

// What the last system call said.
inline Complaint SystemComplaint(std::string const& path) {
    return Complaint(path + ": " + std::strerror(errno));
}

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_COMPLAINT_H_
