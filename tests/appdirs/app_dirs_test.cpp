// The directories are those of a process, so each case has a process of its own; the program that
// starts them all must never ask for a directory itself.
#include <qorutils/appdirs/app_dirs.h>

#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cwchar>
#include <functional>
#include <ostream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>
#include <qorutils/appdirs/module_file_name.h>
#include <qorutils/logging/main_logger.h>

#include "support/no_directories.h"
#include "support/own_process.h"
#include "support/scoped_locale.h"
#include "support/scoped_variable.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"

namespace {

using WideString = qor_text::CQorStringT<wchar_t>;

static_assert(std::is_same<decltype(GetApplicationFileName()), CApplicationDirectories const&>(),
              "");

void YieldWindowsName(wchar_t* buffer, int size) {
    std::wcsncpy(buffer, L"C:\\App\\prog.exe", static_cast<std::size_t>(size));
}

// What YieldGivenName says.
std::wstring givenName;

void YieldGivenName(wchar_t* buffer, int size) {
    std::wcsncpy(buffer, givenName.c_str(), static_cast<std::size_t>(size));
}

void ExpectWindowsDefaults() {
    EXPECT_EQ(WideString(L"C:\\App\\prog.exe"), GetApplicationPath());
    EXPECT_EQ(WideString(L"C:\\App"), GetExeDir());
    EXPECT_EQ(WideString(L"C:\\App"), GetRootDir());
    EXPECT_EQ(WideString(L"C:\\App"), GetTavrelAppDataDir());
    EXPECT_EQ(WideString(L"C:\\App"), GetDocsDir());
    EXPECT_EQ(WideString(L"C:\\App\\Geoids\\"), GetTavrelAppGeoidsDataDir());
    EXPECT_EQ(WideString(L"C:\\App\\Geo\\"), GetTavrelAppGeoDataDir());
}

class AppDirs : public testing::Test {
  protected:
    // The working directory of the action is the temporary one.
    void InNewProcess(std::function<void()> const& action) const {
        InOwnProcess([&](std::ostream&) {
            ASSERT_EQ(0, chdir(directory_.Path("").c_str()));
            action();
        });
    }

    void InWindowsProgram(std::function<void()> const& action) const {
        InNewProcess([&] {
            qor_appdirs::SetModuleFileNameHook(YieldWindowsName);
            action();
        });
    }

    void InProgram(std::wstring const& moduleFileName, std::function<void()> const& action) const {
        InNewProcess([&] {
            givenName = moduleFileName;
            qor_appdirs::SetModuleFileNameHook(YieldGivenName);
            action();
        });
    }

    // The overrides file of a program in C:\App.
    static constexpr char const* kOverrides = "C:\\App\\qor_dir.ini";

