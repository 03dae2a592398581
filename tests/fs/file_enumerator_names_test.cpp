#include <qorutils/fs/file_enumerator.h>

#include <clocale>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/turkish_locale.h"
#include "support/working_directory.h"

namespace {

using namespace base;
using Names = std::multiset<std::wstring>;

constexpr int kAll = kEnumFiles | kEnumDirectories | kEnumAllTypes;

Names List(TemporaryDirectory const& directory, wchar_t const* pattern, bool recursive = false) {
    TFileEnumerator enumerator(directory.WidePath("").c_str(), recursive, kAll, pattern);
    Names names;
    for (auto name = enumerator.Next(); !name.IsEmpty(); name = enumerator.Next())
        names.insert(name.c_str());
    return names;
}

bool Matches(char const* name, wchar_t const* pattern) {
    return !TFileEnumerator(L"/", false, kAll | kEnumIncludeDotDot, pattern).ShouldSkip(name);
}

// ---- Patterns ----

struct PatternCase {
    wchar_t const* pattern;
    char const* name;
    bool matches;
};

PatternCase const kPatterns[] = {
    {L"", "anything", true},
    {L"abc", "abc", true},
    {L"abc", "ab", false},
    {L"abc", "abcd", false},
    {L"ABC", "abc", true},
    {L"abc", "ABC", true},
    {L"a?c", "abc", true},
    {L"a?c", "abbc", false},
    {L"a?c", "ac", false},
    {L"?", "a", true},
    {L"?", "ab", false},
    {L"??", "a", false},
    {L"*", "a", true},
    {L"***", "a", true},
    {L"*.TXT", "a.txt", true},
    {L"*.TXT", "b.Txt", true},
    {L"*.txt", "a.txt.bak", false},
    {L"*.txt", ".txt", true},
    {L"*.*", "noext", false},  // on purpose: no dot, no match
    {L"*.*", "a.", true},
    {L"a*", "a", true},
    {L"a*", "ba", false},
    {L"a*c", "abbbc", true},
    {L"a*c", "abcb", false},
    {L"*b*", "abc", true},
    {L"*b*", "b", true},
    {L"*b*", "ac", false},
    {L"*ab", "aab", true},      // the star gives back
    {L"*aab", "aaaab", true},   // several times
    {L"*ab*ab", "abab", true},  // only the last star has to
    {L"*ab*ab", "aba", false},
    {L"a*b*c", "aXbXbXc", true},
    {L"a**c", "ac", true},
    {L"*?", "a", true},
    {L"*?", "abc", true},
    {L"?*", "a", true},
    {L"?*?", "a", false},
    {L"abc*", "abc", true},
    {L"abc***", "abc", true},
    {L"abc*?", "abc", false},
    {L"[ab]", "a", false},  // no classes
    {L"[ab]", "[ab]", true},
    {L"a\\*", "a*", false},  // no escapes
    {L"*\x7F", "a\x7F", true},
};

TEST(FileEnumeratorPattern, SelectsNames) {
    for (PatternCase const& c : kPatterns)
        EXPECT_EQ(c.matches, Matches(c.name, c.pattern)) << c.name << " by " << c.pattern;
}

TEST(FileEnumeratorPattern, EndsAtItsFirstZeroAndMatchesNothingWhenThatIsFirst) {
    using WideString = qor_text::CQorStringT<wchar_t>;
    TFileEnumerator cut(L"/", false, kAll, WideString(L"a*\0b", 4));
    EXPECT_FALSE(cut.ShouldSkip("axx"));
    TFileEnumerator empty(L"/", false, kAll, WideString(L"\0a", 2));
    EXPECT_TRUE(empty.ShouldSkip("a"));
}

// Exponential without the rule that only the last star is tried again.
TEST(FileEnumeratorPattern, DecidesManyStarsAtOnce) {
    std::wstring pattern;
    for (int i = 0; i < 120; ++i) pattern += L"*a";
    EXPECT_FALSE(Matches((std::string(250, 'a') + "b").c_str(), pattern.c_str()));
    EXPECT_TRUE(Matches(std::string(250, 'a').c_str(), pattern.c_str()));
}

TEST(FileEnumeratorPattern, TakesBytesForCharacters) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_FALSE(Matches("\u00FC", L"?"));
    EXPECT_TRUE(Matches("\u00FC", L"??"));
    EXPECT_TRUE(Matches("\u00FC", L"*"));
    EXPECT_TRUE(Matches("a\u00FCb", L"A\u00FCB"));
    EXPECT_FALSE(Matches("\u00FC", L"\u00DC"));  // one case only
}

TEST(FileEnumeratorPattern, FollowsTheCaseOfTheLocale) {
    TurkishLocale const turkish;
    EXPECT_TRUE(Matches("I", L"i"));
    ScopedLocale const restorer("C");
    ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, turkish.name()));
    EXPECT_FALSE(Matches("I", L"i"));
    EXPECT_TRUE(Matches("A", L"a"));
}

TEST(FileEnumeratorPattern, MatchesNothingWhenTheLocaleCannotEncodeIt) {
    ScopedLocale const locale("C");
    for (char const* name : {"a", "?", "", "a\\"}) EXPECT_FALSE(Matches(name, L"*\u4E2D")) << name;
}

