// Wide formats beside vswprintf, which decides what every one of them gives.

#include <qorutils/text/qor_string.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/made_locale.h"
#include "support/random_text.h"
#include "support/scoped_locale.h"

using qor_text::CQorStringT;

namespace {

// A format that fails leaves the string as it was.
wchar_t const* const kBefore = L"what was there before";

// One that succeeds leaves errno as it was.
constexpr int kErrorBefore = EDOM;

struct Result {
    std::wstring text;
    int error;
};

bool operator==(Result const& a, Result const& b) {
    return a.text == b.text && a.error == b.error;
}

std::ostream& operator<<(std::ostream& to, Result const& result) {
    return to << testing::PrintToString(result.text) << ", errno " << result.error;
}

Result ByVswprintf(wchar_t const* format, va_list args) {
    wchar_t text[2048];
    errno = kErrorBefore;
    int const length = std::vswprintf(text, 2048, format, args);
    if (length < 0) return {kBefore, errno};
    return {std::wstring(text, static_cast<std::size_t>(length)), errno};
}

Result ByFormatV(wchar_t const* format, va_list args) {
    CQorStringT<wchar_t> s(kBefore);
    errno = kErrorBefore;
    s.FormatV(format, args);
    int const error = errno;
    EXPECT_EQ(L'\0', s.c_str()[s.GetLength()]);
    return {std::wstring(s.begin(), s.end()), error};
}

void ExpectTheSame(wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    Result const expected = ByVswprintf(format, args);
    va_end(args);
    va_start(args, format);
    EXPECT_EQ(expected, ByFormatV(format, args))
        << (format != nullptr ? testing::PrintToString(std::wstring(format)) : "null");
    va_end(args);
}

// Numbers in groups; one letter more than ASCII has, byte E4.
class GroupingLocale {
  public:
    GroupingLocale() {
        for (int const category : {LC_CTYPE, LC_NUMERIC})
            if (std::setlocale(category, made_.name()) == nullptr)
                throw std::runtime_error(std::string("cannot set the locale ") + made_.name());
    }

