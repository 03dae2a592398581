#include <qorutils/text/utf8.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/reference_utf8.h"
#include "support/scoped_locale.h"
#include "support/utf8_conversion.h"

using namespace utf8_conversion;

// ---- One character to bytes ----

TEST(DoWcrtomb, WritesTheBytesOfTheCharacterAndNoMore) {
    for (Encoded const& c : kEncoded) {
        std::string buffer(8, 'Z');
        errno = kErrnoBefore;
        EXPECT_EQ(c.length, do_wcrtomb(&buffer[0], static_cast<wchar_t>(c.value), nullptr));
        EXPECT_EQ(std::string(c.bytes, c.length) + std::string(8 - c.length, 'Z'), buffer);
        EXPECT_EQ(kErrnoBefore, errno);
    }
}

TEST(DoWcrtomb, RefusesWhatIsNoCharacterAndWritesNothing) {
    for (std::uint32_t const value : kUnencodable) {
        std::string buffer(8, 'Z');
        errno = kErrnoBefore;
        EXPECT_EQ(kFailed, do_wcrtomb(&buffer[0], static_cast<wchar_t>(value), nullptr))
            << std::hex << value;
        EXPECT_EQ(EILSEQ, errno);
        EXPECT_EQ(std::string(8, 'Z'), buffer);
    }
}

TEST(DoWcrtomb, RefusesEveryHighBitPattern) {
    char buffer[4];
    for (int bit = 21; bit < 32; ++bit) {
        for (std::uint32_t const low : {0x0u, 0x41u, 0xE9u, 0x20ACu, 0x10FFFFu}) {
            auto const value = static_cast<wchar_t>(1u << bit | low);
            EXPECT_EQ(kFailed, do_wcrtomb(buffer, value, nullptr)) << bit << ' ' << low;
        }
    }
}

TEST(DoWcrtomb, ReturnsOneForANullDestinationWhateverTheCharacter) {
    errno = kErrnoBefore;
    EXPECT_EQ(1u, do_wcrtomb(nullptr, L'a', nullptr));
    EXPECT_EQ(1u, do_wcrtomb(nullptr, 0x20AC, nullptr));
    EXPECT_EQ(1u, do_wcrtomb(nullptr, 0xD800, nullptr));
    EXPECT_EQ(kErrnoBefore, errno);
}

TEST(DoWcrtomb, IgnoresTheState) {
    __mbstate_t state;
    std::memset(&state, 0xA5, sizeof state);
    __mbstate_t const before = state;
    char buffer[4];
    EXPECT_EQ(3u, do_wcrtomb(buffer, 0x20AC, &state));
    EXPECT_EQ("\xE2\x82\xAC", std::string(buffer, 3));
    EXPECT_EQ(kFailed, do_wcrtomb(buffer, 0xD800, &state));
    EXPECT_EQ(0, std::memcmp(&before, &state, sizeof state));
}

// ---- One character from bytes ----

namespace {

// What do_mbtowc must do with these n bytes, of which none behind may be read.
void ExpectDecoded(std::string const& bytes) {
    GuardedArray<char> const source(bytes.data(), bytes.size());
    auto const expected = reference_utf8::Decode(bytes, 0);
    int length = static_cast<int>(expected.length);
    if (bytes.empty() || expected.length == 0)
        length = -1;
    else if (expected.value == 0)
        length = 0;

    wchar_t wc = kUnset;
    errno = kErrnoBefore;
    EXPECT_EQ(length, do_mbtowc(&wc, source.data(), static_cast<unsigned int>(bytes.size())))
        << InHex(bytes);
    EXPECT_EQ(length < 0 ? kUnset : static_cast<wchar_t>(expected.value), wc) << InHex(bytes);
    EXPECT_EQ(length < 0 ? EILSEQ : kErrnoBefore, errno) << InHex(bytes);
}

// The same, quickly, for very many sequences; n reaches behind the sequence.
bool IsDecodedAsReference(std::string const& bytes) {
    auto const expected = reference_utf8::Decode(bytes, 0);
    int length = static_cast<int>(expected.length);
    if (expected.length == 0)
        length = -1;
    else if (expected.value == 0)
        length = 0;
    wchar_t wc = kUnset;
    int const found = do_mbtowc(&wc, bytes.data(), static_cast<unsigned int>(bytes.size()));
    return found == length && wc == (length < 0 ? kUnset : static_cast<wchar_t>(expected.value));
}

bool IsStringDecodedAsReference(std::string const& bytes) {
    wchar_t room[6];
    std::fill_n(room, 6, Direction<char>::Fill());
    char const* src = bytes.c_str();
    unsigned int const returned = do_mbsrtowcs(room, &src, 6, nullptr);
    std::size_t const position =
        src == nullptr ? kNullPosition : static_cast<std::size_t>(src - bytes.c_str());
    return Expected(bytes, 6) == Conversion<wchar_t>{returned, position, std::wstring(room, 6)} &&
           reference_utf8::CountElements(bytes) == do_mbstowcs(nullptr, bytes.c_str(), 0);
}

void ExpectAsReferenceBothWays(std::string const& bytes) {
    if (!IsDecodedAsReference(bytes)) ADD_FAILURE() << "do_mbtowc of " << InHex(bytes);
    if (!IsStringDecodedAsReference(bytes)) ADD_FAILURE() << "do_mbsrtowcs of " << InHex(bytes);
}

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (int const v : values) bytes += static_cast<char>(v);
    return bytes;
}

}  // namespace

