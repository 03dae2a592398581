// DIRINFO_PATH is the built program; the build defines it.

#include <sys/stat.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/temporary_directory.h"

namespace {

class DirInfo : public testing::Test {
  protected:
    Outcome Run(std::vector<std::string> const& arguments) {
        return RunProgram(DIRINFO_PATH, arguments, directory_.Path("complaints"));
    }

    // 2015-06-01 10:20:30.
    void Date(std::string const& name) {
        timespec const times[] = {{1433154030, 0}, {1433154030, 0}};
        ASSERT_EQ(0, utimensat(AT_FDCWD, directory_.Path(name).c_str(), times, 0));
    }

    TemporaryDirectory directory_;
};

bool Contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(DirInfo, ListsCopiesAndRemoves) {
    directory_.MakeFolder("d");
    directory_.MakeFolder("d/inner");
    directory_.MakeFile("d/inner/deep", "deep");
    directory_.MakeFile("d/one.txt", "12345");
    directory_.MakeFile("d/two.TXT", "1234567");
    Date("d/one.txt");
    Outcome const outcome = Run({directory_.Path("d")});
    EXPECT_EQ(0, outcome.status) << outcome.complaints;
    EXPECT_TRUE(Contains(outcome.out, "06/01/2015 10:20             5  one.txt\n")) << outcome.out;
    EXPECT_TRUE(Contains(outcome.out, "7  two.TXT\n"));
    EXPECT_TRUE(Contains(outcome.out, "<folder>  inner\n"));
    EXPECT_TRUE(Contains(outcome.out, "2 files with 12 bytes, 1 folders\n"));
    EXPECT_TRUE(Contains(outcome.out, ": 3 of 3 entries\nand removed again\n"));
}

TEST_F(DirInfo, ListsWhatThePatternSelects) {
    directory_.MakeFolder("d");
    directory_.MakeFile("d/one.txt", "12345");
    directory_.MakeFile("d/two.dat", "1234567");
    Outcome const outcome = Run({directory_.Path("d"), "*.TXT"});
    EXPECT_EQ(0, outcome.status);
    EXPECT_TRUE(Contains(outcome.out, "1 files with 5 bytes, 0 folders\n")) << outcome.out;
    EXPECT_FALSE(Contains(outcome.out, "two.dat"));
}

TEST_F(DirInfo, SaysWhatItCannotList) {
    directory_.MakeFile("file", "");
    for (std::string const name : {"file", "missing"}) {
        Outcome const outcome = Run({directory_.Path(name)});
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ("dirinfo: " + directory_.Path(name) + ": no such folder\n", outcome.complaints);
    }
}

TEST_F(DirInfo, WantsAFolder) {
    EXPECT_EQ(2, Run({}).status);
    EXPECT_EQ(2, Run({"a", "b", "c"}).status);
}

}  // namespace
