#include <qorutils/fs/generated_names.h>

#include <unistd.h>

#include <climits>
#include <cstdint>
#include <fstream>
#include <functional>
#include <locale>
#include <ostream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>
#include <boost/filesystem/operations.hpp>

#include "support/own_process.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"

namespace {

using FileFuncs::NextDefaultName;
using qor_text::CQorStringT;
using WideString = CQorStringT<wchar_t>;

static_assert(std::is_same<decltype(SeqFileNames::maxNumber), std::uint32_t>::value, "");

WideString Wide(std::string const& ascii) {
    return WideString(std::wstring(ascii.begin(), ascii.end()).c_str());
}

// ---- NextDefaultName ----

class NextDefaultNameTest : public testing::Test {
  protected:
    WideString Next(WideString const& name, WideString const& ext) const {
        return NextDefaultName(Folder(), name, ext);
    }

    WideString Folder() const { return directory_.WidePath("").c_str(); }

    // Next to what the working directory holds: here, the files of the test.
    void InWorkingDirectory(std::function<void()> const& action) const {
        InOwnProcess([&](std::ostream&) {
            ASSERT_EQ(0, chdir(directory_.Path("").c_str()));
            action();
        });
    }

    TemporaryDirectory directory_;
};

TEST_F(NextDefaultNameTest, FindsTheFirstNumberThatIsFree) {
    directory_.MakeFile("Rec02.wav", "");
    directory_.MakeFile("Rec03.wav", "");
    directory_.MakeFile("Rec05.wav", "");
    EXPECT_EQ(WideString(L"Rec04"), Next(L"Rec01", L".wav"));
    EXPECT_EQ(WideString(L"Rec04"), Next(L"Rec01", L".wav"));  // nothing was reserved
    EXPECT_EQ(WideString(L"Rec06"), Next(L"Rec04", L".wav"));
}

TEST_F(NextDefaultNameTest, NeverReturnsTheGivenName) {
    EXPECT_EQ(WideString(L"Track10"), Next(L"Track9", L""));
}

TEST_F(NextDefaultNameTest, CountsAsNumbersAtTheEndOfATextAreCounted) {
    struct {
        wchar_t const* name;
        wchar_t const* next;
    } const cases[] = {
        {L"Track", L"Track1"},  // no number is 0
        {L"P0099", L"P0100"},   // as wide as it was
        {L"P99", L"P100"},
        {L"P00", L"P01"},
        {L"2x", L"2x1"},  // only a number at the end
        {L"", L"1"},
        {L"N18446744073709551615", L"N18446744073709551616"},  // wider than any integer
    };
    for (auto const& c : cases) EXPECT_EQ(WideString(c.next), Next(c.name, L".gpx")) << c.name;
}

TEST_F(NextDefaultNameTest, CountsAsFarAsNamesGo) {
    std::string const last(NAME_MAX, '9');
    EXPECT_EQ(Wide(last), Next(Wide(std::string(NAME_MAX - 1, '9') + "8"), L""));
    EXPECT_THROW(Next(Wide(last), L""), boost::filesystem::filesystem_error);
}

TEST_F(NextDefaultNameTest, ComparesTheNameWithItsExtension) {
    directory_.MakeFile("Rec1", "");
    directory_.MakeFile("Rec1.mp3", "");
    EXPECT_EQ(WideString(L"Rec1"), Next(L"Rec", L".wav"));
    EXPECT_EQ(WideString(L"Rec2"), Next(L"Rec", L".mp3"));
    EXPECT_EQ(WideString(L"Rec2"), Next(L"Rec", L""));
    EXPECT_EQ(WideString(L"Rec1"), Next(L"Rec", L"mp3"));
}

TEST_F(NextDefaultNameTest, TakesFoldersAndWhatLinksLeadToForTaken) {
    directory_.MakeFolder("Rec1");
    directory_.MakeLink("Rec2", "Rec1");
    directory_.MakeLink("Rec3", "/dev/null");
    directory_.MakeSparseFile("Rec4", 5LL << 30);
    EXPECT_EQ(WideString(L"Rec5"), Next(L"Rec", L""));
}

TEST_F(NextDefaultNameTest, TakesADanglingLinkForFree) {
    directory_.MakeLink("Rec1", "missing");
    EXPECT_EQ(WideString(L"Rec1"), Next(L"Rec", L""));
}

TEST_F(NextDefaultNameTest, FindsEveryNameFreeWhereThereIsNoDirectory) {
    directory_.MakeFile("file", "");
    EXPECT_EQ(WideString(L"Rec1"), NextDefaultName(Folder() + L"missing", L"Rec", L""));
    EXPECT_EQ(WideString(L"Rec1"), NextDefaultName(Folder() + L"file", L"Rec", L""));
}

TEST_F(NextDefaultNameTest, LeavesBackslashesInTheDirectory) {
    directory_.MakeFolder("a\\b");
    directory_.MakeFile("a\\b/Rec1", "");
    EXPECT_EQ(WideString(L"Rec2"), NextDefaultName(Folder() + L"a\\b", L"Rec", L""));
}

TEST_F(NextDefaultNameTest, SearchesTheWorkingDirectoryForAnEmptyDirectory) {
    directory_.MakeFile("Rec1", "");
    InWorkingDirectory([] { EXPECT_EQ(WideString(L"Rec2"), NextDefaultName(L"", L"Rec", L"")); });
}

TEST_F(NextDefaultNameTest, ReadsEachTextUpToItsFirstZero) {
    directory_.MakeFile("Rec1", "");
    directory_.MakeFile("Rec2.wav", "");
    WideString const folder = Folder() + WideString(L"\0missing", 8);
    EXPECT_EQ(WideString(L"Rec3"),
              NextDefaultName(folder, WideString(L"Rec1\0008", 6), WideString(L".wav\0x", 6)));
    EXPECT_EQ(WideString(L"Rec2"), Next(WideString(L"Rec\0007", 5), L""));
}

TEST_F(NextDefaultNameTest, ThrowsWhenTheSystemCannotTell) {
    directory_.MakeLink("circle", "circle");
    std::wstring const tooLong(NAME_MAX + 1, L'x');
    EXPECT_THROW(NextDefaultName(Folder() + L"circle", L"Rec", L""),
                 boost::filesystem::filesystem_error);
    EXPECT_THROW(Next(tooLong.c_str(), L""), std::runtime_error);
}

TEST_F(NextDefaultNameTest, FindsNamesInTheLocalesEncoding) {
    ScopedLocale const utf8("C.UTF-8");
    directory_.MakeFolder("\xC3\xA9");
    directory_.MakeFile(
        "\xC3\xA9/\xE2\x82\xAC"
        "1.\xC3\xA9",
        "");
    EXPECT_EQ(WideString(L"\x20AC"
                         L"2"),
              NextDefaultName(Folder() + L"\xE9", L"\x20AC", L".\xE9"));
}

// Narrowed, such a directory would be the working directory, and such a file the directory itself.
TEST_F(NextDefaultNameTest, ReturnsTheFirstCandidateUntestedWhenItCannotBeEncoded) {
    directory_.MakeFile("Rec1", "");
    InWorkingDirectory([&] {
        ScopedLocale const ascii("C");
        EXPECT_EQ(WideString(L"Rec1"), NextDefaultName(L"\x20AC", L"Rec", L""));
        EXPECT_EQ(WideString(L"\x20AC"
                             L"8"),
                  Next(L"\x20AC"
                       L"7",
                       L""));
        EXPECT_EQ(WideString(L"Rec1"), Next(L"Rec", L".\x20AC"));
    });
}

// ---- SeqFileNames ----

class SeqFileNamesTest : public testing::Test {
  protected:
    SeqFileNames Names(std::uint32_t maxNumber) const {
        return SeqFileNames(Folder(), L"run", L".txt", maxNumber);
    }

