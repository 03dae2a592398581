#include "output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include <boost/utility/string_ref.hpp>

#include "signals.h"

namespace qorlog {

namespace {

constexpr std::size_t kMuch = std::size_t{64} * 1024;

// How much of the text was taken.
std::size_t Write(boost::string_ref text) {
    ssize_t const written = write(STDOUT_FILENO, text.data(), text.size());
    if (written >= 0) return static_cast<std::size_t>(written);
    if (errno == EPIPE) throw ReaderGone();
    if (errno == EAGAIN) {
        pollfd output = {STDOUT_FILENO, POLLOUT, 0};
        poll(&output, 1, -1);
    } else if (errno != EINTR) {
        throw OutputError(std::strerror(errno));
    }
    if (StopSignal() != 0) throw Interrupted();
    return 0;
}

}  // namespace

void Output::Flush() {
    boost::string_ref rest = pending_;
    while (!rest.empty()) rest.remove_prefix(Write(rest));
    pending_.clear();
}

void Output::FlushIfMuch() {
    if (pending_.size() >= kMuch) Flush();
}

// Nothing is asked for, so that only an error or a hang-up is told: the other end is closed.
void Output::Wait(int milliseconds) const {
    pollfd output = {STDOUT_FILENO, 0, 0};
    if (poll(&output, 1, milliseconds) == 1 && output.revents != 0) throw ReaderGone();
}

}  // namespace qorlog
