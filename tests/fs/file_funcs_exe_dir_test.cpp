// The program's directory is derived once in a process, so each case has a process of its own; the
// program that starts them must never copy a file itself.
#include <qorutils/fs/file_funcs.h>

#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "support/module_name.h"
#include "support/own_process.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using namespace FileFuncs;

class CopyBesideTheProgram : public testing::Test {
  protected:
    CopyBesideTheProgram() {
        directory_.MakeFolder("exe");
        directory_.MakeFile("exe/a", "beside the program");
        directory_.MakeFolder("work");
        directory_.MakeFile("work/a", "in the working directory");
    }

    // In the working directory "work".
    void WithProgram(std::wstring const& name, std::function<void()> const& action) {
        InOwnProcess([&](std::ostream&) {
            NameModule(name);
            WorkingDirectory const here(directory_.Path("work"));
            action();
        });
    }

    TemporaryDirectory directory_;
};

TEST_F(CopyBesideTheProgram, TakesRelativePathsOfTheProgramsDirectory) {
    WithProgram(directory_.WidePath("exe") + L"\\prog", [] {
        EXPECT_TRUE(qor_CopyFile(L"a", L"x/y/z.txt", true));
        EXPECT_TRUE(qor_CopyFile(L"a", L"x\\second", false));
    });
    EXPECT_EQ("beside the program", directory_.Content("exe/x/y/z.txt"));
    EXPECT_EQ("beside the program", directory_.Content("exe/x/second"));
    for (char const* name : {"exe/x/y/z.txt", "exe/x/y", "exe/x/second", "exe/x"})
        directory_.Remove(name);
}

TEST_F(CopyBesideTheProgram, TakesAbsolutePathsAsTheyAre) {
    WithProgram(directory_.WidePath("exe") + L"\\prog", [this] {
        EXPECT_TRUE(qor_CopyFile(directory_.WidePath("work/a").c_str(),
                                 directory_.WidePath("b").c_str(), true));
    });
    EXPECT_EQ("in the working directory", directory_.Content("b"));
    directory_.Remove("b");
}

// On purpose: what is in the way is looked for and deleted in the working directory.
TEST_F(CopyBesideTheProgram, DeletesInTheWorkingDirectory) {
    directory_.MakeFile("exe/b", "old beside the program");
    directory_.MakeFile("work/b", "old in the working directory");
    WithProgram(directory_.WidePath("exe") + L"\\prog",
                [] { EXPECT_TRUE(qor_CopyFile(L"a", L"b", true)); });
    EXPECT_EQ("beside the program", directory_.Content("exe/b"));
    EXPECT_FALSE(directory_.Has("work/b"));
}

// On purpose: the directory is taken with its backslashes, as a name in the working directory.
TEST_F(CopyBesideTheProgram, TakesTheProgramsDirectoryAsItStands) {
    WithProgram(L"C:\\App\\prog", [this] {
        EXPECT_TRUE(qor_CopyFile(directory_.WidePath("work/a").c_str(), L"b", true));
    });
    EXPECT_EQ("in the working directory", directory_.Content("work/C:\\App/b"));
    directory_.Remove("work/C:\\App/b");
    directory_.Remove("work/C:\\App");
}

TEST_F(CopyBesideTheProgram, FailsWhenTheLocaleCannotEncodeTheProgramsDirectory) {
    ScopedLocale const locale("C");
    WithProgram(directory_.WidePath("exe") + L"\u4E2D\\prog",
                [] { EXPECT_FALSE(qor_CopyFile(L"a", L"b", true)); });
    EXPECT_FALSE(directory_.Has("work/b"));
    EXPECT_FALSE(directory_.Has("exe/b"));
}

}  // namespace