    TemporaryDirectory directory_;
};
constexpr char const* AppDirs::kOverrides;

// ---- Without a directory ----

TEST_F(AppDirs, AreEmptyByDefault) {
    InNewProcess(ExpectNoDirectories);
}

TEST_F(AppDirs, AreEmptyAgainWhenTheHookIsTakenBack) {
    InWindowsProgram([] {
        qor_appdirs::SetModuleFileNameHook(nullptr);
        ExpectNoDirectories();
    });
}

TEST_F(AppDirs, AreEmptyWhenTheModuleFileNameHasNoBackslash) {
    directory_.MakeFile("\\qor_dir.ini", "[Directories]\r\nUser=D:\\Data\r\n");
    InProgram(L"prog.exe", ExpectNoDirectories);
    InProgram(L"/usr/bin/prog", ExpectNoDirectories);
    InProgram(L"", ExpectNoDirectories);
}

// ---- From the module file name ----

TEST_F(AppDirs, FollowFromTheModuleFileName) {
    InWindowsProgram(ExpectWindowsDefaults);
}

TEST_F(AppDirs, StandInTheTableInTheirOrder) {
    InWindowsProgram([] {
        CApplicationDirectories const expected = {{
            L"C:\\App\\prog.exe",
            L"C:\\App",
            L"C:\\App",
            L"C:\\App",
            L"C:\\App",
            L"C:\\App\\Geoids",
            L"C:\\App\\Geo",
        }};
        EXPECT_EQ(expected, GetApplicationFileName());
        EXPECT_EQ(&GetApplicationFileName(), &GetApplicationFileName());
    });
}

TEST_F(AppDirs, EndBeforeTheLastBackslashOnly) {
    struct {
        wchar_t const* module;
        wchar_t const* exeDir;
        wchar_t const* path;
    } const cases[] = {
        {L"/opt/survey\\prog", L"/opt/survey", L"/opt/survey\\prog"},
        {L"C:\\a/b\\c/d.exe", L"C:\\a/b", L"C:\\a/b\\c/d.exe"},
        {L"C:\\App\\", L"C:\\App", L"C:\\App\\"},
        {L"\\prog", L"", L"\\prog"},
        {L"\\", L"", L"\\"},
        {L"a\\\\b", L"a\\", L"a\\\\b"},
        {L"\x20AC\\\x00E9", L"\x20AC", L"\x20AC\\\x00E9"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.module);
        InProgram(c.module, [&] {
            EXPECT_EQ(WideString(c.exeDir), GetExeDir());
            EXPECT_EQ(WideString(c.path), GetApplicationPath());
            EXPECT_EQ(GetExeDir(), GetRootDir());
            EXPECT_EQ(GetExeDir() + L"\\Geoids\\", GetTavrelAppGeoidsDataDir());
            EXPECT_EQ(GetExeDir() + L"\\Geo\\", GetTavrelAppGeoDataDir());
        });
    }
}

TEST_F(AppDirs, UseTheVersionedGeodataFolderIfThereIsOne) {
    for (char const* const folder : {"C:", "C:/App", "C:/App/Geo", "C:/App/Geo/3.0"})
        directory_.MakeFolder(folder);
    InWindowsProgram([] {
        EXPECT_EQ(WideString(L"C:\\App\\Geo\\3.0\\"), GetTavrelAppGeoDataDir());
        EXPECT_EQ(WideString(L"C:\\App\\Geoids\\"), GetTavrelAppGeoidsDataDir());
    });
}

TEST_F(AppDirs, UseTheVersionedGeodataFolderBehindALink) {
    for (char const* const folder : {"bin", "bin/Geo"}) directory_.MakeFolder(folder);
    directory_.MakeLink("bin/Geo/3.0", "..");
    std::wstring const bin = directory_.WidePath("bin");
    InProgram(bin + L"\\prog", [&] {
        EXPECT_EQ(WideString(bin.c_str()) + L"\\Geo\\3.0\\", GetTavrelAppGeoDataDir());
    });
}

TEST_F(AppDirs, DoNotUseAGeodataFileOrAFolderOfAnotherVersion) {
    for (char const* const folder : {"C:", "C:/App", "C:/App/Geo", "C:/App/Geo/3.1"})
        directory_.MakeFolder(folder);
    directory_.MakeFile("C:/App/Geo/3.0", "");
    directory_.MakeFolder("C:\\App\\Geo\\3.0");
    InWindowsProgram(ExpectWindowsDefaults);
}

TEST_F(AppDirs, AreTheSameWhetherOrNotThereIsAFolderOfGeoids) {
    for (char const* const folder : {"C:", "C:/App", "C:/App/Geoids"})
        directory_.MakeFolder(folder);
    InWindowsProgram(ExpectWindowsDefaults);
}

// ---- Overrides ----

TEST_F(AppDirs, FollowTheKeyOfTheRootDirectory) {
    directory_.MakeFile(kOverrides, "[Directories]\r\nUser=D:\\Data\r\n");
    InWindowsProgram([] {
        EXPECT_EQ(WideString(L"D:\\Data"), GetRootDir());
        EXPECT_EQ(WideString(L"C:\\App\\prog.exe"), GetApplicationPath());
        EXPECT_EQ(WideString(L"C:\\App"), GetExeDir());
        EXPECT_EQ(WideString(L"C:\\App"), GetTavrelAppDataDir());
        EXPECT_EQ(WideString(L"C:\\App"), GetDocsDir());
        EXPECT_EQ(WideString(L"C:\\App\\Geoids\\"), GetTavrelAppGeoidsDataDir());
        EXPECT_EQ(WideString(L"C:\\App\\Geo\\"), GetTavrelAppGeoDataDir());
    });
}

TEST_F(AppDirs, FollowEveryKeyToTheLetter) {
    for (char const* const folder : {"C:", "C:/App", "C:/App/Geo", "C:/App/Geo/3.0"})
        directory_.MakeFolder(folder);
    directory_.MakeFile(kOverrides,
                        "[Directories]\n"
                        "Documents= D:/Docs \n"
                        "Geo=D:\\Geo\\\n"
                        "Geoids=\n"
                        "User=first\n"
                        "User=x=y\n");
    InWindowsProgram([] {
        CApplicationDirectories const expected = {{
            L"C:\\App\\prog.exe",
            L"C:\\App",
            L"x=y",
            L"C:\\App",
            L" D:/Docs ",
            L"",
            L"D:\\Geo\\",
        }};
        EXPECT_EQ(expected, GetApplicationFileName());
        EXPECT_EQ(WideString(L"\\"), GetTavrelAppGeoidsDataDir());
        EXPECT_EQ(WideString(L"D:\\Geo\\\\"), GetTavrelAppGeoDataDir());
    });
}

TEST_F(AppDirs, IgnoreWhatIsNotExactlyAKey) {
    struct {
        char const* content;
        char const* reason;
    } const cases[] = {
        {"[Directories]\nuser=D:\\Data\n", "a key in lower case"},
        {"[directories]\nUser=D:\\Data\n", "a section in lower case"},
        {"[Directories]\nUser =D:\\Data\n", "a blank behind the key"},
        {"[ Directories ]\nUser=D:\\Data\n", "blanks around the section"},
        {"User=D:\\Data\n", "no section"},
        {"[Other]\nUser=D:\\Data\n", "another section"},
        {"[Directories]\n;User=D:\\Data\n", "a comment"},
        {"[Directories]\nApp=x\nExe=x\nAppData=x\nData=x\n", "entries that have no key"},
        {"\n", "no settings"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.reason);
        directory_.MakeFile(kOverrides, c.content);
        InWindowsProgram(ExpectWindowsDefaults);
        directory_.Remove(kOverrides);
    }
}

// The text of a log, which is ASCII here, without the bytes that wide characters add.
std::string TextOf(std::string const& log) {
    std::string text;
    for (char const byte : log)
        if (byte != '\0') text += byte;
    return text;
}

char const* const kMalformed = "[Directories]\r\nUser=D:\\Data\r\nkeyonly\r\n";
char const* const kReport = "DBGCHK  qorutils/fs/qor_ini_file @ 237\r\n";

// The log lies where it does without a root directory: this is still to be found out.
TEST_F(AppDirs, KeepTheirDefaultsAndReportAMalformedFile) {
    directory_.MakeFile(kOverrides, kMalformed);
    directory_.MakeFolder("temp");
    InWindowsProgram([&] {
        ScopedVariable const temporary("TMPDIR", directory_.Path("temp").c_str());
        ExpectWindowsDefaults();
    });
    EXPECT_PRED_FORMAT2(testing::IsSubstring, kReport,
                        TextOf(directory_.Content("temp/qor1.log.txt")));
    directory_.Remove("temp/qor1.log.txt");
    directory_.Remove("temp/qor.seq.ini");
}

TEST_F(AppDirs, ReportAMalformedFileToTheLogThatAskedForThem) {
    directory_.MakeFile("bin\\qor_dir.ini", kMalformed);
    directory_.MakeFolder("bin");
    directory_.MakeFolder("temp");
    InProgram(directory_.WidePath("bin") + L"\\prog", [&] {
        ScopedVariable const temporary("TMPDIR", directory_.Path("temp").c_str());
        qor_logging::qor_flush_log();
        EXPECT_EQ(WideString(directory_.WidePath("bin").c_str()), GetRootDir());
    });
    EXPECT_PRED_FORMAT2(testing::IsSubstring, kReport,
                        TextOf(directory_.Content("temp/qor1.log.txt")));
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "started on",
                        TextOf(directory_.Content("bin/prog1.log.txt")));
    for (char const* const file :
         {"temp/qor1.log.txt", "temp/qor.seq.ini", "bin/prog1.log.txt", "bin/prog.seq.ini"})
        directory_.Remove(file);
}

