#include <qorutils/text/utf8.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/reference_utf8.h"
#include "support/scoped_locale.h"
#include "support/utf8_conversion.h"

using namespace utf8_conversion;

// ---- Wide strings with characters that cannot be encoded ----

namespace {

std::wstring WithCharacter(std::wstring text, std::size_t at, std::uint32_t value) {
    text[at] = static_cast<wchar_t>(value);
    return text;
}

}  // namespace

TEST(DoWcsrtombs, StopsAtACharacterThatCannotBeEncoded) {
    Converter<wchar_t> converter(64);
    auto const found = converter.Run(std::wstring(L"a\xE9\xD800z", 5), 8);
    EXPECT_EQ(kFailed, found.returned);
    EXPECT_EQ(2u, found.position);
    EXPECT_EQ("a\xC3\xA9ZZZZZ", found.room);
}

TEST(DoWcsrtombs, FindsTheBadCharacterAtEveryPosition) {
    Converter<wchar_t> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        std::wstring const text = TextOf(script, 40);
        for (std::size_t at = 0; at < text.size(); ++at) {
            for (std::uint32_t const value : kUnencodable) {
                std::wstring const bad = WithCharacter(text, at, value);
                converter.ExpectAsReference(bad, 161);
                converter.ExpectCount(kFailed, bad);
            }
        }
    }
}

TEST(DoWcsrtombs, FindsTheFirstOfTwoBadCharacters) {
    Converter<wchar_t> converter(512);
    for (Script const& script : Scripts()) {
        std::wstring const text = TextOf(script, 40);
        for (std::uint32_t const first : kUnencodable) {
            for (std::uint32_t const second : kUnencodable) {
                std::wstring const bad = WithCharacter(WithCharacter(text, 9, first), 12, second);
                converter.ExpectAsReference(bad, 161);
                converter.ExpectCount(kFailed, bad);
            }
        }
    }
}

TEST(DoWcsrtombs, FindsTheBadCharacterWithEveryLimitInFrontOfItOrBehind) {
    Converter<wchar_t> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        std::wstring const bad = WithCharacter(TextOf(script, 30), 20, 0x80000041);
        for (std::size_t n = 0; n <= 100; ++n) converter.ExpectAsReference(bad, n);
    }
}

TEST(DoWcsrtombs, RefusesABadCharacterEvenWithOneByteOfRoom) {
    Converter<wchar_t> converter(64);
    for (std::uint32_t const value : kUnencodable) {
        for (std::size_t n = 1; n <= 4; ++n) {
            auto const found = converter.Run({static_cast<wchar_t>(value), 0}, n);
            EXPECT_EQ(kFailed, found.returned) << std::hex << value << " into " << n;
            EXPECT_EQ(0u, found.position);
            EXPECT_EQ(std::string(n, 'Z'), found.room);
        }
    }
}

TEST(DoWcsrtombs, DoesNotSeeABadCharacterBehindTheLimit) {
    Converter<wchar_t> converter(64);
    auto const found = converter.Run(std::wstring(L"abc\xD800", 5), 3);
    EXPECT_EQ(3u, found.returned);
    EXPECT_EQ(3u, found.position);
    EXPECT_EQ("abc", found.room);
}

TEST(DoWcsrtombs, FindsABadCharacterInALongText) {
    Converter<wchar_t> converter(300000);
    for (std::size_t const length : {5000, 70000}) {
        std::wstring const text = TextOf(Scripts().back(), length);
        for (std::size_t const at : {length / 2, length - 5, length - 1}) {
            std::wstring const bad = WithCharacter(text, at, 0xDFFF);
            converter.ExpectAsReference(bad, length * 4);
            converter.ExpectCount(kFailed, bad);
        }
    }
}