TEST(DoMbtowc, StoresTheCharacterAndReturnsItsLength) {
    for (Encoded const& c : kEncoded) {
        GuardedArray<char> const source(c.bytes, c.length);
        wchar_t wc = kUnset;
        errno = kErrnoBefore;
        int const length = c.value == 0 ? 0 : static_cast<int>(c.length);
        EXPECT_EQ(length, do_mbtowc(&wc, source.data(), static_cast<unsigned int>(c.length)));
        EXPECT_EQ(c.value, static_cast<std::uint32_t>(wc));
        EXPECT_EQ(length, do_mbtowc(nullptr, source.data(), static_cast<unsigned int>(c.length)));
        EXPECT_EQ(kErrnoBefore, errno);
    }
}

TEST(DoMbtowc, TakesOneCharacterOfMany) {
    wchar_t wc = kUnset;
    EXPECT_EQ(3, do_mbtowc(&wc, "\xE2\x82\xAC\xFF", 4));
    EXPECT_EQ(0x20AC, static_cast<std::int32_t>(wc));
    EXPECT_EQ(1, do_mbtowc(&wc, "ab", UINT_MAX));
    EXPECT_EQ(L'a', wc);
    EXPECT_EQ(4, do_mbtowc(&wc, "\xF0\x9F\x98\x80", UINT_MAX));
    EXPECT_EQ(0x1F600, static_cast<std::int32_t>(wc));
}

TEST(DoMbtowc, ReturnsZeroForANullSource) {
    wchar_t wc = kUnset;
    errno = kErrnoBefore;
    EXPECT_EQ(0, do_mbtowc(&wc, nullptr, 0));
    EXPECT_EQ(0, do_mbtowc(&wc, nullptr, 4));
    EXPECT_EQ(0, do_mbtowc(nullptr, nullptr, 1));
    EXPECT_EQ(kUnset, wc);
    EXPECT_EQ(kErrnoBefore, errno);
}

TEST(DoMbtowc, FailsWithoutBytesAndReadsNone) {
    ExpectDecoded("");
    GuardedArray<char> const nothing(0);
    EXPECT_EQ(-1, do_mbtowc(nullptr, nothing.data(), 0));
}

TEST(DoMbtowc, RefusesInvalidSequences) {
    for (Sequence const& s : kInvalid) {
        SCOPED_TRACE(s.why);
        wchar_t wc = kUnset;
        errno = kErrnoBefore;
        EXPECT_EQ(-1, do_mbtowc(&wc, s.bytes.data(), static_cast<unsigned int>(s.bytes.size())));
        EXPECT_EQ(kUnset, wc);
        EXPECT_EQ(EILSEQ, errno);
        EXPECT_EQ(-1, do_mbtowc(nullptr, s.bytes.data(), UINT_MAX));
    }
}

TEST(DoMbtowc, RefusesCharactersThatTheLimitCutsOff) {
    for (Encoded const& c : kEncoded)
        for (std::size_t n = 1; n < c.length; ++n) ExpectDecoded(std::string(c.bytes, n));
    // The same with the bytes there, but out of bounds.
    EXPECT_EQ(-1, do_mbtowc(nullptr, "\xC3\xA9", 1));
    EXPECT_EQ(-1, do_mbtowc(nullptr, "\xE2\x82\xAC", 1));
    EXPECT_EQ(-1, do_mbtowc(nullptr, "\xE2\x82\xAC", 2));
    EXPECT_EQ(-1, do_mbtowc(nullptr, "\xF0\x9F\x98\x80", 3));
}