TEST_F(AppDirs, KeepTheirDefaultsWhenTheFileCannotBeRead) {
    directory_.MakeFile(kOverrides, "");
    InWindowsProgram(ExpectWindowsDefaults);
    directory_.Remove(kOverrides);
    directory_.MakeFolder(kOverrides);
    InWindowsProgram(ExpectWindowsDefaults);
}

TEST_F(AppDirs, AreReadFromTheLiteralNameOnly) {
    directory_.MakeFolder("C:");
    directory_.MakeFolder("C:/App");
    directory_.MakeFile("C:/App/qor_dir.ini", "[Directories]\r\nUser=D:\\Data\r\n");
    InWindowsProgram(ExpectWindowsDefaults);

    directory_.MakeFile("bin\\qor_dir.ini", "[Directories]\r\nUser=D:\\Data\r\n");
    InProgram(directory_.WidePath("bin") + L"\\prog",
              [] { EXPECT_EQ(WideString(L"D:\\Data"), GetRootDir()); });
}

TEST_F(AppDirs, AreReadInTheLocalesEncoding) {
    directory_.MakeFile("\xC3\xA9\\qor_dir.ini", "[Directories]\nUser=\xE2\x82\xAC\n");
    InProgram(L"\xE9\\prog", [] {
        ScopedLocale const utf8("C.UTF-8");
        EXPECT_EQ(WideString(L"\x20AC"), GetRootDir());
    });
}

