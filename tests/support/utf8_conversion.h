// Conversions between UTF-8 and wide characters, checked against the plain reference: what they
// return, where they stop, what they write and that they touch nothing else.

#ifndef QORUTILS_TESTS_SUPPORT_UTF8_CONVERSION_H_
#define QORUTILS_TESTS_SUPPORT_UTF8_CONVERSION_H_

#include <qorutils/text/utf8.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/reference_utf8.h"

using reference_utf8::Conversion;
using reference_utf8::kFailed;
using reference_utf8::kNullPosition;

namespace utf8_conversion {

constexpr int kErrnoBefore = EDOM;

// ---- Either direction ----

template <typename In>
struct Direction;

template <>
struct Direction<wchar_t> {
    using Out = char;
    static char Fill() { return 'Z'; }
    static unsigned int Convert(char* dst, wchar_t const** src, unsigned int n, __mbstate_t* st) {
        return do_wcsrtombs(dst, src, n, st);
    }
    static unsigned int ConvertPlainly(char* dst, wchar_t const* src, unsigned int n) {
        return do_wcstombs(dst, src, n);
    }
    static std::wstring Source(std::wstring const& text) { return text; }
};

template <>
struct Direction<char> {
    using Out = wchar_t;
    static wchar_t Fill() { return 0x5A5A5A5A; }
    static unsigned int Convert(wchar_t* dst, char const** src, unsigned int n, __mbstate_t* st) {
        return do_mbsrtowcs(dst, src, n, st);
    }
    static unsigned int ConvertPlainly(wchar_t* dst, char const* src, unsigned int n) {
        return do_mbstowcs(dst, src, n);
    }
    static std::string Source(std::wstring const& text) {
        std::string bytes;
        for (wchar_t const c : text) bytes += reference_utf8::Encode(static_cast<std::uint32_t>(c));
        return bytes;
    }
};

template <typename In>
using Out = typename Direction<In>::Out;

template <typename In>
Conversion<Out<In>> Expected(std::basic_string<In> const& text, std::size_t n) {
    return reference_utf8::ConvertString(text, n, Direction<In>::Fill());
}

template <typename T>
std::string InHex(std::basic_string<T> const& elements) {
    std::ostringstream out;
    out << std::hex << std::setfill('0');
    for (T const e : elements)
        out << std::setw(2) << (static_cast<std::uint32_t>(e) & (sizeof(T) == 1 ? 0xFFu : ~0u))
            << ' ';
    return out.str();
}

}  // namespace utf8_conversion

namespace reference_utf8 {

template <typename T>
void PrintTo(Conversion<T> const& c, std::ostream* out) {
    *out << "returned " << static_cast<int>(c.returned) << ", source at "
         << static_cast<std::ptrdiff_t>(c.position) << ", room " << utf8_conversion::InHex(c.room);
}

}  // namespace reference_utf8

namespace utf8_conversion {

// Memory in front of an inaccessible page. Elements are placed at its end or `behind` elements in
// front of it; all others hold a fill, which shows every stray write.
template <typename T>
class Memory {
  public:
    Memory(std::size_t capacity, T fill) : elements_(capacity), fill_(fill) {}

    T* Place(std::basic_string<T> const& elements, std::size_t behind) {
        std::fill_n(elements_.data(), elements_.size(), fill_);
        size_ = elements.size();
        start_ = elements_.data() + elements_.size() - size_ - behind;
        std::copy(elements.begin(), elements.end(), start_);
        return start_;
    }
    T* PlaceRoom(std::size_t n, std::size_t behind) {
        return Place(std::basic_string<T>(n, fill_), behind);
    }

    std::basic_string<T> Content() const { return std::basic_string<T>(start_, size_); }
    bool IsUntouchedAround() const {
        auto const isFill = [this](T e) { return e == fill_; };
        return std::all_of(elements_.data(), Start(), isFill) &&
               std::all_of(Start() + size_, elements_.data() + elements_.size(), isFill);
    }

  private:
    T const* Start() const { return start_; }

