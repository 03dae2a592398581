// What the tests of CFile share.
#ifndef QORUTILS_TESTS_SUPPORT_CFILE_FIXTURE_H_
#define QORUTILS_TESTS_SUPPORT_CFILE_FIXTURE_H_

#include <cstddef>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/temporary_directory.h"

// The operation and the number in the text that action() throws.
template <typename Action>
std::string Failure(Action action) {
    try {
        action();
    } catch (std::runtime_error const& failure) {
        std::string const text = failure.what();
        std::string const source = "[qorutils/fs/platform_file:";
        EXPECT_EQ(0u, text.find(source)) << text;
        std::size_t const line = source.size();
        std::size_t const end = text.find_first_not_of("0123456789", line);
        EXPECT_GT(end, line) << text;
        EXPECT_EQ(end, text.find("] ")) << text;
        return text.substr(text.find("] ") + 2);
    }
    return "nothing thrown";
}

template <typename Action>
std::string FailedOperation(Action action) {
    std::string const failure = Failure(action);
    return failure.substr(0, failure.find(": "));
}

inline std::string With(char const* operation, int error) {
    return std::string(operation) + ": " + std::to_string(error);
}

// A directory with a file "old" that holds "0123456789".
class CFileTest : public testing::Test {
  protected:
    CFileTest() { directory_.MakeFile("old", "0123456789"); }

    std::wstring Path(std::string const& name) const { return directory_.WidePath(name); }

    TemporaryDirectory directory_;
};

#endif  // QORUTILS_TESTS_SUPPORT_CFILE_FIXTURE_H_
