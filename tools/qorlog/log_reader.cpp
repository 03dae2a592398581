#include "log_reader.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "log_form.h"
#include "signals.h"

namespace qorlog {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;
// The mark and one character.
constexpr std::size_t kFewestBytes = 6;

// Opening a pipe waits for its writer.
int Open(std::string const& path) {
    int const file = path == "-" ? STDIN_FILENO : open64(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file == -1 && errno == EINTR) throw Interrupted();
    if (file == -1) throw LogError(std::strerror(errno));
    return file;
}

// Whoever shares the standard input may have made it one that does not block.
ssize_t ReadOrWait(int file, char* to, std::size_t size) {
    for (;;) {
        ssize_t const length = read(file, to, size);
        if (length != -1 || errno != EAGAIN) return length;
        pollfd input = {file, POLLIN, 0};
        poll(&input, 1, -1);
    }
}

}  // namespace

LogReader::LogReader(std::string const& path)
    : path_(path), file_(Open(path)), block_(kBlockSize) {}

LogReader::~LogReader() {
    if (file_ != STDIN_FILENO) close(file_);
}

bool LogReader::Read(TextBuffer* text) {
    bool const isMore = Fill();
    if (!hasBegun_) {
        if (filled_ < (isMore ? kTellingBytes : kFewestBytes)) return isMore;
        Begin();
    }
    Decode(false, text);
    return isMore;
}

bool LogReader::HasMoreNow() const {
    pollfd file = {file_, POLLIN, 0};
    return poll(&file, 1, 0) == 1;
}

void LogReader::Finish(TextBuffer* text) {
    if (!hasBegun_) Begin();
    if (position_ <= 2) throw LogError("the log ends before its first line");
    Decode(true, text);
}

bool LogReader::IsReplaced() const {
    struct stat64 named;
    struct stat64 open;
    if (path_ == "-" || stat64(path_.c_str(), &named) != 0 || fstat64(file_, &open) != 0)
        return false;
    return named.st_dev != open.st_dev || named.st_ino != open.st_ino ||
           (S_ISREG(open.st_mode) && open.st_size < position_);
}

bool LogReader::Fill() {
    ssize_t const length = ReadOrWait(file_, block_.data() + filled_, block_.size() - filled_);
    if (length == -1 && errno != EINTR) throw LogError(std::strerror(errno));
    if (length <= 0) return false;
    filled_ += static_cast<std::size_t>(length);
    position_ += length;
    return true;
}

void LogReader::Begin() {
    LogForm const form = FormOf(block_.data(), filled_);
    if (form.refusal != nullptr) throw LogError(form.refusal);
    lacksMark_ = form.markLength == 0;
    filled_ -= form.markLength;
    std::memmove(block_.data(), block_.data() + form.markLength, filled_);
    hasBegun_ = true;
}

void LogReader::Decode(bool areLast, TextBuffer* text) {
    std::size_t const done = decoder_.Decode(block_.data(), filled_, areLast, text);
    filled_ -= done;
    std::memmove(block_.data(), block_.data() + done, filled_);
}

}  // namespace qorlog