  private:
    MadeLocale const made_{"grouping_test", "<U00E4> /xe4 a with diaeresis\n",
                           "LC_CTYPE\n"
                           "upper <U0041>..<U005A>\n"
                           "lower <U0061>..<U007A>;<U00E4>\n"
                           "END LC_CTYPE\n"
                           "LC_NUMERIC\n"
                           "decimal_point \"<U002C>\"\n"
                           "thousands_sep \"<U002E>\"\n"
                           "grouping 3;3\n"
                           "END LC_NUMERIC\n"};
    ScopedLocale const restorer_{"C"};
};

void InEachLocale(std::function<void()> const& check) {
    for (char const* const name : {"C", "C.UTF-8"}) {
        SCOPED_TRACE(name);
        ScopedLocale const locale(name);
        check();
    }
    SCOPED_TRACE("with groups of digits");
    GroupingLocale const locale;
    check();
}

TEST(WideFormat, TextStandsForItself) {
    InEachLocale([] {
        ExpectTheSame(L"");
        ExpectTheSame(L"text");
        ExpectTheSame(L"100%%");
        ExpectTheSame(L"%%%%d");          // two, and a letter
        ExpectTheSame(L"\u00e4\u20ac");   // no encoding is asked
        ExpectTheSame(L"a\x7FFFFFFF b");  // not even for what is no character
    });
}

TEST(WideFormat, NumbersOfEveryLength) {
    InEachLocale([] {
        for (int const n : {0, 1, -1, 9, 10, 999, 1000, 1234567, INT_MAX, INT_MIN})
            for (auto const format : {L"%d", L"%i", L"%u", L"%x", L"%X", L"<%d>", L"%d%%"})
                ExpectTheSame(format, n);
        for (long const n : {0L, -1L, 1234567L, LONG_MAX, LONG_MIN})
            for (auto const format : {L"%ld", L"%li", L"%lu", L"%lx", L"%lX"})
                ExpectTheSame(format, n);
        for (long long const n : {0LL, -1LL, 4294967295LL, 4294967296LL, LLONG_MAX, LLONG_MIN})
            for (auto const format : {L"%lld", L"%lli", L"%llu", L"%llx", L"%llX"})
                ExpectTheSame(format, n);
    });
}

TEST(WideFormat, ArgumentsAreTakenInTheirOrder) {
    ExpectTheSame(L"%d %lld %ls %u %c %ld %s %llx %lc", 1, 2LL, L"three", 4u, '5', 6L, "seven",
                  8ULL, static_cast<wint_t>(L'9'));  // odd words in front of long ones
    ExpectTheSame(L"%lld %d %lld %d %lld %d %lld %d", 1LL, 2, 3LL, 4, 5LL, 6, 7LL, 8);
}

TEST(WideFormat, NumbersInFields) {
    InEachLocale([] {
        for (int const n : {0, 7, -7, 12345, -12345, INT_MIN})
            for (auto const format :
                 {L"%1d", L"%2d", L"%02d", L"%5d", L"%05d", L"%6d", L"%06d", L"%0d", L"%002d",
                  L"%04x", L"%4X", L"%03u", L"%99d", L"%099d", L"%100d", L"%0100d", L"%2047d"})
                ExpectTheSame(format, n);
        ExpectTheSame(L"%020lld|%99lld", LLONG_MIN, LLONG_MIN);
    });
}

TEST(WideFormat, TextsAndCharacters) {
    InEachLocale([] {
        ExpectTheSame(L"[%ls][%ls]", L"wide", L"");
        ExpectTheSame(L"[%s][%s]", "narrow", "");
        ExpectTheSame(L"%ls", L"\u00e4\x7FFFFFFF");  // taken as it is
        ExpectTheSame(L"%s", "\\~{}\x01\x7F");       // ASCII to its ends
        ExpectTheSame(L"a%cb", 0);                   // counts in the length
        ExpectTheSame(L"%c%c", 'x', 256 + 'y');      // the low byte
        ExpectTheSame(L"a%lcb%lc", static_cast<wint_t>(0), static_cast<wint_t>(0x20AC));
        ExpectTheSame(L"a%lc", WEOF);  // no character, though it may stand in a text
        ExpectTheSame(L"\xFFFFFFFF%ls", L"a\xFFFFFFFF");
        ExpectTheSame(L"%lc", static_cast<wint_t>(0x1F600));  // beyond 16 bits
    });
}

TEST(WideFormat, BytesAreDecodedAsTheLocaleSays) {
    InEachLocale([] {
        ExpectTheSame(L"<%s>", "\xE4");  // a letter of one locale
        ExpectTheSame(L"<%c>", 0xE4);
        ExpectTheSame(L"<%c>", -28);                     // the same
        ExpectTheSame(L"<%s>", "\xC3\xA4\xE2\x82\xAC");  // UTF-8
        ExpectTheSame(L"<%s>", "ab\xE2\x82");            // cut short
        ExpectTheSame(L"%d%s", 1, "\xFF\xFE");           // invalid nearly everywhere
    });
}

TEST(WideFormat, NullTextsAreNamed) {
    ExpectTheSame(L"<%s|%ls>", nullptr, nullptr);
    ExpectTheSame(L"<%d%ls>", 1, nullptr);
}

TEST(WideFormat, WhateverElseVswprintfKnows) {
    InEachLocale([] {
        ExpectTheSame(L"%d: %'d %'lld", 1, 1234567, 1234567890123LL);  // in groups
        ExpectTheSame(L"%d: %f %.2f %e %g %a", 1, 2.5, 1e15, 0.1, 1e-9, 1.0);
        ExpectTheSame(L"%'.2f", 1234567.891);
        ExpectTheSame(L"%-5d|%+d|% d|%#x|%.3d|%5.3d|%-05d", 1, 2, 3, 4, 5, 6, 7);
        ExpectTheSame(L"%*d|%-*d|%.*s", 4, 1, 4, 2, 2, "abc");
        ExpectTheSame(L"%5s|%-5ls|%.2s|%3c|%05s", "a", L"b", "cde", 'f', "g");
        ExpectTheSame(L"%o %hd %hhu %jd %zu %td", 8, 70000, 257, std::intmax_t{-1}, std::size_t{5},
                      std::ptrdiff_t{-6});
        ExpectTheSame(L"%I64d|%Id", 7, 8);  // the locale's digits
        ExpectTheSame(L"%lls%llc", L"wide", static_cast<wint_t>(L'c'));
        ExpectTheSame(L"%S%C %p", L"wide", static_cast<wint_t>(L'c'), nullptr);
        ExpectTheSame(L"%2$ls %1$d %2$ls", 7, L"again");
        ExpectTheSame(L"%Lf %lf", 1.5L, 2.5);
        ExpectTheSame(L"%d %m", 1);  // the text of errno
    });
}

TEST(WideFormat, FormatsThatMeanNothing) {
    InEachLocale([] {
        for (auto const format :
             {L"%", L"text%", L"%d%", L"%5", L"%l", L"%ll", L"%0", L"%y", L"%d %k", L"%5%", L"%0%",
              L"%l%", L"%lld %lll", L"%llld", L"% %", L"%99999999999d"})
            ExpectTheSame(format, 7LL, 8LL);
        ExpectTheSame(nullptr);
    });
}

TEST(WideFormat, CountsWhatStandsBeforeIt) {
    int count = -1;
    ExpectTheSame(L"%d of %n%d", 12, &count, 30);
    EXPECT_EQ(6, count);
}

TEST(WideFormat, TextsOf2048CharactersOrMoreFail) {
    InEachLocale([] {
        for (std::size_t const length : {2045u, 2046u, 2047u, 2048u, 2049u, 5000u}) {
            std::wstring const wide(length, L'x');
            std::string const narrow(length, 'x');
            ExpectTheSame(wide.c_str());
            ExpectTheSame((wide + L"%%").c_str());
            ExpectTheSame(L"%ls", wide.c_str());
            ExpectTheSame(L"%s", narrow.c_str());
            ExpectTheSame(L"%ls%c", wide.c_str(), 'y');
            ExpectTheSame(L"%ls%d", wide.c_str(), 10);
            ExpectTheSame(L"%s%2d", narrow.c_str(), 1);
            ExpectTheSame(L"%c%s", 'y', narrow.c_str());
            ExpectTheSame(L"%ls%s", wide.c_str(), "");
        }
        std::string umlauts;
        for (int i = 0; i < 1500; ++i) umlauts += "\xC3\xA4";
        ExpectTheSame(L"%s", umlauts.c_str());  // more bytes than characters
    });
}

// Formats with one directive for each of five arguments, and random text between them.
class RandomFormat {
  public:
    explicit RandomFormat(unsigned seed) : random_(seed) {}