    GuardedArray<T> elements_;
    T fill_;
    T* start_ = nullptr;
    std::size_t size_ = 0;
};

// How many elements lie between a source or a room and the inaccessible page.
struct Behind {
    std::size_t source;
    std::size_t room;
};

// Converts between guarded memories and checks what must hold for every conversion.
template <typename In>
class Converter {
  public:
    explicit Converter(std::size_t capacity)
        : source_(capacity, In('S')), room_(capacity, Direction<In>::Fill()) {}

    // `elements` are the whole source, its terminator included if it has one.
    Conversion<Out<In>> Run(std::basic_string<In> const& elements, std::size_t n,
                            Behind behind = {0, 0}) {
        In const* const start = source_.Place(elements, behind.source);
        Out<In>* const room = room_.PlaceRoom(n, behind.room);
        In const* src = start;
        errno = kErrnoBefore;
        unsigned int const returned =
            Direction<In>::Convert(room, &src, static_cast<unsigned int>(n), nullptr);
        EXPECT_EQ(returned == kFailed ? EILSEQ : kErrnoBefore, errno);
        EXPECT_TRUE(room_.IsUntouchedAround());
        EXPECT_EQ(elements, source_.Content());
        std::size_t const position =
            src == nullptr ? kNullPosition : static_cast<std::size_t>(src - start);
        return {returned, position, room_.Content()};
    }

    // Converts the text and its terminator.
    void ExpectAsReference(std::basic_string<In> const& text, std::size_t n,
                           Behind behind = {0, 0}) {
        auto const expected = Expected(text, n);
        auto const found = Run(text + In(), n, behind);
        EXPECT_EQ(expected, found) << InHex(text) << "into " << n << ", behind the source "
                                   << behind.source << ", behind the room " << behind.room;
    }

    void ExpectCount(unsigned int expected, std::basic_string<In> const& text,
                     std::size_t behind = 0) {
        In const* const start = source_.Place(text + In(), behind);
        In const* src = start;
        errno = kErrnoBefore;
        EXPECT_EQ(expected, Direction<In>::Convert(nullptr, &src, 0, nullptr)) << InHex(text);
        EXPECT_EQ(expected == kFailed ? EILSEQ : kErrnoBefore, errno);
        EXPECT_EQ(start, src);
    }