TEST(FileEnumeratorPattern, AppliesToAListing) {
    TemporaryDirectory directory;
    for (char const* name : {"a.txt", "b.Txt", "c.text"}) directory.MakeFile(name, "");
    directory.MakeFolder("d.TXT");
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"d.TXT"}), List(directory, L"*.TXT"));
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"c.text", L"d.TXT"}), List(directory, L""));
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"c.text", L"d.TXT"}), List(directory, nullptr));
    EXPECT_EQ(Names(), List(directory, L"*.doc"));
}

// ---- ShouldSkip ----

TEST(FileEnumeratorShouldSkip, LooksAtTheNameBehindTheLastSeparator) {
    TFileEnumerator enumerator(L"/", false, kAll, L"a*");
    for (char const* path : {"abc", "x/abc", "x\\abc", "/x/y\\abc", "x\\y/abc"})
        EXPECT_FALSE(enumerator.ShouldSkip(path)) << path;
    for (char const* path : {"xabc", "abc/x", "abc\\x", "abc/", ""})
        EXPECT_TRUE(enumerator.ShouldSkip(path)) << path;
}

TEST(FileEnumeratorShouldSkip, SkipsDotsUnlessDotDotIsAskedFor) {
    TFileEnumerator plain(L"/", false, kAll);
    TFileEnumerator withDotDot(L"/", false, kAll | kEnumIncludeDotDot);
    for (char const* path : {".", "/x/.", "x\\."}) {
        EXPECT_TRUE(plain.ShouldSkip(path)) << path;
        EXPECT_TRUE(withDotDot.ShouldSkip(path)) << path;
    }
    for (char const* path : {"..", "/x/..", "x\\.."}) {
        EXPECT_TRUE(plain.ShouldSkip(path)) << path;
        EXPECT_FALSE(withDotDot.ShouldSkip(path)) << path;
    }
    for (char const* path : {"...", ".a", "a.", "", "../a", "./a", "dir/"}) {
        EXPECT_FALSE(plain.ShouldSkip(path)) << path;
        EXPECT_FALSE(withDotDot.ShouldSkip(path)) << path;
    }
}

TEST(FileEnumeratorShouldSkip, TakesPathsBeyondAsciiApart) {
    ScopedLocale const locale("C.UTF-8");
    TFileEnumerator enumerator(L"/", false, kAll, L"\u4E2D*");
    EXPECT_FALSE(enumerator.ShouldSkip("\u4E2D"));
    EXPECT_FALSE(enumerator.ShouldSkip("\u00FC/\u4E2D.txt"));
    EXPECT_FALSE(enumerator.ShouldSkip("\u00FC\\\u4E2D.txt"));
    EXPECT_TRUE(enumerator.ShouldSkip("\u4E2D/\u00FC"));
    EXPECT_TRUE(TFileEnumerator(L"/", false, kAll).ShouldSkip("\u00FC/."));
}

// ---- Names on the disk ----

TEST(FileEnumeratorNames, AreWidenedAsTheLocaleSays) {
    ScopedLocale const locale("C.UTF-8");
    TemporaryDirectory directory;
    directory.MakeFile("\u00FC\u4E2D\U0001F600.txt", "");
    EXPECT_EQ(Names({L"\u00FC\u4E2D\U0001F600.txt"}), List(directory, L"*.TXT"));
}

TEST(FileEnumeratorNames, ThatTheLocaleCannotDecodeArePassedOver) {
    ScopedLocale const locale("C.UTF-8");
    TemporaryDirectory directory;
    for (char const* name : {"a", "a\xFF", "\xFF", "z", "z\xC3", "\xED\xA0\x80"})
        directory.MakeFile(name, "");
    EXPECT_EQ(Names({L"a", L"z"}), List(directory, L""));
    EXPECT_EQ(Names({L"a"}), List(directory, L"a"));
    EXPECT_EQ(Names({L"a", L"z"}), List(directory, L"*"));
}

TEST(FileEnumeratorNames, BeyondAsciiArePassedOverInTheCLocale) {
    ScopedLocale const locale("C");
    TemporaryDirectory directory;
    for (char const* name : {"a", "\u00FC", "a\xFF"}) directory.MakeFile(name, "");
    directory.MakeFolder("\u4E2D");
    EXPECT_EQ(Names({L"a"}), List(directory, L""));
}

TEST(FileEnumeratorNames, ThatTheLocaleCannotDecodeAreNotWalkedInto) {
    ScopedLocale const locale("C.UTF-8");
    TemporaryDirectory directory;
    directory.MakeFolder("a\xFF");
    directory.MakeFile("a\xFF/inside", "");
    directory.MakeFolder("\xFF");
    directory.MakeFile("\xFF/inside", "");
    WorkingDirectory const here(directory.Path(""));
    EXPECT_EQ(Names(), List(directory, L"", true));
}

// On purpose: what stands before a backslash is not looked at.
TEST(FileEnumeratorNames, WithABackslashAreSelectedByWhatFollowsIt) {
    TemporaryDirectory directory;
    directory.MakeFile("abc\\xyz", "");
    directory.MakeFile("abc\\.", "");
    EXPECT_EQ(Names({L"abc\\xyz"}), List(directory, L""));
    EXPECT_EQ(Names({L"abc\\xyz"}), List(directory, L"x*"));
    EXPECT_EQ(Names(), List(directory, L"a*"));
}

TEST(FileEnumeratorNames, MayBeAsLongAsTheFileSystemAllows) {
    TemporaryDirectory directory;
    directory.MakeFile(std::string(255, 'n'), "");
    EXPECT_EQ(Names({std::wstring(255, L'n')}), List(directory, L""));
}

}  // namespace