TEST(DoMbtowc, RefusesCharactersThatATerminatorCutsOff) {
    for (Sequence const& s : kCutOff) {
        SCOPED_TRACE(s.why);
        ExpectDecoded(s.bytes + '\0');
    }
}

// ---- Every sequence ----

TEST(Utf8, EveryCharacterComesBack) {
    for (std::uint32_t value = 0; value < 0x110000; ++value) {
        if (value >= 0xD800 && value <= 0xDFFF) continue;
        char bytes[4];
        wchar_t back = kUnset;
        unsigned int const length = do_wcrtomb(bytes, static_cast<wchar_t>(value), nullptr);
        std::string const expected = reference_utf8::Encode(value);
        bool const isEncoded =
            length == expected.size() && std::memcmp(bytes, expected.data(), length) == 0;
        if (!isEncoded) FAIL() << "encoding " << std::hex << value;
        int const taken = do_mbtowc(&back, bytes, length);
        bool const isDecoded = static_cast<std::uint32_t>(back) == value &&
                               taken == (value == 0 ? 0 : static_cast<int>(length));
        if (!isDecoded) FAIL() << "decoding " << std::hex << value;
    }
}

TEST(Utf8, EveryCharacterComesBackInOneString) {
    std::wstring text;
    for (std::uint32_t value = 1; value < 0x110000; ++value)
        if (value < 0xD800 || value > 0xDFFF) text += static_cast<wchar_t>(value);
    std::string const bytes = Direction<char>::Source(text);

    std::string encoded(bytes.size() + 1, 'Z');
    auto const byteCount = static_cast<unsigned int>(bytes.size());
    EXPECT_EQ(byteCount, do_wcstombs(nullptr, text.c_str(), 0));
    EXPECT_EQ(byteCount, do_wcstombs(&encoded[0], text.c_str(), byteCount + 1));
    EXPECT_TRUE(bytes + '\0' == encoded);

    std::wstring decoded(text.size() + 1, L'Z');
    auto const length = static_cast<unsigned int>(text.size());
    EXPECT_EQ(length, do_mbstowcs(nullptr, bytes.c_str(), 0));
    EXPECT_EQ(length, do_mbstowcs(&decoded[0], bytes.c_str(), length + 1));
    EXPECT_TRUE(text + L'\0' == decoded);
}

TEST(Utf8, EverySurrogateIsRefused) {
    for (std::uint32_t value = 0xD800; value <= 0xDFFF; ++value) {
        char bytes[4];
        wchar_t const text[] = {L'a', static_cast<wchar_t>(value), 0};
        EXPECT_EQ(kFailed, do_wcrtomb(bytes, text[1], nullptr));
        EXPECT_EQ(kFailed, do_wcstombs(nullptr, text, 0));
        int const second = static_cast<int>(0x80 | (value >> 6 & 0x3F));
        int const third = static_cast<int>(0x80 | (value & 0x3F));
        EXPECT_EQ(-1, do_mbtowc(nullptr, Bytes({0xED, second, third}).data(), 3));
    }
}

TEST(Utf8, EveryByteAndPairOfBytesIsDecodedAsPlainly) {
    for (int first = 0; first < 256; ++first) {
        ExpectAsReferenceBothWays(Bytes({first}));
        for (int second = 0; second < 256; ++second)
            ExpectAsReferenceBothWays(Bytes({first, second}));
    }
}

TEST(Utf8, EveryLeadOfThreeBytesMeetsTheLimitsOfItsFollowers) {
    for (int first = 0xDE; first <= 0xF1; ++first)
        for (int second = 0; second < 256; ++second)
            for (int const third : {0x00, 0x41, 0x7F, 0x80, 0xBF, 0xC0, 0xFF})
                ExpectAsReferenceBothWays(Bytes({first, second, third}));
}

TEST(Utf8, EveryLeadOfFourBytesMeetsTheLimitsOfItsFollowers) {
    for (int first = 0xEE; first <= 0xFF; ++first)
        for (int const second : {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF})
            for (int const third : {0x00, 0x7F, 0x80, 0xBF, 0xC0, 0xFF})
                for (int const fourth : {0x00, 0x7F, 0x80, 0xBF, 0xC0, 0xFF})
                    ExpectAsReferenceBothWays(Bytes({first, second, third, fourth}));
}

// ---- Strings, either direction ----

template <typename In>
class Utf8Strings : public testing::Test {};

using SourceTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(Utf8Strings, SourceTypes, );

