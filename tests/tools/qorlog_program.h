// The program qorlog, and logs for it. QORLOG_PATH is the built program; the build defines it.
#ifndef QORUTILS_TESTS_TOOLS_QORLOG_PROGRAM_H_
#define QORUTILS_TESTS_TOOLS_QORLOG_PROGRAM_H_

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/main_log.h"
#include "support/run_program.h"
#include "support/temporary_directory.h"

// The first line of a log, and how it is shown.
constexpr char32_t kBanner[] =
    U"00000.000 ; 7 ; Program /opt/survey started on 2026/11/22 10:00:00 UTC\r\n";
constexpr char kShownBanner[] =
    "00000.000 ; 7 ; Program /opt/survey started on 2026/11/22 10:00:00 UTC\n";

inline std::string LogBytes(std::u32string const& text) {
    return "\xFF\xFE" + EncodeUtf32Le(text);
}

inline void AppendTo(std::string const& path, std::string const& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
}

class QorLog : public testing::Test {
  protected:
    Outcome Run(std::vector<std::string> const& arguments) const {
        return RunProgram(QORLOG_PATH, arguments, directory_.Path("complaints"));
    }

    // Runs it with one more argument, the log.
    Outcome RunOnLog(std::vector<std::string> arguments) const {
        arguments.push_back(Path());
        return Run(arguments);
    }

    // By the shell, with what stands before and behind the program there.
    Outcome RunByShell(std::string const& before, std::string const& behind) const {
        std::string const out = directory_.Path("out");
        std::string const complaints = directory_.Path("complaints");
        std::string const command = "{ " + before + Started(QORLOG_PATH) + " " + behind + "; } >" +
                                    out + " 2>" + complaints;
        int const status = std::system(command.c_str());
        Outcome const outcome = {WIFEXITED(status) ? WEXITSTATUS(status) : -1, FileBytes(out),
                                 FileBytes(complaints)};
        directory_.Remove("out");
        directory_.Remove("complaints");
        return outcome;
    }

    std::string Path() const { return directory_.Path("survey1.log.txt"); }

    void MakeLog(std::u32string const& lines) {
        directory_.MakeFile("survey1.log.txt", LogBytes(kBanner + lines));
    }

    // "qorlog: FILE: what" of the log.
    std::string Complaint(std::string const& what) const {
        return "qorlog: " + Path() + ": " + what + "\n";
    }

    TemporaryDirectory directory_;
};

// A program that runs beside the test. What it prints is awaited, for a minute at most.
class RunningProgram {
  public:
    explicit RunningProgram(std::vector<std::string> const& arguments, int in = STDIN_FILENO) {
        std::string command = "exec " + Started(QORLOG_PATH);
        for (std::string const& argument : arguments) command += " " + Quoted(argument);
        int out[2];
        int complaints[2];
        if (pipe2(out, O_CLOEXEC) != 0 || pipe2(complaints, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        child_ = fork();
        if (child_ == -1) throw std::runtime_error("no process");
        if (child_ == 0) {
            dup2(in, STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            dup2(complaints[1], STDERR_FILENO);
            signal(SIGPIPE, SIG_DFL);
            execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(out[1]);
        close(complaints[1]);
        out_.file = out[0];
        complaints_.file = complaints[0];
    }
    ~RunningProgram() {
        CloseOutput();
        close(complaints_.file);
        if (child_ == -1) return;
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
    RunningProgram(RunningProgram const&) = delete;
    RunningProgram& operator=(RunningProgram const&) = delete;

    // What it has printed since the last call, as soon as that ends in `end`.
    std::string OutputUpTo(std::string const& end) { return UpTo(end, &out_); }
    std::string ComplaintsUpTo(std::string const& end) { return UpTo(end, &complaints_); }

    // The reader goes away.
    void CloseOutput() {
        if (out_.file != -1) close(out_.file);
        out_.file = -1;
    }

    void Send(int signal) const {
        ASSERT_NE(-1, child_);  // which would mean every process
        kill(child_, signal);
    }

    // The signal that it ended by, once it has; 0 for an exit.
    int EndingSignal() {
        int status = 0;
        if (!HasEnded(&status)) {
            ADD_FAILURE() << "it still runs";
            return 0;
        }
        child_ = -1;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

  private:
    struct Stream {
        int file = -1;
        std::string text;
    };
    using Clock = std::chrono::steady_clock;

    static Clock::time_point Deadline() { return Clock::now() + std::chrono::minutes(1); }

    static bool EndsIn(std::string const& text, std::string const& end) {
        return text.size() >= end.size() &&
               text.compare(text.size() - end.size(), end.size(), end) == 0;
    }

    static std::string UpTo(std::string const& end, Stream* stream) {
        Clock::time_point const deadline = Deadline();
        char block[4096];
        pollfd readable = {stream->file, POLLIN, 0};
        while (!EndsIn(stream->text, end)) {
            if (Clock::now() > deadline) {
                ADD_FAILURE() << "waited in vain for: " << end;
                break;
            }
            if (poll(&readable, 1, 100) != 1) continue;
            ssize_t const length = read(stream->file, block, sizeof block);
            if (length <= 0) {
                ADD_FAILURE() << "it ended before: " << end;
                break;
            }
            stream->text.append(block, static_cast<std::size_t>(length));
        }
        std::string text;
        text.swap(stream->text);
        return text;
    }

    bool HasEnded(int* status) const {
        Clock::time_point const deadline = Deadline();
        while (Clock::now() < deadline) {
            if (waitpid(child_, status, WNOHANG) == child_) return true;
            poll(nullptr, 0, 10);
        }
        return false;
    }

    pid_t child_ = -1;
    Stream out_;
    Stream complaints_;
};

#endif  // QORUTILS_TESTS_TOOLS_QORLOG_PROGRAM_H_
