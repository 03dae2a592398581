// SETTINGS_TOUR_PATH is the built program; the build defines it.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/temporary_directory.h"

namespace {

class SettingsTour : public testing::Test {
  protected:
    Outcome Run(std::vector<std::string> const& arguments) {
        return RunProgram(SETTINGS_TOUR_PATH, arguments, directory_.Path("complaints"));
    }

    Outcome RunOn(std::string const& content) {
        directory_.MakeFile("f.ini", content);
        Outcome const outcome = Run({directory_.Path("f.ini")});
        EXPECT_EQ(content, directory_.Content("f.ini"));
        directory_.Remove("f.ini");
        return outcome;
    }

    void ExpectRefused(std::string const& content, std::string const& complaint) {
        Outcome const outcome = RunOn(content);
        EXPECT_EQ(1, outcome.status) << content;
        EXPECT_EQ("", outcome.out);
        EXPECT_EQ("settings_tour: " + directory_.Path("f.ini") + complaint + "\n",
                  outcome.complaints);
    }

    TemporaryDirectory directory_;
};

TEST_F(SettingsTour, PrintsChangesWritesAndReadsBack) {
    Outcome const outcome =
        RunOn("# comment\r\n[B]\r\nz=1\r\na=two words\r\n[A1234567]\r\n\r\nk=\r\n");
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ(
        "[A1234567]\n"
        "    k = \n"
        "[B]\n"
        "    a = two words\n"
        "    z = 1\n"
        "\n"
        "A1234567 / k: \"\" becomes \" (changed)\"\n"
        "written as 8-bit text: 53 bytes, read back: the same settings\n"
        "written as wide  text: 212 bytes, read back: the same settings\n",
        outcome.out);
    EXPECT_EQ("", outcome.complaints);
}

TEST_F(SettingsTour, SaysWhichLineIsWrongAndWhy) {
    ExpectRefused("[A]\n  k=1\n", ":2: the line is indented");
    ExpectRefused("\n[A\n", ":2: there is no ] at the end");
    ExpectRefused("[A]\n[]\n", ":2: the section has no name");
    ExpectRefused("[A]\n#\n;\n/\n   \nkey\n", ":6: there is no = behind the key");
    ExpectRefused("[A]\r\nk=1\r\n_k=1\r\n", ":3: a key begins with a letter or a digit");
}

TEST_F(SettingsTour, SaysWhatItCannotRead) {
    ExpectRefused("", ": empty, or not open for reading and writing");
    Outcome const outcome = Run({directory_.Path("missing")});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("settings_tour: " + directory_.Path("missing") + ": cannot be opened\n",
              outcome.complaints);
}

TEST_F(SettingsTour, WantsOneFile) {
    EXPECT_EQ(2, Run({}).status);
    EXPECT_EQ(2, Run({"a", "b"}).status);
}

}  // namespace