    WideString Folder() const { return directory_.WidePath("logs").c_str(); }

    WideString Name(std::string const& number) const {
        return Folder() + Wide("//run" + number + ".txt");
    }

    void SetUp() override { directory_.MakeFolder("logs"); }
    void TearDown() override {
        if (directory_.Has(kCounter)) directory_.Remove(kCounter);
    }

    static constexpr char const* kCounter = "logs/run.seq.ini";

    TemporaryDirectory directory_;
};
constexpr char const* SeqFileNamesTest::kCounter;

TEST_F(SeqFileNamesTest, StartAtOneAndKeepTheNumberInAFile) {
    EXPECT_EQ(Name("1"), Names(100).getNext());
    EXPECT_EQ("1", directory_.Content(kCounter));
}

TEST_F(SeqFileNamesTest, StartAgainBehindTheLastNumber) {
    SeqFileNames const names = Names(3);
    for (char const* const number : {"1", "2", "3", "1", "2"}) {
        EXPECT_EQ(Name(number), names.getNext());
        EXPECT_EQ(number, directory_.Content(kCounter));
    }
}

TEST_F(SeqFileNamesTest, GoOnWhereOthersOfThatPrefixStopped) {
    Names(10).getNext();
    Names(20).getNext();
    EXPECT_EQ(Folder() + L"//run3.log", SeqFileNames(Folder(), L"run", L".log", 5).getNext());
}

TEST_F(SeqFileNamesTest, GoOnBehindTheNumberInTheFile) {
    struct {
        std::string content;
        std::uint32_t maxNumber;
        char const* number;
    } const cases[] = {
        {"7", 100, "8"},
        {"99", 100, "100"},
        {"100", 100, "1"},
        {"101", 100, "1"},  // the limit was lowered
        {"0", 100, "1"},
        {"7", 0, "1"},
        {"", 100, "1"},
        {"abc", 100, "1"},
        {std::string("\0", 1), 100, "1"},
        {" \t\r\n7\r\n", 100, "8"},  // white space before it
        {"+7", 100, "8"},
        {"007", 100, "8"},
        {"7abc", 100, "8"},  // ends where the digits end
        {"7 8", 100, "8"},
        {"7.9", 100, "8"},
        {"1,000", 100, "2"},  // not grouped
        {"0x10", 100, "1"},   // not hexadecimal
        {"010", 100, "11"},   // nor octal
        {"- 7", 100, "1"},
        {"4294967294", 4294967295, "4294967295"},
        {"4294967295", 4294967295, "1"},
        {"4294967296", 4294967295, "1"},  // more than 32 bits
        {"99999999999999999999999", 4294967295, "1"},
        {"-5", 4294967295, "4294967292"},  // counts downwards
        {"-4294967290", 100, "7"},
        {"-4294967296", 100, "1"},
        {"-5", 100, "1"},
    };
    for (auto const& c : cases) {
        std::ofstream(directory_.Path(kCounter)) << c.content;
        EXPECT_EQ(Name(c.number), Names(c.maxNumber).getNext()) << c.content;
        EXPECT_EQ(c.number, directory_.Content(kCounter)) << c.content;
    }
}

TEST_F(SeqFileNamesTest, UseTheFieldsAsTheyAreNow) {
    SeqFileNames names(L"", L"", L"", 0);
    names.directory = Folder();
    names.prefix = L"run";
    names.suffix = L".txt";
    names.maxNumber = 2;
    names.getNext();
    EXPECT_EQ(Name("2"), names.getNext());
}

TEST_F(SeqFileNamesTest, MayHaveEmptyTexts) {
    SeqFileNames const names(Folder(), L"", L"", 5);
    EXPECT_EQ(Folder() + L"//1", names.getNext());
    EXPECT_EQ(Folder() + L"//2", names.getNext());
    EXPECT_EQ("2", directory_.Content("logs/.seq.ini"));
    directory_.Remove("logs/.seq.ini");
}

TEST_F(SeqFileNamesTest, KeepTheCounterUnderSlashesButReturnBackslashes) {
    WideString const folder = Wide(directory_.Path("")) + L"\\logs";
    SeqFileNames const names(folder, L"..\\logs\\run", L"\\x", 5);
    EXPECT_EQ(folder + L"//..\\logs\\run1\\x", names.getNext());
    EXPECT_EQ(folder + L"//..\\logs\\run2\\x", names.getNext());
    EXPECT_EQ("2", directory_.Content(kCounter));
}

TEST_F(SeqFileNamesTest, ReadEachTextUpToItsFirstZero) {
    SeqFileNames const names(Folder() + WideString(L"\0x", 2), WideString(L"run\0x", 5),
                             WideString(L".txt\0x", 6), 5);
    EXPECT_EQ(Name("1"), names.getNext());
    EXPECT_EQ("1", directory_.Content(kCounter));
}

TEST_F(SeqFileNamesTest, FollowALinkToTheCounter) {
    directory_.MakeFile("counter", "41");
    directory_.MakeLink(kCounter, "../counter");
    EXPECT_EQ(Name("42"), Names(100).getNext());
    EXPECT_EQ("42", directory_.Content("counter"));
}

TEST_F(SeqFileNamesTest, RepeatTheNumberWhenThereIsNoDirectory) {
    SeqFileNames const names(Folder() + L"/missing", L"run", L"", 5);
    EXPECT_EQ(Folder() + L"/missing//run1", names.getNext());
    EXPECT_EQ(Folder() + L"/missing//run1", names.getNext());
}

TEST_F(SeqFileNamesTest, RepeatTheNumberWhenTheCounterIsAFolder) {
    directory_.MakeFolder(kCounter);
    EXPECT_EQ(Name("1"), Names(5).getNext());
    EXPECT_EQ(Name("1"), Names(5).getNext());
}

TEST_F(SeqFileNamesTest, RepeatTheNumberWhenTheDiskIsFull) {
    directory_.MakeLink(kCounter, "/dev/full");
    EXPECT_EQ(Name("1"), Names(5).getNext());
    EXPECT_EQ(Name("1"), Names(5).getNext());
}

TEST_F(SeqFileNamesTest, CountInTheLocalesEncoding) {
    ScopedLocale const utf8("C.UTF-8");
    directory_.MakeFolder("\xC3\xA9");
    WideString const folder = Wide(directory_.Path("")) + L"\xE9";
    EXPECT_EQ(folder +
                  L"//\x20AC"
                  L"1.\xE9",
              SeqFileNames(folder, L"\x20AC", L".\xE9", 5).getNext());
    EXPECT_EQ("1", directory_.Content("\xC3\xA9/\xE2\x82\xAC.seq.ini"));
    directory_.Remove("\xC3\xA9/\xE2\x82\xAC.seq.ini");
}

// What is made instead, in the working directory or in the given one, fails the test.
TEST_F(SeqFileNamesTest, MakeNoCounterWhenItsNameCannotBeEncoded) {
    InOwnProcess([&](std::ostream&) {
        ASSERT_EQ(0, chdir(directory_.Path("").c_str()));
        ScopedLocale const ascii("C");
        SeqFileNames const inFolder(L"\x20AC", L"run", L".txt", 5);
        SeqFileNames const withPrefix(Folder(), L"\x20AC", L"", 5);
        for (int repeat = 0; repeat < 2; ++repeat) {
            EXPECT_EQ(WideString(L"\x20AC//run1.txt"), inFolder.getNext());
            EXPECT_EQ(Folder() +
                          L"//\x20AC"
                          L"1",
                      withPrefix.getNext());
        }
    });
}

TEST_F(SeqFileNamesTest, CountWhenOnlyTheSuffixCannotBeEncoded) {
    ScopedLocale const ascii("C");
    SeqFileNames const names(Folder(), L"run", L".\x20AC", 5);
    names.getNext();
    EXPECT_EQ(Folder() + L"//run2.\x20AC", names.getNext());
}

TEST_F(SeqFileNamesTest, CountButReturnNothingFrom2048CharactersOn) {
    WideString folder = Folder();
    WideString const behind = L"//run1.txt";
    while (folder.GetLength() + behind.GetLength() < 2046) folder += L"/.";
    if (folder.GetLength() + behind.GetLength() < 2047) folder += L"/";
    EXPECT_EQ(folder + behind, SeqFileNames(folder, L"run", L".txt", 9).getNext());
    EXPECT_EQ(WideString(), SeqFileNames(folder + L"/", L"run", L".txt", 9).getNext());
    EXPECT_EQ("2", directory_.Content(kCounter));
}

struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

class ScopedGlobalLocale {
  public:
    explicit ScopedGlobalLocale(std::locale const& locale)
        : previous_(std::locale::global(locale)) {}
    ~ScopedGlobalLocale() { std::locale::global(previous_); }
    ScopedGlobalLocale(ScopedGlobalLocale const&) = delete;
    ScopedGlobalLocale& operator=(ScopedGlobalLocale const&) = delete;

  private:
    std::locale previous_;
};

TEST_F(SeqFileNamesTest, DoNotGroupDigitsInAnyLocale) {
    ScopedGlobalLocale const grouped(std::locale(std::locale::classic(), new Grouped));
    std::ofstream(directory_.Path(kCounter)) << "12345";
    EXPECT_EQ(Name("12346"), Names(99999).getNext());
    EXPECT_EQ("12346", directory_.Content(kCounter));
}

}  // namespace
