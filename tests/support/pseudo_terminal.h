// A real terminal of the kernel's, as standard output.
#ifndef QORUTILS_TESTS_SUPPORT_PSEUDO_TERMINAL_H_
#define QORUTILS_TESTS_SUPPORT_PSEUDO_TERMINAL_H_

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>

// While the object lives, standard output is a terminal that passes on every byte as it is. Not for
// tests that run threads; what a test says about itself meanwhile is taken for output.
class TerminalOutput {
  public:
    TerminalOutput() {
        std::fflush(stdout);
        keyboard_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (keyboard_ == -1 || grantpt(keyboard_) != 0 || unlockpt(keyboard_) != 0)
            throw std::runtime_error("no pseudo terminal");
        int const screen = open(ptsname(keyboard_), O_RDWR | O_NOCTTY | O_CLOEXEC);
        termios mode;
        if (screen == -1 || tcgetattr(screen, &mode) != 0)
            throw std::runtime_error("no pseudo terminal");
        cfmakeraw(&mode);
        tcsetattr(screen, TCSANOW, &mode);
        output_ = dup(STDOUT_FILENO);
        dup2(screen, STDOUT_FILENO);
        close(screen);
    }
    ~TerminalOutput() {
        std::fflush(stdout);
        dup2(output_, STDOUT_FILENO);
        close(output_);
        close(keyboard_);
    }
    TerminalOutput(TerminalOutput const&) = delete;
    TerminalOutput& operator=(TerminalOutput const&) = delete;

    // What has been printed since the last call: at most a few thousand bytes.
    std::string Read() const {
        std::fflush(stdout);
        std::string text;
        char buffer[1024];
        pollfd readable = {keyboard_, POLLIN, 0};
        while (poll(&readable, 1, 50) == 1) {
            ssize_t const length = read(keyboard_, buffer, sizeof buffer);
            if (length <= 0) break;
            text.append(buffer, static_cast<std::size_t>(length));
        }
        return text;
    }

  private:
    int keyboard_;
    int output_;
};

#endif  // QORUTILS_TESTS_SUPPORT_PSEUDO_TERMINAL_H_