TEST(DoWcsrtombs, WritesACharacterWholeOrNotAtAll) {
    char buffer[] = "ZZZZ";
    EXPECT_EQ(0u, do_wcstombs(buffer, L"\x20AC", 2));
    EXPECT_STREQ("ZZZZ", buffer);

    Converter<wchar_t> converter(64);
    for (Encoded const& c : kEncoded) {
        if (c.length < 2) continue;
        for (std::size_t n = 1; n < c.length; ++n) {
            // Nothing behind the character that does not fit may be read.
            auto const found = converter.Run({L'a', static_cast<wchar_t>(c.value)}, n + 1);
            EXPECT_EQ(1u, found.returned);
            EXPECT_EQ(1u, found.position);
            EXPECT_EQ("a" + std::string(n, 'Z'), found.room);
        }
    }
}

TEST(DoWcsrtombs, ReadsNothingBehindTheCharacterThatDoesNotFit) {
    Converter<wchar_t> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t length = 0; length <= 40; ++length) {
            std::wstring const text = TextOf(script, length) + L'\x20AC';
            std::size_t const n = reference_utf8::CountElements(text);
            EXPECT_EQ(Expected(text, n - 1), converter.Run(text, n - 1)) << InHex(text);
            EXPECT_EQ(Expected(text, n - 2), converter.Run(text, n - 2)) << InHex(text);
        }
    }
}

TEST(DoWcsrtombs, CountsTheBytesOfTheWholeString) {
    EXPECT_EQ(6u, do_wcstombs(nullptr, L"a\xE9\x20AC", 0));
    EXPECT_EQ(10u, do_wcstombs(nullptr, L"a\xE9\x20AC\x1F600", 0));
    EXPECT_EQ(0u, do_wcstombs(nullptr, L"", 0));
}

TEST(DoWcsrtombs, IgnoresTheState) {
    __mbstate_t state;
    std::memset(&state, 0xA5, sizeof state);
    __mbstate_t const before = state;
    wchar_t const* src = L"a\x20AC";
    char buffer[8];
    EXPECT_EQ(4u, do_wcsrtombs(nullptr, &src, 0, &state));
    EXPECT_EQ(4u, do_wcsrtombs(buffer, &src, 8, &state));
    EXPECT_STREQ("a\xE2\x82\xAC", buffer);
    EXPECT_EQ(0, std::memcmp(&before, &state, sizeof state));
}

TEST(DoWcstombs, FailsForACharacterThatCannotBeEncoded) {
    char buffer[] = "ZZZZ";
    errno = kErrnoBefore;
    EXPECT_EQ(kFailed, do_wcstombs(nullptr, L"a\xD800", 0));
    EXPECT_EQ(EILSEQ, errno);
    errno = kErrnoBefore;
    EXPECT_EQ(kFailed, do_wcstombs(buffer, L"a\xD800", 4));
    EXPECT_EQ(EILSEQ, errno);
    EXPECT_STREQ("aZZZ", buffer);
}

// ---- Multibyte strings with invalid sequences ----

TEST(DoMbsrtowcs, StopsAtTheFirstByteOfAnInvalidSequence) {
    Converter<char> converter(128);
    for (std::vector<Sequence> const& sequences : {kInvalid, kCutOff}) {
        for (Sequence const& s : sequences) {
            SCOPED_TRACE(s.why);
            auto const found = converter.Run("\xE2\x82\xAC!" + s.bytes + '\0', 6);
            EXPECT_EQ(kFailed, found.returned);
            EXPECT_EQ(4u, found.position);
            wchar_t const fill = Direction<char>::Fill();
            EXPECT_EQ((std::wstring{0x20AC, L'!', fill, fill, fill, fill}), found.room);
            converter.ExpectCount(kFailed, s.bytes);
        }
    }
}

TEST(DoMbsrtowcs, FindsTheInvalidSequenceAfterEveryLengthAndInFrontOfMore) {
    Converter<char> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t length = 0; length <= 36; ++length) {
            std::string const text = Direction<char>::Source(TextOf(script, length));
            for (std::vector<Sequence> const& sequences : {kInvalid, kCutOff}) {
                for (Sequence const& s : sequences) {
                    std::string const bad = text + s.bytes;
                    converter.ExpectAsReference(bad, 60);
                    converter.ExpectAsReference(bad + "more, all of it ASCII", 60);
                    converter.ExpectCount(kFailed, bad + "more");
                }
            }
        }
    }
}

