#include <qorutils/formats/value_lists.h>

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/random_text.h"
#include "support/reference_values.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using namespace qor_formats;
using Wide = qor_text::CQorStringT<wchar_t>;
using Items = std::vector<std::wstring>;

Items Contents(StringArray const& array) {
    Items items;
    for (Wide const& item : array) {
        EXPECT_TRUE(IsTerminated(item));
        items.push_back(Content(item));
    }
    return items;
}

StringArray ArrayOf(Items const& items) {
    StringArray array;
    for (std::wstring const& item : items)
        array.Add(Wide(item.data(), static_cast<int>(item.size())));
    return array;
}

Items Delimited(std::wstring const& text, wchar_t const* delimiters) {
    StringArray out;
    EXPECT_TRUE(ParseDelimitersValues(Whole(text), out, delimiters));
    return Contents(out);
}

// ---- ParseValues ----

TEST(ParseValues, SplitsAtTheSeparator) {
    struct {
        wchar_t const* text;
        Items items;
    } const cases[] = {
        {L"a; b ;c", {L"a", L"b", L"c"}},
        {L"a", {L"a"}},
        {L"", {L""}},                            // an empty text is one empty item
        {L"   ", {L""}},                         //
        {L"a;", {L"a"}},                         // a separator at the end adds none
        {L"a;;", {L"a", L""}},                   // two in a row make one
        {L"a;;b", {L"a", L"", L"b"}},            //
        {L"a; ;b", {L"a", L"", L"b"}},           //
        {L";", {L";"}},                          // on purpose: one at the start ends it at once
        {L";a;b", {L";a;b"}},                    //
        {L";;", {L";;"}},                        //
        {L" ;a", {L"", L"a"}},                   // behind a blank it does not
        {L"a;b;", {L"a", L"b"}},                 //
        {L"\ta b\n;\r\nc\r\n", {L"a b", L"c"}},  // blanks within an item stay
        {L"a\r\nb;c\rd\ne", {L"ab", L"cde"}},    // line ends within an item go
        {L"a\n ;b", {L"a", L"b"}},               //
        {L"a,b", {L"a,b"}},
    };
    for (auto const& c : cases) {
        StringArray out;
        EXPECT_TRUE(ParseValues(c.text, out, ';', L"#"));
        EXPECT_EQ(c.items, Contents(out)) << c.text;
    }
}

TEST(ParseValues, StopsAtAForbiddenCharacterAndKeepsWhatItHad) {
    StringArray out;
    EXPECT_FALSE(ParseValues(L"a;#b", out, ';', L"#"));
    EXPECT_EQ(Items({L"a"}), Contents(out));
    EXPECT_FALSE(ParseValues(L"b;c;d!;e", out, ';', L"#!"));
    EXPECT_EQ(Items({L"a", L"b", L"c"}), Contents(out));
}

TEST(ParseValues, AppendsToWhatThereIs) {
    StringArray out = ArrayOf({L"old"});
    EXPECT_TRUE(ParseValues(L"new", out, ';', L""));
    EXPECT_EQ(Items({L"old", L"new"}), Contents(out));
}

TEST(ParseValues, ForbidsOnlyWhatIsLeftInTheItem) {
    StringArray out;
    EXPECT_TRUE(ParseValues(L" a\n; b\r", out, ';', L" \r\n;"));
    EXPECT_EQ(Items({L"a", L"b"}), Contents(out));
    EXPECT_FALSE(ParseValues(L"a b", out, ';', L" "));
    EXPECT_FALSE(ParseValues(L";a", out, ';', L";"));
}

TEST(ParseValues, TakesTheSeparatorAsAnUnsignedCharacter) {
    StringArray out;
    EXPECT_TRUE(ParseValues(L"a\u00E9b\u4EE9c", out, '\xE9', L""));
    EXPECT_EQ(Items({L"a", L"b\u4EE9c"}), Contents(out));
}

TEST(ParseValues, SplitsAtWhiteSpaceToo) {
    StringArray out;
    EXPECT_TRUE(ParseValues(L"a b  c ", out, ' ', L""));
    EXPECT_EQ(Items({L"a", L"b", L"", L"c"}), Contents(out));
    StringArray lines;
    EXPECT_TRUE(ParseValues(L"a\r\nb\n", lines, '\n', L"\r\n"));
    EXPECT_EQ(Items({L"a", L"b"}), Contents(lines));
}

TEST(ParseValues, SearchesNotBeyondAZero) {
    std::wstring const text(L"a;b\0c;d", 7);
    StringArray out;
    EXPECT_TRUE(ParseValues(Whole(text), out, ';', L""));
    EXPECT_EQ(Items({L"a", text.substr(2)}), Contents(out));
}