  private:
    Memory<In> source_;
    Memory<Out<In>> room_;
};

// ---- Texts ----

struct Script {
    char const* name;
    std::wstring alphabet;
};

inline std::vector<Script> const& Scripts() {
    static std::wstring const ascii = L"etaoin SHRDLU\n0123456789~\x7F\x01";
    static std::wstring const two = {0x80, 0xE9, 0x416, 0x5D0, 0x7FF};
    static std::wstring const three = {0x800, 0x20AC, 0x4E2D, 0xD7FF, 0xE000, 0xFEFF, 0xFFFF};
    static std::wstring const four = {0x10000, 0x1F600, 0xFFFFF, 0x100000, 0x10FFFF};
    static std::vector<Script> const scripts = {
        {"ASCII", ascii},
        {"two bytes", two},
        {"three bytes", three},
        {"four bytes", four},
        {"mixed", L"abcde" + two + three + four},
        {"mostly ASCII", ascii + ascii + ascii + two + three + four},
    };
    return scripts;
}

inline std::wstring TextOf(Script const& script, std::size_t length) {
    return RandomText(static_cast<unsigned>(length)).Of(script.alphabet, static_cast<int>(length));
}

// One for each way of not being a character.
std::vector<std::uint32_t> const kUnencodable = {
    0xD800,                              // the first surrogate
    0xDBFF,     0xDC00,     0xDFFF,      // and the last
    0x110000,                            // above the last character
    0x200000,   0x7FFFFFFF,              // wider than four bytes
    0x80000000, 0x80000041, 0xFFFFFF80,  // negative where wchar_t has a sign
    0xFFFFFFFF,
};

struct Sequence {
    std::string bytes;
    char const* why;
};

std::vector<Sequence> const kInvalid = {
    {"\x80", "a continuation byte leads"},
    {"\xBF", "a continuation byte leads"},
    {"\x80\x80\x80\x80", "continuation bytes only"},
    {"\xC0\x80", "overlong: U+0000 in two bytes"},
    {"\xC1\xBF", "overlong: U+007F in two bytes"},
    {"\xE0\x80\x80", "overlong: U+0000 in three bytes"},
    {"\xE0\x81\xBF", "overlong: U+007F in three bytes"},
    {"\xE0\x9F\xBF", "overlong: U+07FF in three bytes"},
    {"\xF0\x80\x80\x80", "overlong: U+0000 in four bytes"},
    {"\xF0\x82\x82\xAC", "overlong: U+20AC in four bytes"},
    {"\xF0\x8F\xBF\xBF", "overlong: U+FFFF in four bytes"},
    {"\xED\xA0\x80", "the first surrogate"},
    {"\xED\xAF\xBF", "the last leading surrogate"},
    {"\xED\xB0\x80", "the first trailing surrogate"},
    {"\xED\xBF\xBF", "the last surrogate"},
    {"\xED\xA0\xBD\xED\xB8\x80", "a pair of surrogates"},
    {"\xF4\x90\x80\x80", "U+110000"},
    {"\xF4\xBF\xBF\xBF", "U+13FFFF"},
    {"\xF5\x80\x80\x80", "U+140000"},
    {"\xF7\xBF\xBF\xBF", "U+1FFFFF"},
    {"\xF8\x88\x80\x80\x80", "a lead of five bytes"},
    {"\xFC\x84\x80\x80\x80\x80", "a lead of six bytes"},
    {"\xFE", "never a lead"},
    {"\xFF", "never a lead"},
    {"\xC3"
     "A",
     "the second byte of two is no continuation"},
    {"\xC3\xC3", "the second byte of two is a lead"},
    {"\xE2"
     "A\xAC",
     "the second byte of three is no continuation"},
    {"\xE2\x82"
     "A",
     "the third byte of three is no continuation"},
    {"\xE2\x82\xC0", "the third byte of three is a lead"},
    {"\xF0"
     "A\x98\x80",
     "the second byte of four is no continuation"},
    {"\xF0\x9F"
     "A\x80",
     "the third byte of four is no continuation"},
    {"\xF0\x9F\x98"
     "A",
     "the fourth byte of four is no continuation"},
    {"\xF0\x9F\x98\xFF", "the fourth byte of four is a lead"},
};

std::vector<Sequence> const kCutOff = {
    {"\xC3", "one of two bytes"},           {"\xE2", "one of three bytes"},
    {"\xE2\x82", "two of three bytes"},     {"\xF0", "one of four bytes"},
    {"\xF0\x9F", "two of four bytes"},      {"\xF0\x9F\x98", "three of four bytes"},
    {"\xF4\x8F\xBF", "the last character"}, {"\xED\x9F", "the last before the surrogates"},
};

// Characters and the bytes they take.
struct Encoded {
    std::uint32_t value;
    char const* bytes;
    std::size_t length;
};

Encoded const kEncoded[] = {
    {0x0, "\0", 1},
    {0x41, "A", 1},
    {0x7F, "\x7F", 1},
    {0x80, "\xC2\x80", 2},
    {0xE9, "\xC3\xA9", 2},
    {0x7FF, "\xDF\xBF", 2},
    {0x800, "\xE0\xA0\x80", 3},
    {0x20AC, "\xE2\x82\xAC", 3},
    {0xD7FF, "\xED\x9F\xBF", 3},
    {0xE000, "\xEE\x80\x80", 3},
    {0xFEFF, "\xEF\xBB\xBF", 3},
    {0xFFFF, "\xEF\xBF\xBF", 3},
    {0x10000, "\xF0\x90\x80\x80", 4},
    {0x1F600, "\xF0\x9F\x98\x80", 4},
    {0x10FFFF, "\xF4\x8F\xBF\xBF", 4},
};

// What a room holds before anything is written.
constexpr wchar_t kUnset = 0x7A7A7A;

}  // namespace utf8_conversion

#endif  // QORUTILS_TESTS_SUPPORT_UTF8_CONVERSION_H_