    void Check() {
        std::wstring const format = Literal() + AnyOf(kInt) + Literal() + AnyOf(kWide) + Literal() +
                                    AnyOf(kLongLong) + Literal() + AnyOf(kNarrow) + Literal() +
                                    AnyOf(kLong) + Literal();
        std::wstring const wide = random_.Of<wchar_t>(L"ab%\u00e4\u20ac", Length());
        std::string const narrow = random_.Of<char>(Rarely() ? "a\xC3\xA4\xE4" : "ab%", Length());
        auto const number = Number();
        ExpectTheSame(format.c_str(), static_cast<int>(number), wide.c_str(), number,
                      narrow.c_str(), static_cast<long>(number));
    }

  private:
    // The first ones are common.
    static constexpr int kDirectives = 12;
    using Directives = wchar_t const* [kDirectives];
    static Directives const kInt, kWide, kLongLong, kNarrow, kLong;

    bool Rarely() { return random_.Below(8) == 0; }
    std::wstring AnyOf(Directives const& directives) {
        return directives[random_.Below(Rarely() ? kDirectives : 6)];
    }
    std::wstring Literal() {
        return Rarely() ? L"%%" : random_.Of<wchar_t>(L"xyz \u20ac", random_.Below(4));
    }
    int Length() { return Rarely() ? 1000 + random_.Below(60) : random_.Below(20); }
    long long Number() {
        auto const high = static_cast<unsigned long long>(random_.Below(INT_MAX));
        auto const low = static_cast<unsigned long long>(random_.Below(INT_MAX));
        return static_cast<long long>((high << 33 ^ low << 2) >> random_.Below(64)) *
               (Rarely() ? -1 : 1);
    }

    RandomText random_;
};

RandomFormat::Directives const RandomFormat::kInt = {
    L"%d", L"%i", L"%u", L"%02d", L"%x", L"%c", L"%08X", L"%3d", L"%-4d", L"%+d", L"%'d", L"%hd"};
RandomFormat::Directives const RandomFormat::kWide = {L"%ls",     L"%ls",   L"%ls",    L"%ls",
                                                      L"%ls",     L"%ls",   L"%30ls",  L"%-30ls",
                                                      L"%.900ls", L"%.3ls", L"%5.2ls", L"%S"};
RandomFormat::Directives const RandomFormat::kLongLong = {
    L"%lld",  L"%lli",    L"%llu",  L"%llx",  L"%llX",   L"%012lld",
    L"%9lld", L"%-30lld", L"%'lld", L"%+lld", L"%.9lld", L"%llo"};
RandomFormat::Directives const RandomFormat::kNarrow = {L"%s",   L"%s",    L"%s",   L"%s",
                                                        L"%s",   L"%s",    L"%30s", L"%-30s",
                                                        L"%.3s", L"%5.2s", L"%hs",  L"%.0s"};
RandomFormat::Directives const RandomFormat::kLong = {L"%ld",  L"%li",   L"%lu",  L"%lx",
                                                      L"%lX",  L"%05ld", L"%9ld", L"%-9ld",
                                                      L"%'ld", L"%+ld",  L"%#lx", L"%lo"};

TEST(WideFormat, RandomFormats) {
    InEachLocale([] {
        RandomFormat random(20150601);
        for (int i = 0; i < 3000 && !testing::Test::HasFailure(); ++i) random.Check();
    });
}

}  // namespace