TYPED_TEST(Utf8Strings, ConvertUpToEveryLimit) {
    Converter<TypeParam> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t const length : {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 33, 50}) {
            auto const text = Direction<TypeParam>::Source(TextOf(script, length));
            unsigned int const count = reference_utf8::CountElements(text);
            for (std::size_t n = 0; n <= count + 2; ++n) converter.ExpectAsReference(text, n);
        }
    }
}

TYPED_TEST(Utf8Strings, ConvertAtEveryAlignmentAndLength) {
    using In = TypeParam;
    constexpr std::size_t kSteps = 16 / sizeof(In);
    Converter<In> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t length = 0; length <= 80; ++length) {
            auto const text = Direction<In>::Source(TextOf(script, length));
            unsigned int const count = reference_utf8::CountElements(text);
            for (std::size_t step = 0; step < kSteps; ++step) {
                converter.ExpectAsReference(text, count + 1, {step, 0});
                converter.ExpectCount(count, text, step);
            }
        }
    }
}

TYPED_TEST(Utf8Strings, ConvertIntoEveryAlignment) {
    using In = TypeParam;
    constexpr std::size_t kSteps = 16 / sizeof(Out<In>);
    Converter<In> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t length = 0; length <= 80; ++length) {
            auto const text = Direction<In>::Source(TextOf(script, length));
            unsigned int const count = reference_utf8::CountElements(text);
            for (std::size_t step = 0; step < kSteps; ++step) {
                converter.ExpectAsReference(text, count + 1, {0, step});
                converter.ExpectAsReference(text, count, {length % kSteps, step});
                converter.ExpectAsReference(text, count + 1 + step, {0, 0});
            }
        }
    }
}

TYPED_TEST(Utf8Strings, ReadNothingBehindWhatALimitLetsThrough) {
    using In = TypeParam;
    Converter<In> converter(512);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        std::wstring const wide = TextOf(script, 80);
        for (std::size_t length = 0; length <= 80; ++length) {
            auto const text = Direction<In>::Source(wide.substr(0, length));
            unsigned int const count = reference_utf8::CountElements(text);
            EXPECT_EQ(Expected(text, count), converter.Run(text, count)) << InHex(text);
        }
    }
}

TYPED_TEST(Utf8Strings, ReadNoByteWithoutRoom) {
    using In = TypeParam;
    GuardedArray<In> const nothing(0);
    GuardedArray<Out<In>> noRoom(0);
    In const* src = nothing.data();
    errno = kErrnoBefore;
    EXPECT_EQ(0u, Direction<In>::Convert(noRoom.data(), &src, 0, nullptr));
    EXPECT_EQ(nothing.data(), src);
    EXPECT_EQ(0u, Direction<In>::ConvertPlainly(noRoom.data(), nothing.data(), 0));
    EXPECT_EQ(kErrnoBefore, errno);
}

// n may be far more than there is memory; nothing may wrap, nor be written as spare room.
TYPED_TEST(Utf8Strings, TakeALimitBeyondAllMemory) {
    using In = TypeParam;
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t length = 0; length <= 40; ++length) {
            auto const text = Direction<In>::Source(TextOf(script, length));
            unsigned int const count = reference_utf8::CountElements(text);
            for (unsigned int const n : {0x3FFFFFFFu, 0x40000000u, 0x80000000u, UINT_MAX}) {
                GuardedArray<In> const source(text.c_str(), text.size() + 1);
                GuardedArray<Out<In>> room(count + 1);
                room.data()[count] = Direction<In>::Fill();
                In const* src = source.data();
                EXPECT_EQ(count, Direction<In>::Convert(room.data(), &src, n, nullptr));
                EXPECT_EQ(nullptr, src);
                EXPECT_EQ(Expected(text, count + 1).room,
                          std::basic_string<Out<In>>(room.data(), count + 1));
            }
        }
    }
}

TYPED_TEST(Utf8Strings, StandAtTheTerminatorWhenTheRoomIsJustUsedUp) {
    using In = TypeParam;
    Converter<In> converter(64);
    auto const text = Direction<In>::Source(L"a\xE9\x20AC");
    unsigned int const count = reference_utf8::CountElements(text);
    auto const found = converter.Run(text + In(), count);
    EXPECT_EQ(count, found.returned);
    EXPECT_EQ(text.size(), found.position);
    auto const terminated = converter.Run(text + In(), count + 1);
    EXPECT_EQ(count, terminated.returned);
    EXPECT_EQ(kNullPosition, terminated.position);
    EXPECT_EQ(Out<In>(), terminated.room[count]);
}

