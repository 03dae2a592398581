#include <qorutils/fs/file_funcs.h>

#include <string>

#include <gtest/gtest.h>

#include "support/text_literal.h"

namespace {

using namespace FileFuncs;
using WideString = qor_text::CQorStringT<wchar_t>;

TEST(IsDots, IsExact) {
    EXPECT_TRUE(IsDots(L"."));
    EXPECT_TRUE(IsDots(L".."));
    EXPECT_FALSE(IsDots(nullptr));
    for (wchar_t const* name : {L"", L"...", L"./", L".a", L"a", L"/.", L" ."})
        EXPECT_FALSE(IsDots(name)) << name;
}

TEST(IsPathOnFlashCard, IsNeverTrue) {
    for (wchar_t const* path : {L"", L"/", L"/media/card", L"\\Storage Card"})
        EXPECT_FALSE(IsPathOnFlashCard(path)) << path;
    EXPECT_FALSE(IsPathOnFlashCard(nullptr));
}

TEST(CompactPath, CutsNameAndSeparator) {
    struct {
        wchar_t const* path;
        bool keepFileName;
        wchar_t separator;
        wchar_t const* withoutContext;
        wchar_t const* withContext;
    } const cases[] = {
        {L"/a/b/", true, L'/', L"/a/b", L"/a/b/"},
        {L"/a/b/c.txt", false, L'/', L"/a/b", L"/a/b"},
        {L"/a/b//c.txt", false, L'/', L"/a/b", L"/a/b/"},
        {L"/a/b/c.txt", true, L'/', L"/a/b/c.txt", L"/a/b/c.txt"},
        {L"/a/b/", false, L'/', L"/a/b", L"/a/b"},
        {L"a/b//", false, L'/', L"a/b", L"a/b/"},
        {L"a//", false, L'/', L"a/", L"a/"},  // too short to lose more
        {L"a/", true, L'/', L"a/", L"a/"},
        {L"ab/", true, L'/', L"ab", L"ab/"},
        {L"a//", true, L'/', L"a/", L"a//"},  // one only
        {L"", true, L'/', L"", L""},
        {L"", false, L'/', L"", L""},
        {L"/", false, L'/', L"", L""},
        {L"name", false, L'/', L"name", L"name"},
        {L"C:\\a\\", true, L'\\', L"C:\\a", L"C:\\a\\"},
        {L"C:\\a\\b.txt", false, L'\\', L"C:\\a\\b.txt", L"C:\\a\\b.txt"},  // only '/' is sought
        {L"C:\\a\\/b", false, L'\\', L"C:\\a", L"C:\\a\\"},
        {L"/a/b/", true, L'\\', L"/a/b/", L"/a/b/"},
        {L"/a/.../b/", true, L'/', L"/a/.../b/", L"/a/.../b/"},
        {L"/a/b...c", false, L'/', L"/a/b...c", L"/a/b...c"},
        {L".../", true, L'/', L".../", L".../"},
        {L"/a..b/", true, L'/', L"/a..b", L"/a..b/"},
        {L"\u4E2D\u4E2D/", true, L'/', L"\u4E2D\u4E2D", L"\u4E2D\u4E2D/"},
    };
    int context = 0;
    for (auto const& c : cases) {
        EXPECT_EQ(WideString(c.withoutContext),
                  CompactPath(nullptr, c.path, c.keepFileName, c.separator))
            << c.path;
        EXPECT_EQ(WideString(c.withContext),
                  CompactPath(&context, c.path, c.keepFileName, c.separator))
            << c.path;
    }
    EXPECT_EQ(WideString(), CompactPath(nullptr, nullptr, false, L'/'));
}

TEST(CompactPath, AsksTheContextNothing) {
    void* const nowhere = reinterpret_cast<void*>(1);
    EXPECT_EQ(WideString(L"/a/b/"), CompactPath(nowhere, L"/a/b/", true, L'/'));
}

constexpr wchar_t kForbidden[] = L"<>\\/\":?*|";

TEST(IsFileNameCorrect, RefusesNineCharactersAndTheEmptyName) {
    EXPECT_FALSE(IsFileNameCorrect(L""));
    for (wchar_t const* c = kForbidden; *c != L'\0'; ++c) {
        EXPECT_FALSE(IsFileNameCorrect(WideString(*c))) << *c;
        EXPECT_FALSE(IsFileNameCorrect(L"ab" + WideString(*c))) << *c;
        EXPECT_FALSE(IsFileNameCorrect(WideString(*c) + L"ab")) << *c;
    }
    for (wchar_t const* name : {L"a", L".", L"..", L" ", L"a b.txt", L"';&%$#\t", L"\u4E2D"})
        EXPECT_TRUE(IsFileNameCorrect(name)) << name;
}

TEST(IsFileNameCorrect, LooksBehindAZero) {
    EXPECT_TRUE(IsFileNameCorrect(WideString(L"a\0b", 3)));
    EXPECT_FALSE(IsFileNameCorrect(WideString(L"a\0:", 3)));
}

TEST(CreateCorrectFileName, ReplacesForbiddenCharacters) {
    struct {
        wchar_t const* name;
        wchar_t replacement;
        wchar_t const* result;
    } const cases[] = {
        {L"a:b*c", L'-', L"a-b-c"},
        {L"a:b*c", L':', L"a_b_c"},
        {kForbidden, L'x', L"xxxxxxxxx"},
        {kForbidden, L'|', L"_________"},
        {L"plain", L'-', L"plain"},
        {L"plain", L'?', L"plain"},
        {L"", L'-', L"-"},
        {L"", L':', L":"},  // on purpose: as it is
        {L"", L'?', L"?"},
        {L"\u4E2D:\u4E2D", L'\u00FC', L"\u4E2D\u00FC\u4E2D"},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(WideString(c.result), CreateCorrectFileName(c.name, c.replacement))
            << c.name << " by " << c.replacement;
    }
}

TEST(CreateCorrectFileName, ReplacesBehindAZeroAndByOne) {
    WideString const behind = CreateCorrectFileName(WideString(L"a\0:b", 4), L'-');
    EXPECT_EQ(std::wstring(L"a\0-b", 4), Content(behind));
    WideString const byZero = CreateCorrectFileName(L"a:b", L'\0');
    EXPECT_EQ(std::wstring(L"a\0b", 3), Content(byZero));
    EXPECT_EQ(std::wstring(1, L'\0'), Content(CreateCorrectFileName(L"", L'\0')));
}

TEST(CreateCorrectFileName, LeavesTheNameAsItIs) {
    WideString const name(L"a:b");
    CreateCorrectFileName(name, L'-');
    EXPECT_EQ(WideString(L"a:b"), name);
}

}  // namespace