TEST(ParseValues, ForbidsNothingBeyondAZero) {
    std::wstring const text(L"a\0#", 3);
    StringArray out;
    EXPECT_TRUE(ParseValues(Whole(text), out, ';', L"#"));
    EXPECT_EQ(Items({text}), Contents(out));
}

TEST(ParseValues, SplitsAtZeros) {
    StringArray out;
    EXPECT_TRUE(ParseValues(Whole(std::wstring(L"a\0b", 3)), out, '\0', L""));
    EXPECT_TRUE(ParseValues(L"c", out, '\0', L""));
    EXPECT_TRUE(ParseValues(L"", out, '\0', L""));
    EXPECT_EQ(Items({L"a", L"b", L"c", L""}), Contents(out));
}

TEST(ParseValues, TakesTextsOutOfTheArrayItFills) {
    StringArray out = ArrayOf({L"a;b;c;d;e;f;g;h;#", L"#"});
    EXPECT_FALSE(ParseValues(out[0], out, ';', out[1]));
    EXPECT_EQ(Items({L"a;b;c;d;e;f;g;h;#", L"#", L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"}),
              Contents(out));
}

TEST(ParseValues, TakesALockedTextOutOfTheArrayItFills) {
    StringArray out = ArrayOf({L"a;b;c"});
    out[0].LockBuffer();
    EXPECT_TRUE(ParseValues(out[0], out, ';', L""));
    EXPECT_EQ(Items({L"a;b;c", L"a", L"b", L"c"}), Contents(out));
}

TEST(ParseValues, TrimsAsTheLocaleSays) {
    std::wstring const text = L"\u2003a\u2003;\u00A0b";
    {
        ScopedLocale const plain("C");
        StringArray out;
        ParseValues(Whole(text), out, ';', L"");
        EXPECT_EQ(Items({L"\u2003a\u2003", L"\u00A0b"}), Contents(out));
    }
    ScopedLocale const locale("C.UTF-8");
    StringArray out;
    ParseValues(Whole(text), out, ';', L"");
    EXPECT_EQ(Items({L"a", L"\u00A0b"}), Contents(out));
}

// ---- ParseDelimitersValues ----

TEST(ParseDelimitersValues, SplitsAtAnyOfThem) {
    struct {
        wchar_t const* text;
        wchar_t const* delimiters;
        Items items;
    } const cases[] = {
        {L"2015-06-01", L"-", {L"2015", L"06", L"01"}},
        {L"a-b:c", L":-", {L"a", L"b", L"c"}},
        {L"a--b", L"-", {L"a", L"-b"}},       // on purpose: a delimiter in front ends it
        {L"a-:b-c", L"-:", {L"a", L":b-c"}},  //
        {L"-5", L"-", {L"-5"}},               //
        {L"-", L"-", {L"-"}},                 //
        {L"a-", L"-", {L"a"}},                // one at the end adds none
        {L"a--", L"-", {L"a", L"-"}},         //
        {L"", L"-", {L""}},                   // an empty text is one empty item
        {L"   ", L"-", {L""}},                //
        {L"a - b", L"-", {L"a", L"b"}},       //
        {L"a- -b", L"-", {L"a", L"", L"b"}},  //
        {L" -b", L"-", {L"", L"b"}},          // behind a blank it is not in front
        {L"a  b", L" ", {L"a", L"b"}},        // the rest " b" is trimmed
        {L"a b c", L"", {L"a b c"}},          //
        {L"a\r\n-\nb\rc", L"-", {L"a", L"bc"}},
    };
    for (auto const& c : cases) EXPECT_EQ(c.items, Delimited(c.text, c.delimiters)) << c.text;
}

TEST(ParseDelimitersValues, AppendsToWhatThereIs) {
    StringArray out = ArrayOf({L"old"});
    EXPECT_TRUE(ParseDelimitersValues(L"new", out, L"-"));
    EXPECT_EQ(Items({L"old", L"new"}), Contents(out));
}

TEST(ParseDelimitersValues, SearchesNotBeyondAZero) {
    std::wstring const text(L"a-b\0c-d", 7);
    EXPECT_EQ(Items({L"a", text.substr(2)}), Delimited(text, L"-"));
    EXPECT_EQ(Items({std::wstring(L"\0-", 2)}), Delimited(std::wstring(L"\0-", 2), L"-"));
}

TEST(ParseDelimitersValues, TakesTextsOutOfTheArrayItFills) {
    StringArray out = ArrayOf({L"a-b-c-d-e-f-g-h", L"-"});
    EXPECT_TRUE(ParseDelimitersValues(out[0], out, out[1]));
    EXPECT_EQ(10, out.GetSize());
    EXPECT_TRUE(out[0] == L"a-b-c-d-e-f-g-h");
    EXPECT_TRUE(out[9] == L"h");
}

TEST(ParseDelimitersValues, LeavesTheTextAlone) {
    Wide const text(L" a ");
    wchar_t const* const characters = text.c_str();
    StringArray out;
    ParseDelimitersValues(text, out, L"-");
    ParseValues(text, out, '-', L"");
    EXPECT_TRUE(text == L" a ");
    EXPECT_EQ(characters, text.c_str());
}

TEST(ValueLists, FollowTheirRulesOverRandomTexts) {
    RandomText random(11);
    std::wstring const alphabet = L"ab; -\r\n#\t\u00E9";
    for (int round = 0; round < 5000; ++round) {
        std::wstring const text = random.Of(alphabet, random.Below(12));
        Items expected;
        bool const isGood = reference_values::ParseValues(text, expected, L';', L"#b");
        StringArray out;
        EXPECT_EQ(isGood, ParseValues(Whole(text), out, ';', L"#b"));
        EXPECT_EQ(expected, Contents(out)) << text;
        EXPECT_EQ(reference_values::ParseDelimitersValues(text, L"-; "), Delimited(text, L"-; "));
    }
}

// ---- Joining and searching ----

TEST(StringArrayToString, JoinsWithOneSeparator) {
    EXPECT_TRUE(StringArrayToString(ArrayOf({L"x", L"y"}), L',') == L"x,y");
    EXPECT_TRUE(StringArrayToString(ArrayOf({L"x"}), L',') == L"x");
    EXPECT_TRUE(StringArrayToString(ArrayOf({L"", L"", L""}), L'\u4E2D') == L"\u4E2D\u4E2D");
    EXPECT_TRUE(StringArrayToString(ArrayOf({L""}), L',').IsEmpty());
    EXPECT_TRUE(IsNil(StringArrayToString(StringArray(), L',')));
}

TEST(StringArrayToString, KeepsZeros) {
    std::wstring const item(L"a\0b", 3);
    EXPECT_EQ(item + L'\0' + item, Content(StringArrayToString(ArrayOf({item, item}), L'\0')));
}

TEST(StringArrayToString, TakesOneBufferOfTheRightSize) {
    Wide const joined = StringArrayToString(ArrayOf(Items(1000, L"item")), L';');
    EXPECT_EQ(4999, joined.GetLength());
    EXPECT_EQ(4999, joined.GetAllocLength());
}

TEST(IsStringInStringArray, ComparesWholeItemsWithCase) {
    StringArray const array = ArrayOf({L"one", L"", L"Two"});
    EXPECT_TRUE(IsStringInStringArray(array, L"one"));
    EXPECT_TRUE(IsStringInStringArray(array, L"Two"));
    EXPECT_TRUE(IsStringInStringArray(array, L""));
    EXPECT_FALSE(IsStringInStringArray(array, L"two"));
    EXPECT_FALSE(IsStringInStringArray(array, L"on"));
    EXPECT_FALSE(IsStringInStringArray(array, L"one "));
    EXPECT_FALSE(IsStringInStringArray(StringArray(), L""));
}

TEST(IsStringInStringArray, ComparesUpToAZero) {
    StringArray const array = ArrayOf({std::wstring(L"a\0b", 3)});
    EXPECT_TRUE(IsStringInStringArray(array, L"a"));
    EXPECT_TRUE(IsStringInStringArray(array, Whole(std::wstring(L"a\0c", 3))));
    EXPECT_FALSE(IsStringInStringArray(array, L"a b"));
}

TEST(IsUIntInUIntArray, ComparesAsUnsigned) {
    UIntArray array;
    EXPECT_FALSE(IsUIntInUIntArray(array, 0));
    for (unsigned int const item : {7u, 0xFFFFFFFFu, 0x80000000u}) array.Add(item);
    EXPECT_TRUE(IsUIntInUIntArray(array, 7));
    EXPECT_TRUE(IsUIntInUIntArray(array, -1));
    EXPECT_TRUE(IsUIntInUIntArray(array, INT_MIN));
    EXPECT_FALSE(IsUIntInUIntArray(array, 0));
    EXPECT_FALSE(IsUIntInUIntArray(array, INT_MAX));
}

}  // namespace
