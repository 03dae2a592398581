// Runs qorini on files of the test's own, in a UTF-8 locale unless told otherwise. QORINI_PATH is
// the built program; the build defines it.
#ifndef QORUTILS_TESTS_TOOLS_QORINI_FIXTURE_H_
#define QORUTILS_TESTS_TOOLS_QORINI_FIXTURE_H_

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/scoped_variable.h"
#include "support/temporary_directory.h"

class Qorini : public testing::Test {
  protected:
    std::string Path(std::string const& name) const { return directory_.Path(name); }

    Outcome Run(std::vector<std::string> const& arguments) const {
        return RunProgram(QORINI_PATH, arguments, Path("complaints"));
    }

    // Of a run that has nothing to complain about.
    void ExpectOut(std::string const& out, std::vector<std::string> const& arguments,
                   int status = 0) const {
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(status, outcome.status) << arguments[0];
        EXPECT_EQ(out, outcome.out) << arguments[0];
        EXPECT_EQ("", outcome.complaints) << arguments[0];
    }

    // Of a run that prints nothing. The complaint is the part behind "qorini: ".
    void ExpectComplaint(int status, std::string const& complaint,
                         std::vector<std::string> const& arguments) const {
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(status, outcome.status) << arguments[0];
        EXPECT_EQ("", outcome.out) << arguments[0];
        EXPECT_EQ("qorini: " + complaint + "\n", outcome.complaints) << arguments[0];
    }

    // What a file of that content becomes by a command, with the words behind its name.
    std::string Changed(std::string const& content, std::string const& command,
                        std::vector<std::string> const& words) {
        directory_.MakeFile("f.ini", content);
        std::vector<std::string> arguments{command, Path("f.ini")};
        arguments.insert(arguments.end(), words.begin(), words.end());
        ExpectOut("", arguments);
        std::string const changed = directory_.Content("f.ini");
        directory_.Remove("f.ini");
        return changed;
    }

    // That a file of that content stays as it is. The complaint is the part behind its name.
    void ExpectRefused(std::string const& content, std::string const& complaint,
                       std::string const& command, std::vector<std::string> const& words) {
        directory_.MakeFile("f.ini", content);
        std::vector<std::string> arguments{command, Path("f.ini")};
        arguments.insert(arguments.end(), words.begin(), words.end());
        ExpectComplaint(3, Path("f.ini") + complaint, arguments);
        EXPECT_EQ(content, directory_.Content("f.ini"));
        directory_.Remove("f.ini");
    }

    TemporaryDirectory directory_;
    ScopedVariable const locale_{"LC_ALL", "C.UTF-8"};
};

#endif  // QORUTILS_TESTS_TOOLS_QORINI_FIXTURE_H_
