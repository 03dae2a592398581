#include "support/own_process.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ostream>
#include <stdexcept>
#include <string>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace {

TEST(InOwnProcess, RunsTheActionInAChild) {
    static pid_t actor = 0;
    pid_t const caller = getpid();
    std::string const said = InOwnProcess([](std::ostream& say) {
        actor = getpid();
        say << getppid();
    });
    EXPECT_EQ(0, actor);
    EXPECT_EQ(std::to_string(caller), said);
}

TEST(InOwnProcess, ReturnsEveryByteThatWasSaid) {
    std::string const zeros(100000, '\0');
    EXPECT_EQ(zeros + "\n\xFF", InOwnProcess([&](std::ostream& say) { say << zeros << "\n\xFF"; }));
    EXPECT_EQ("", InOwnProcess([](std::ostream&) {}));
}

TEST(InOwnProcess, HandsOnEveryFailure) {
    testing::TestPartResultArray results;
    {
        testing::ScopedFakeTestPartResultReporter const reporter(&results);
        InOwnProcess([](std::ostream&) {
            EXPECT_EQ(1, 2) << "first";
            ASSERT_TRUE(false) << "second";
            ADD_FAILURE() << "never reached";
        });
    }
    ASSERT_EQ(2, results.size());
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "first", results.GetTestPartResult(0).message());
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "second", results.GetTestPartResult(1).message());
    EXPECT_STREQ(__FILE__, results.GetTestPartResult(0).file_name());
}

TEST(InOwnProcess, FailsForAnException) {
    EXPECT_NONFATAL_FAILURE(
        InOwnProcess([](std::ostream&) { throw std::runtime_error("what it says"); }),
        "what it says");
}

TEST(InOwnProcess, FailsForASignal) {
    EXPECT_NONFATAL_FAILURE(InOwnProcess([](std::ostream&) { raise(SIGKILL); }), "signal 9");
}

TEST(InOwnProcess, FailsForAStatusAndWhenTheActionDoesNotReturn) {
    EXPECT_NONFATAL_FAILURE(InOwnProcess([](std::ostream&) { _exit(3); }), "status 3");
    EXPECT_NONFATAL_FAILURE(InOwnProcess([](std::ostream&) { _exit(0); }), "before the action did");
}

TEST(InOwnProcess, RunsExitHandlers) {
    EXPECT_NONFATAL_FAILURE(InOwnProcess([](std::ostream&) { std::atexit([] { _exit(4); }); }),
                            "status 4");
}

}  // namespace
