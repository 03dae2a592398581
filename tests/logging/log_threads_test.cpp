// Many threads, many programs, and programs that are killed. Takes a while.

#include <qorutils/logging/main_logger.h>
#include <qorutils/logging/trace.h>

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/main_log.h"
#include "support/module_name.h"
#include "support/own_process.h"
#include "support/temporary_directory.h"

namespace {

using namespace qor_logging;  // NOLINT(google-build-using-namespace): a user's program

using Messages = std::vector<std::string>;

constexpr int kThreads = 8;

// An emulated processor is many times slower, and a sanitized program some times.
#if defined(__arm__)
constexpr int kRounds = 40;
constexpr int kLines = 5000;
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRounds = 40;
constexpr int kLines = 10000;
#else
constexpr int kRounds = 300;
constexpr int kLines = 100000;
#endif

template <typename Action>
void InThreads(Action action) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back([=] { action(i); });
    for (std::thread& thread : threads) thread.join();
}

// Long lines first, so that a kill finds them; many more of them would only fill the disk.
int FillingLength(int number) {
    return number < 1000 ? number * 7 % 300 : number % 20;
}

// Of a length of its own, from both kinds of functions.
void WriteNumbered(int thread, int number) {
    static std::string const filling(300, 'x');
    static std::wstring const wideFilling(300, L'x');
    int const length = FillingLength(number);
    if (number % 2 == 0)
        QOR_TRACE_ALWAYS("%d/%d %.*s|", thread, number, length, filling.c_str());
    else
        QOR_TRACE_ALWAYS(L"%d/%d %.*ls|", thread, number, length, wideFilling.c_str());
}

std::string Numbered(int thread, int number) {
    return std::to_string(thread) + "/" + std::to_string(number) + " " +
           std::string(static_cast<std::size_t>(FillingLength(number)), 'x') + "|";
}

// How many lines of each thread stand in the messages: whole, in order, none left out.
std::vector<int> CountNumbered(Messages const& messages) {
    std::vector<int> counts(kThreads);
    for (std::string const& message : messages) {
        std::size_t const thread = static_cast<std::size_t>(message.at(0) - '0');
        if (thread >= counts.size()) {
            ADD_FAILURE() << message;
            break;
        }
        EXPECT_EQ(Numbered(static_cast<int>(thread), counts[thread]), message);
        if (message != Numbered(static_cast<int>(thread), counts[thread]++)) break;
    }
    return counts;
}

// A flush takes no lock, and yet repeats no line.
void WriteNumberedLines(int thread) {
    for (int number = 0; number < kLines; ++number) {
        WriteNumbered(thread, number);
        if (number % 5000 == 0) qor_flush_log();
    }
}

// Times of five digits and three, as all are on the first day.
void ExpectRisingTimes(std::vector<std::string> const& lines) {
    std::string previous = "00000.000";
    for (std::string const& line : lines) {
        ASSERT_LE(previous, line.substr(0, 9));
        previous = line.substr(0, 9);
    }
    EXPECT_LT("00000.000", previous);
}

TEST(Threads, LoseNoLineMixNoneAndWriteTimesThatRise) {
    TemporaryDirectory directory;
    InOwnProcess([&](std::ostream&) {
        setenv("TMPDIR", directory.Path("").c_str(), 1);
        getMainLogger();
        InThreads(WriteNumberedLines);
    });
    auto const lines =
        SplitLines(Shown(DecodeUtf32Le(FileBytes(directory.Path("qor1.log.txt")).substr(2))));
    ExpectRisingTimes(lines);
    Messages messages;
    for (std::string const& line : lines) messages.push_back(MessageOf(line));
    EXPECT_EQ("Logging finished", messages.back());
    EXPECT_EQ(std::vector<int>(kThreads, kLines),
              CountNumbered(Messages(messages.begin() + 1, messages.end() - 1)));
    directory.Remove("qor1.log.txt");
    directory.Remove("qor.seq.ini");
}