TEST(DoMbsrtowcs, FindsTheInvalidSequenceWithEveryLimitInFrontOfItOrBehind) {
    Converter<char> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        std::string const text = Direction<char>::Source(TextOf(script, 20));
        for (Sequence const& s : kCutOff)
            for (std::size_t n = 0; n <= 30; ++n) converter.ExpectAsReference(text + s.bytes, n);
    }
}

TEST(DoMbsrtowcs, DoesNotSeeAnInvalidSequenceBehindTheLimit) {
    Converter<char> converter(64);
    auto const found = converter.Run(std::string("abc\xFF", 5), 3);
    EXPECT_EQ(3u, found.returned);
    EXPECT_EQ(3u, found.position);
    EXPECT_EQ(L"abc", found.room);
}

TEST(DoMbsrtowcs, FindsAnInvalidSequenceInALongText) {
    Converter<char> converter(300000);
    for (std::size_t const length : {5000, 70000}) {
        std::string const text = Direction<char>::Source(TextOf(Scripts().back(), length));
        for (std::size_t const at : {length / 2, length - 5, length - 1}) {
            std::string bad = text;
            bad[at] = '\xFF';
            converter.ExpectAsReference(bad, length + 1);
            converter.ExpectCount(kFailed, bad);
        }
    }
}

TEST(DoMbstowcs, FailsForAnInvalidSequence) {
    wchar_t buffer[] = L"ZZZZ";
    errno = kErrnoBefore;
    EXPECT_EQ(kFailed, do_mbstowcs(nullptr, "a\xFF", 0));
    EXPECT_EQ(EILSEQ, errno);
    errno = kErrnoBefore;
    EXPECT_EQ(kFailed, do_mbstowcs(buffer, "a\xFF", 4));
    EXPECT_EQ(EILSEQ, errno);
    EXPECT_STREQ(L"aZZZ", buffer);
}

// ---- Characters in two pieces ----

namespace {

bool IsClear(__mbstate_t const& state) {
    __mbstate_t const clear = {};
    return std::memcmp(&clear, &state, sizeof clear) == 0;
}

// Decodes `rest`, terminated, after `seen`; counts it first.
void ExpectResumed(std::string const& seen, std::string const& rest, std::size_t n) {
    SCOPED_TRACE(InHex(seen) + "| " + InHex(rest) + "into " + std::to_string(n));
    GuardedArray<char> const source(rest.c_str(), rest.size() + 1);
    char const* src = source.data();
    __mbstate_t const before = reference_utf8::StateAfter(seen);
    __mbstate_t state = before;

    unsigned int const count = reference_utf8::CountElements(rest, seen);
    errno = kErrnoBefore;
    EXPECT_EQ(count, do_mbsrtowcs(nullptr, &src, 0, &state));
    EXPECT_EQ(count == kFailed ? EILSEQ : kErrnoBefore, errno);
    EXPECT_EQ(source.data(), src);
    EXPECT_TRUE(reference_utf8::IsSame(before, state));

    GuardedArray<wchar_t> room(std::wstring(n, Direction<char>::Fill()).data(), n);
    auto const expected = reference_utf8::ConvertString(rest, n, Direction<char>::Fill(), seen);
    errno = kErrnoBefore;
    unsigned int const returned =
        do_mbsrtowcs(room.data(), &src, static_cast<unsigned int>(n), &state);
    EXPECT_EQ(returned == kFailed ? EILSEQ : kErrnoBefore, errno);
    std::size_t const position =
        src == nullptr ? kNullPosition : static_cast<std::size_t>(src - source.data());
    EXPECT_EQ(expected, (Conversion<wchar_t>{returned, position, std::wstring(room.data(), n)}));
    EXPECT_TRUE(IsClear(state));
}

__mbstate_t StateOf(std::uint32_t count) {
    __mbstate_t state = {};
    state.__count = static_cast<int>(count);
    return state;
}

}  // namespace

