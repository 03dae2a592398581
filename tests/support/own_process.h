// Runs a piece of a test in a process of its own: for what a process does only once, or at its end.
#ifndef QORUTILS_TESTS_SUPPORT_OWN_PROCESS_H_
#define QORUTILS_TESTS_SUPPORT_OWN_PROCESS_H_

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

// What passes from the child to its parent: texts, each behind its length.
class ProcessMessage {
  public:
    ProcessMessage() = default;
    explicit ProcessMessage(std::string bytes) : bytes_(std::move(bytes)) {}

    void Put(std::string const& text) {
        std::uint32_t const length = static_cast<std::uint32_t>(text.size());
        bytes_.append(reinterpret_cast<char const*>(&length), sizeof length).append(text);
    }

    // False when there is no more; a text that was cut short is lost.
    bool Take(std::string* text) {
        std::uint32_t length = 0;
        if (bytes_.size() - position_ < sizeof length) return false;
        std::memcpy(&length, bytes_.data() + position_, sizeof length);
        if (bytes_.size() - position_ - sizeof length < length) return false;
        text->assign(bytes_, position_ + sizeof length, length);
        position_ += sizeof length + length;
        return true;
    }

    std::string const& Bytes() const { return bytes_; }

  private:
    std::string bytes_;
    std::size_t position_ = 0;
};

namespace own_process_detail {

using Action = std::function<void(std::ostream& say)>;

inline ProcessMessage Perform(Action const& action) {
    using Reporter = testing::ScopedFakeTestPartResultReporter;
    testing::TestPartResultArray results;
    std::ostringstream said;
    {
        // This thread may have a reporter of its own already, by which it passes that of all.
        Reporter const ofAllThreads(Reporter::INTERCEPT_ALL_THREADS, &results);
        Reporter const ofThisThread(Reporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        try {
            action(said);
        } catch (std::exception const& error) {
            ADD_FAILURE() << "left by an exception: " << error.what();
        }
    }
    ProcessMessage message;
    message.Put(said.str());
    for (int i = 0; i < results.size(); ++i) {
        testing::TestPartResult const& result = results.GetTestPartResult(i);
        if (!result.failed()) continue;
        message.Put(result.file_name() == nullptr ? "" : result.file_name());
        message.Put(std::to_string(result.line_number()));
        message.Put(result.message());
    }
    return message;
}

inline void Send(int pipe, std::string const& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        ssize_t const written = write(pipe, bytes.data() + sent, bytes.size() - sent);
        if (written <= 0) std::_Exit(EXIT_FAILURE);
        sent += static_cast<std::size_t>(written);
    }
    close(pipe);
}

inline std::string Receive(int pipe) {
    std::string bytes;
    char buffer[4096];
    ssize_t length = 0;
    while ((length = read(pipe, buffer, sizeof buffer)) > 0)
        bytes.append(buffer, static_cast<std::size_t>(length));
    close(pipe);
    return bytes;
}

inline std::string HandOn(ProcessMessage message, int status) {
    std::string said;
    bool const isWhole = message.Take(&said);
    std::string file;
    std::string line;
    std::string text;
    while (message.Take(&file) && message.Take(&line) && message.Take(&text))
        ADD_FAILURE_AT(file.c_str(), std::stoi(line)) << text;
    if (WIFSIGNALED(status))
        ADD_FAILURE() << "the process was ended by signal " << WTERMSIG(status);
    else if (WEXITSTATUS(status) != 0)
        ADD_FAILURE() << "the process ended with status " << WEXITSTATUS(status);
    else if (!isWhole)
        ADD_FAILURE() << "the process ended before the action did";
    return said;
}

}  // namespace own_process_detail

// Calls action(say) in a child of this process and returns what it wrote to `say`. Failed
// expectations and an exception in it are failures of the calling test, and so are a crash, a
// status other than 0 and 120 seconds without an end. A failed ASSERT ends the action.
// Then the child ends as programs do: exit handlers and static destructors run; one that finds
// something wrong says so with _exit(1).
// What this process did once, the child finds done: such a test belongs to a program in which all
// its kind run so. The calling process must have no other threads; the child may start some.
inline std::string InOwnProcess(own_process_detail::Action const& action) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == -1) throw std::runtime_error("no process");
    if (child == 0) {
        alarm(120);
        close(ends[0]);
        own_process_detail::Send(ends[1], own_process_detail::Perform(action).Bytes());
        std::exit(EXIT_SUCCESS);
    }
    close(ends[1]);
    ProcessMessage const message(own_process_detail::Receive(ends[0]));
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("the process is lost");
    return own_process_detail::HandOn(message, status);
}

#endif  // QORUTILS_TESTS_SUPPORT_OWN_PROCESS_H_