TEST(FlushLog, RepeatsNoLine) {
    TemporaryDirectory directory;
    InOwnProcess([&](std::ostream&) {
        setenv("TMPDIR", directory.Path("").c_str(), 1);
        getMainLogger();
        for (int number = 0; number < 20; ++number) {
            WriteNumbered(0, number);
            qor_flush_log();
        }
    });
    Messages const messages = MessagesOfFile(directory.Path("qor1.log.txt"));
    EXPECT_EQ(20, CountNumbered(Messages(messages.begin() + 1, messages.end() - 1)).at(0));
    directory.Remove("qor1.log.txt");
    directory.Remove("qor.seq.ini");
}

// Memory that a process shares with its children.
template <typename T>
class SharedMemory {
  public:
    SharedMemory() {
        void* const memory =
            mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        value_ = new (memory) T();
    }
    ~SharedMemory() { munmap(value_, sizeof(T)); }
    SharedMemory(SharedMemory const&) = delete;
    SharedMemory& operator=(SharedMemory const&) = delete;

    T* operator->() const { return value_; }

  private:
    T* value_;
};

struct Progress {
    std::atomic<int> returned[kThreads];  // lines of each thread whose call has returned
};

// Runs threads that log until they are killed, once they have written so many lines together.
void KillAfter(int lines, std::string const& directory, Progress* progress) {
    pid_t const child = fork();
    ASSERT_NE(-1, child);
    if (child == 0) {
        alarm(60);
        setenv("TMPDIR", directory.c_str(), 1);
        getMainLogger();
        InThreads([=](int thread) {
            for (int number = 0;; ++number) {
                WriteNumbered(thread, number);
                progress->returned[thread] = number + 1;
            }
        });
    }
    int status = 0;
    for (int total = 0; total < lines;) {
        ASSERT_EQ(0, waitpid(child, &status, WNOHANG)) << "it ended by itself: " << status;
        total = 0;
        for (std::atomic<int> const& returned : progress->returned) total += returned;
        std::this_thread::yield();
    }
    kill(child, SIGKILL);
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
}

TEST(AKilledProgram, LeavesEveryLineWhoseCallReturned) {
    for (int round = 0; round < kRounds; ++round) {
        TemporaryDirectory directory;
        SharedMemory<Progress> progress;
        KillAfter(1 + round * 37 % 400, directory.Path(""), progress.operator->());
        if (HasFatalFailure()) return;
        Messages const messages = MessagesOfFile(directory.Path("qor1.log.txt"));
        std::vector<int> const written =
            CountNumbered(Messages(messages.begin() + 1, messages.end()));
        for (int thread = 0; thread < kThreads; ++thread) {
            int const returned = progress->returned[thread];
            EXPECT_GE(written[static_cast<std::size_t>(thread)], returned) << round;
        }
        directory.Remove("qor1.log.txt");
        directory.Remove("qor.seq.ini");
        if (HasFailure()) break;
    }
}

constexpr int kPrograms = 10;
constexpr int kProgramLines = 500;

// A process that is called so, logs and exits.
pid_t StartProgram(std::wstring const& name, int thread) {
    pid_t const child = fork();
    if (child != 0) return child;
    alarm(60);
    NameModule(name);
    for (int number = 0; number < kProgramLines; ++number) WriteNumbered(thread, number);
    std::exit(EXIT_SUCCESS);
}

void ExpectSuccess(pid_t child) {
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
}

TEST(ManyProgramsAtOnce, KeepLogsOfTheirOwnInOneDirectory) {
    TemporaryDirectory directory;
    std::wstring const folder = directory.WidePath("");
    std::vector<pid_t> children;
    for (int program = 0; program < kPrograms; ++program)
        children.push_back(StartProgram(
            folder.substr(0, folder.size() - 1) + L"\\p" + std::to_wstring(program) + L".exe",
            program % kThreads));
    for (pid_t const child : children) ExpectSuccess(child);
    for (int program = 0; program < kPrograms; ++program) {
        std::string const name = "p" + std::to_string(program);
        Messages const messages = MessagesOfFile(directory.Path(name + "1.log.txt"));
        ASSERT_LE(2u, messages.size());
        EXPECT_EQ("Logging finished", messages.back());
        EXPECT_EQ(kProgramLines, CountNumbered(Messages(messages.begin() + 1, messages.end() - 1))
                                     .at(static_cast<std::size_t>(program % kThreads)));
        directory.Remove(name + "1.log.txt");
        directory.Remove(name + ".seq.ini");
    }
}

}  // namespace