TEST(DoMbsrtowcs, CompletesTheCharacterInTheState) {
    struct {
        std::uint32_t state;
        char const* rest;
        std::wstring text;
    } const cases[] = {
        {1u << 30 | 1u << 28 | 0x03, "\xA9!", {0xE9, L'!'}},
        {2u << 30 | 2u << 28 | 0x2, "\x82\xAC!", {0x20AC, L'!'}},
        {1u << 30 | 2u << 28 | 0x2 << 6 | 0x02, "\xAC!", {0x20AC, L'!'}},
        {3u << 30 | 3u << 28 | 0x0, "\x9F\x98\x80!", {0x1F600, L'!'}},
        {2u << 30 | 3u << 28 | 0x1F, "\x98\x80!", {0x1F600, L'!'}},
        {1u << 30 | 3u << 28 | 0x1F << 6 | 0x18, "\x80!", {0x1F600, L'!'}},
        {3u << 30 | 3u << 28 | 0x4, "\x8F\xBF\xBF!", {0x10FFFF, L'!'}},
    };
    for (auto const& c : cases) {
        __mbstate_t state = StateOf(c.state);
        char const* src = c.rest;
        wchar_t room[3] = {L'Z', L'Z', L'Z'};
        EXPECT_EQ(2u, do_mbsrtowcs(room, &src, 3, &state)) << std::hex << c.state;
        EXPECT_EQ(c.text, room);
        EXPECT_EQ(nullptr, src);
        EXPECT_TRUE(IsClear(state));
    }
}

TEST(DoMbsrtowcs, CompletesEveryCharacterCutAnywhere) {
    for (Script const& script : Scripts()) {
        for (wchar_t const c : script.alphabet) {
            std::string const bytes = reference_utf8::Encode(static_cast<std::uint32_t>(c));
            for (std::size_t cut = 1; cut < bytes.size(); ++cut) {
                for (std::size_t n = 1; n <= 5; ++n)
                    ExpectResumed(bytes.substr(0, cut), bytes.substr(cut) + "\xC3\xA9!", n);
                ExpectResumed(bytes.substr(0, cut), bytes.substr(cut), 1);
                ExpectResumed(bytes.substr(0, cut), bytes.substr(cut), 2);
                ExpectResumed(bytes.substr(0, cut), bytes.substr(cut) + "\xC3", 3);
                ExpectResumed(bytes.substr(0, cut), bytes.substr(cut) + std::string(50, 'a'), 60);
            }
        }
    }
}

TEST(DoMbsrtowcs, RefusesWhatDoesNotCompleteTheCharacterAndClearsTheState) {
    for (std::string const& seen :
         std::vector<std::string>{"\xC2", "\xDF", "\xE0", "\xE0\xA0", "\xE1", "\xED", "\xED\x9F",
                                  "\xEE", "\xEF\xBF", "\xF0", "\xF0\x90", "\xF0\x90\x80", "\xF1",
                                  "\xF3\xBF", "\xF4", "\xF4\x8F", "\xF4\x8F\xBF"}) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string const next = byte == 0 ? "" : std::string(1, static_cast<char>(byte));
            ExpectResumed(seen, next, 3);
            ExpectResumed(seen, next + "\x80\x80", 3);
        }
    }
}

TEST(DoMbsrtowcs, RefusesToCompleteWhatBeganAsNoCharacter) {
    struct {
        char const* seen;
        char const* rest;
    } const cases[] = {
        {"\xC0", "\x80"},                                                          // overlong
        {"\xC1", "\xBF"},         {"\xE0", "\x9F\xBF"},     {"\xE0\x9F", "\xBF"},  // overlong
        {"\xF0", "\x8F\xBF\xBF"}, {"\xF0\x8F\xBF", "\xBF"},                        // overlong
        {"\xED", "\xA0\x80"},     {"\xED\xA0", "\x80"},     {"\xED\xBF", "\xBF"},  // surrogates
        {"\xF4", "\x90\x80\x80"}, {"\xF4\x90\x80", "\x80"},                        // too large
    };
    for (auto const& c : cases) ExpectResumed(c.seen, c.rest, 3);
}