// Narrowed, the name would be empty; the files beside are what it must not become.
TEST_F(AppDirs, KeepTheirDefaultsWhenTheFolderCannotBeEncoded) {
    directory_.MakeFile("\\qor_dir.ini", "[Directories]\nUser=D:\\Data\n");
    directory_.MakeFile("qor_dir.ini", "[Directories]\nUser=D:\\Data\n");
    InProgram(L"\x20AC\\prog", [] {
        ScopedLocale const ascii("C");
        EXPECT_EQ(WideString(L"\x20AC"), GetRootDir());
        EXPECT_EQ(WideString(L"\x20AC\\Geo\\"), GetTavrelAppGeoDataDir());
    });
}

TEST_F(AppDirs, StayAsTheyWereFirst) {
    InWindowsProgram([&] {
        ExpectWindowsDefaults();
        TemporaryDirectory elsewhere;
        elsewhere.MakeFile(kOverrides, "[Directories]\r\nUser=D:\\Data\r\n");
        ASSERT_EQ(0, chdir(elsewhere.Path("").c_str()));
        qor_appdirs::SetModuleFileNameHook(nullptr);
        ExpectWindowsDefaults();
    });
}

TEST_F(AppDirs, AreHandedOutAsCopies) {
    InWindowsProgram([] {
        WideString root = GetRootDir();
        root += L"\\Logs";
        root.SetAt(0, L'X');
        ExpectWindowsDefaults();
    });
}

// ---- The end of the process ----

void ExitUnlessDirectoriesAreEmpty() {
    constexpr int kNotEmpty = 3;
    CApplicationDirectories const none;
    if (GetApplicationFileName() != none || !GetExeDir().IsEmpty() ||
        GetTavrelAppGeoDataDir() != L"\\")
        _exit(kNotEmpty);
}

// The handler runs after the destructor of the table, which is made later.
TEST_F(AppDirs, AreEmptyOnceTheTableIsDestroyed) {
    InWindowsProgram([] {
        ASSERT_EQ(0, std::atexit(ExitUnlessDirectoriesAreEmpty));
        ExpectWindowsDefaults();
    });
}

}  // namespace