TYPED_TEST(Utf8Strings, OfNoCharactersAreATerminator) {
    Converter<TypeParam> converter(64);
    std::basic_string<TypeParam> const empty;
    converter.ExpectCount(0, empty);
    converter.ExpectAsReference(empty, 0);
    converter.ExpectAsReference(empty, 1);
    converter.ExpectAsReference(empty, 5);
}

TYPED_TEST(Utf8Strings, GoOnWhereTheRoomRanOut) {
    using In = TypeParam;
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        auto const text = Direction<In>::Source(TextOf(script, 300));
        auto const whole = Expected(text, reference_utf8::CountElements(text)).room;
        for (unsigned int const n : {4u, 5u, 17u, 64u}) {
            std::basic_string<Out<In>> joined;
            std::basic_string<Out<In>> piece(n, Direction<In>::Fill());
            for (In const* src = text.c_str(); src != nullptr;) {
                unsigned int const written = Direction<In>::Convert(&piece[0], &src, n, nullptr);
                ASSERT_LE(written, n);
                joined.append(piece, 0, written);
            }
            EXPECT_EQ(whole, joined) << n;
        }
    }
}

TYPED_TEST(Utf8Strings, AreCountedWithoutRegardToTheLimit) {
    using In = TypeParam;
    auto const text = Direction<In>::Source(L"a\xE9\x20AC and more");
    unsigned int const count = reference_utf8::CountElements(text);
    for (unsigned int const n : {0u, 1u, 4u, UINT_MAX}) {
        In const* src = text.c_str();
        EXPECT_EQ(count, Direction<In>::Convert(nullptr, &src, n, nullptr));
        EXPECT_EQ(text.c_str(), src);
        EXPECT_EQ(count, Direction<In>::ConvertPlainly(nullptr, text.c_str(), n));
    }
}

TYPED_TEST(Utf8Strings, ConvertWithoutAPositionAsWithOne) {
    using In = TypeParam;
    for (Script const& script : Scripts()) {
        auto const text = Direction<In>::Source(TextOf(script, 20));
        unsigned int const count = reference_utf8::CountElements(text);
        EXPECT_EQ(count, Direction<In>::ConvertPlainly(nullptr, text.c_str(), 0));
        for (unsigned int n = 0; n <= count + 2; ++n) {
            std::basic_string<Out<In>> room(n + 4, Direction<In>::Fill());
            auto const expected = Expected(text, n);
            errno = kErrnoBefore;
            EXPECT_EQ(expected.returned, Direction<In>::ConvertPlainly(&room[0], text.c_str(), n));
            EXPECT_EQ(expected.room + std::basic_string<Out<In>>(4, Direction<In>::Fill()), room);
            EXPECT_EQ(kErrnoBefore, errno);
        }
    }
}

TYPED_TEST(Utf8Strings, MeanTheSameInEveryLocale) {
    for (char const* const name : {"C", "C.UTF-8"}) {
        ScopedLocale const locale(name);
        Converter<TypeParam> converter(128);
        for (Script const& script : Scripts()) {
            auto const text = Direction<TypeParam>::Source(TextOf(script, 20));
            unsigned int const count = reference_utf8::CountElements(text);
            converter.ExpectCount(count, text);
            converter.ExpectAsReference(text, count + 1);
        }
    }
}

// ---- Long strings ----

TYPED_TEST(Utf8Strings, AreConvertedAcrossManyPages) {
    using In = TypeParam;
    Converter<In> converter(20000);
    for (Script const& script : Scripts()) {
        SCOPED_TRACE(script.name);
        for (std::size_t const length : {4093, 4096, 4099}) {
            auto const text = Direction<In>::Source(TextOf(script, length));
            unsigned int const count = reference_utf8::CountElements(text);
            converter.ExpectCount(count, text);
            converter.ExpectAsReference(text, count);
            converter.ExpectAsReference(text, count + 1, {1, 3});
            converter.ExpectAsReference(text, count - 1);
            EXPECT_EQ(Expected(text, count), converter.Run(text, count));
        }
    }
}

TYPED_TEST(Utf8Strings, AreConvertedBeyond65536Elements) {
    using In = TypeParam;
    Converter<In> converter(400000);
    for (Script const& script : {Scripts().front(), Scripts().back()}) {
        SCOPED_TRACE(script.name);
        auto const text = Direction<In>::Source(TextOf(script, 70001));
        unsigned int const count = reference_utf8::CountElements(text);
        converter.ExpectCount(count, text);
        converter.ExpectAsReference(text, count + 1);
        converter.ExpectAsReference(text, 65536);
    }
}