TEST(DoMbsrtowcs, RefusesAStateThatNoCharacterLeaves) {
    std::uint32_t const states[] = {
        0x2,                        // nothing is missing
        2u << 28 | 0x82,            // nothing is missing
        1u << 30,                   // of one byte
        2u << 30 | 1u << 28 | 0x2,  // all of two bytes are missing
        3u << 30 | 2u << 28,        // all of three
        3u << 30 | 1u << 28 | 0x2,  // more than all
    };
    for (std::uint32_t const bits : states) {
        SCOPED_TRACE(bits);
        __mbstate_t state = StateOf(bits);
        char const* const text = "\x82\xAC\xAC";
        char const* src = text;
        wchar_t room[] = L"ZZZZ";
        errno = kErrnoBefore;
        EXPECT_EQ(kFailed, do_mbsrtowcs(room, &src, 4, &state));
        EXPECT_EQ(EILSEQ, errno);
        EXPECT_EQ(text, src);
        EXPECT_STREQ(L"ZZZZ", room);
        EXPECT_TRUE(IsClear(state));
    }
}

TEST(DoMbsrtowcs, GoesOnAfterTheStringThatDidNotCompleteTheCharacter) {
    __mbstate_t state = StateOf(1u << 30 | 2u << 28 | 0x2 << 6 | 0x02);
    char const* const text = "abc";
    char const* src = text;
    wchar_t room[] = L"ZZZZ";
    EXPECT_EQ(kFailed, do_mbsrtowcs(room, &src, 4, &state));
    EXPECT_EQ(text, src);
    EXPECT_STREQ(L"ZZZZ", room);
    EXPECT_EQ(3u, do_mbsrtowcs(room, &src, 4, &state));
    EXPECT_STREQ(L"abc", room);
}

TEST(DoMbsrtowcs, KeepsTheStateWithoutRoomForTheCharacter) {
    __mbstate_t const before = StateOf(1u << 30 | 2u << 28 | 0x2 << 6 | 0x02);
    __mbstate_t state = before;
    char const* const text = "\xAC";
    char const* src = text;
    GuardedArray<wchar_t> noRoom(0);
    EXPECT_EQ(0u, do_mbsrtowcs(noRoom.data(), &src, 0, &state));
    EXPECT_EQ(text, src);
    EXPECT_TRUE(reference_utf8::IsSame(before, state));
}

TEST(DoMbsrtowcs, ReadsNothingBehindTheCompletedCharacterThatUsesUpTheRoom) {
    __mbstate_t state = StateOf(2u << 30 | 2u << 28 | 0x2);
    GuardedArray<char> const source("\x82\xAC", 2);
    char const* src = source.data();
    wchar_t wc = kUnset;
    EXPECT_EQ(1u, do_mbsrtowcs(&wc, &src, 1, &state));
    EXPECT_EQ(0x20AC, static_cast<std::int32_t>(wc));
    EXPECT_EQ(source.data() + 2, src);
    EXPECT_TRUE(IsClear(state));
}

TEST(DoMbsrtowcs, LeavesAClearStateClear) {
    __mbstate_t state = {};
    wchar_t room[8];
    for (char const* const text : {"abc", "\xE2\x82\xAC", "\xE2\x82", "a\xFF", ""}) {
        char const* src = text;
        do_mbsrtowcs(nullptr, &src, 0, &state);
        EXPECT_TRUE(IsClear(state)) << text;
        do_mbsrtowcs(room, &src, 8, &state);
        EXPECT_TRUE(IsClear(state)) << text;
    }
}
