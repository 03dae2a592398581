#include "qorutils/formats/number_text.h"

#include <langinfo.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>

#include "qorutils/bignum/bignum.h"
#include "qorutils/formats/integer_scan.h"
#include "qorutils/formats/qor_math.h"

using qor_text::CQorStringT;

namespace qor_formats {

namespace {

// ---- Digits, written from the last to the first ----

// Return the start of the text, which ends at `end`.
template <typename Unsigned>
wchar_t* WriteNumber(wchar_t* end, Unsigned value) {
    do {
        *--end = static_cast<wchar_t>(L'0' + value % 10);
        value /= 10;
    } while (value != 0);
    return end;
}

wchar_t* WriteSigned(wchar_t* end, int value) {
    auto const bits = static_cast<unsigned int>(value);
    if (value >= 0) return WriteNumber(end, bits);
    wchar_t* const first = WriteNumber(end, 0 - bits);
    first[-1] = L'-';
    return first - 1;
}

wchar_t* WriteDigits(wchar_t* end, std::uint64_t value, int count) {
    for (; count > 0; --count, value /= 10) *--end = static_cast<wchar_t>(L'0' + value % 10);
    return end;
}

CQorStringT<wchar_t> TextBetween(wchar_t const* first, wchar_t const* end) {
    return CQorStringT<wchar_t>(first, static_cast<int>(end - first));
}

// Whether the locale writes these characters, digits and a sign, as they are where it is asked for
// digits of its own.
bool AreAlsoLocaleDigits(wchar_t const* first, wchar_t const* end) {
    return std::all_of(first, end, [](wchar_t ch) {
        if (ch == L'-') return true;
        char const* const digit = nl_langinfo(_NL_CTYPE_OUTDIGIT0_MB + (ch - L'0'));
        return static_cast<wchar_t>(digit[0]) == ch && digit[1] == '\0';
    });
}

// ---- Numbers with a fixed number of decimals ----

constexpr int kMostDecimals = 16;

// The digits of a double, exactly: 64 bits in front of the point and 64 behind it.
struct FixedPoint {
    std::uint64_t whole;
    std::uint64_t fraction;  // in units of 2^-64
};

bool FitsFixedPoint(double magnitude) {
    constexpr double kLeastWithoutLowerBits = 1.0 / 4096;  // its last bit is worth 2^-64
    constexpr double kTooLarge = 18446744073709551616.0;   // 2^64
    return magnitude == 0 || (magnitude >= kLeastWithoutLowerBits && magnitude < kTooLarge);
}

FixedPoint ToFixedPoint(double magnitude) {
    double const whole = std::floor(magnitude);
    return {static_cast<std::uint64_t>(whole),
            static_cast<std::uint64_t>(std::ldexp(magnitude - whole, 64))};
}

// Moves the first decimals of the fraction in front of the point; `power` says how many.
std::uint32_t TakeDecimals(std::uint64_t& fraction, std::uint32_t power) {
    std::uint64_t const low = (fraction & 0xFFFFFFFFu) * power;
    std::uint64_t const high = (fraction >> 32) * power + (low >> 32);
    fraction = high << 32 | (low & 0xFFFFFFFFu);
    return static_cast<std::uint32_t>(high >> 32);
}

// Cuts the number to its decimals, which are returned, rounding half to even.
std::uint64_t RoundToDecimals(FixedPoint& number, int count) {
    static std::uint32_t const kPowers[] = {1,      10,      100,      1000,     10000,
                                            100000, 1000000, 10000000, 100000000};
    constexpr std::uint64_t kHalf = std::uint64_t{1} << 63;
    std::uint32_t const upper = kPowers[std::min(count, 8)];
    std::uint32_t const lower = kPowers[count - std::min(count, 8)];
    std::uint64_t decimals = std::uint64_t{TakeDecimals(number.fraction, upper)} * lower;
    decimals += TakeDecimals(number.fraction, lower);
    if (number.fraction < kHalf || (number.fraction == kHalf && decimals % 2 == 0)) return decimals;
    if (++decimals != std::uint64_t{upper} * lower) return decimals;
    ++number.whole;
    return 0;
}

// The C library would write the same.
bool IsPlainlyWritten(double value) {
    return FitsFixedPoint(std::fabs(value)) && std::fegetround() == FE_TONEAREST &&
           std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0;
}

// A number as "%.*lf" with 1 to kMostDecimals decimals. What is not plain takes the detour through
// the C library, at several times the cost.
class FixedText {
  public:
    FixedText(double value, int decimals) {
        if (IsPlainlyWritten(value))
            Write(value, decimals);
        else
            Format(value, decimals);
    }
    FixedText(FixedText const&) = delete;
    FixedText& operator=(FixedText const&) = delete;

    void TrimZeros() {
        if (last() != L'0') return;
        while (end_ - first_ > 1 && last() == L'0') --end_;
        if (last() == L'.') --end_;
    }

    CQorStringT<wchar_t> text() const { return TextBetween(first_, end_); }

  private:
    static constexpr int kRoom = 1 + 309 + 1 + kMostDecimals + 1;  // the largest double, terminated

    wchar_t last() const { return end_[-1]; }

    void Write(double value, int decimals) {
        FixedPoint number = ToFixedPoint(std::fabs(value));
        std::uint64_t const behindPoint = RoundToDecimals(number, decimals);
        end_ = text_ + kRoom;
        wchar_t* p = WriteDigits(text_ + kRoom, behindPoint, decimals);
        *--p = L'.';
        p = WriteNumber(p, number.whole);
        if (std::signbit(value)) *--p = L'-';
        first_ = p;
    }

    void Format(double value, int decimals) {
        first_ = text_;
        end_ = text_ + std::swprintf(text_, kRoom, L"%.*lf", decimals, value);
    }

    wchar_t text_[kRoom];
    wchar_t const* first_;
    wchar_t const* end_;
};

// Texts of this length are too long for Format, which gives an empty one then.
constexpr int kTooLongToFormat = 2048;

// ---- Scanning ----

ScannedInteger Scan(wchar_t const* text) {
    return text == nullptr ? ScannedInteger() : ScanInteger(text);
}

bool IsAscii(wchar_t ch) {
    return static_cast<std::uint32_t>(ch) < 0x80;
}

// As the C library reads "%I64d", in which "I" admits the digits of the locale.
ScannedInteger ScanLocaleDigits(wchar_t const* text) {
    long long value = 0;
    ScannedInteger number = {};
    number.hasDigits = std::swscanf(text, L"%I64lld", &value) == 1;
    number.isNegative = value < 0;
    auto const bits = static_cast<std::uint64_t>(value);
    number.magnitude = number.isNegative ? 0 - bits : bits;
    return number;
}

ScannedInteger ScanField64(wchar_t const* text) {
    if (text == nullptr) return {};
    ScannedInteger const number = ScanInteger(text, 64);
    return IsAscii(*number.end) ? number : ScanLocaleDigits(text);
}

// Twelve decimals, half away from zero.
double RoundToTwelve(double value) {
    return std::copysign(std::floor(std::fabs(value) * 1e12 + 0.5) / 1e12, value);
}

// ---- The number at the end of a text ----

struct TrailingNumber {
    int zeros;   // where its leading zeros begin
    int digits;  // where the number behind them begins
};

TrailingNumber FindTrailingNumber(CQorStringT<wchar_t> const& text) {
    int const end = text.GetLength();
    TrailingNumber number = {end, end};
    while (number.zeros > 0 && IsDecimalDigit(text[number.zeros - 1])) --number.zeros;
    number.digits = number.zeros;
    while (number.digits < end && text[number.digits] == L'0') ++number.digits;
    return number;
}

constexpr unsigned char kNegativeSign = 255;

// digits + increment; empty if that is not a number, or negative.
CQorStringT<wchar_t> Sum(wchar_t const* digits, int increment) {
    bignum_t<255> number;
    if (*digits == L'\0')
        number = 0;
    else
        number = digits;
    bignum_t<255> summand;
    summand = increment;
    bignum_t<255> const sum = number + summand;
    if (sum.isNaN() || sum.sign == kNegativeSign) return {};
    return sum;
}

}  // namespace

CQorStringT<wchar_t> IntToString(int value) {
    wchar_t text[11];
    return TextBetween(WriteSigned(text + 11, value), text + 11);
}

CQorStringT<wchar_t> UIntToString(unsigned int value) {
    wchar_t text[10];
    return TextBetween(WriteNumber(text + 10, value), text + 10);
}

CQorStringT<wchar_t> Int64ToString(long long value) {
    constexpr int kWidth = 64;
    auto const low = static_cast<int>(value);
    wchar_t field[kWidth];
    wchar_t* const number = WriteSigned(field + kWidth, low);
    if (AreAlsoLocaleDigits(number, field + kWidth)) {
        std::fill(field, number, L' ');
        return TextBetween(field, field + kWidth);
    }
    CQorStringT<wchar_t> text;
    text.Format(L"%I64d", low);
    return text;
}

CQorStringT<wchar_t> DoubleToString(double value) {
    FixedText text(value, 12);
    text.TrimZeros();
    return text.text();
}

// On purpose: only 1 to 16 decimals are of the number rounded by round_prec.
CQorStringT<wchar_t> DoubleToString(double value, int precision) {
    if (precision >= 1 && precision <= kMostDecimals)
        return FixedText(qor::math::round_prec(value, precision), precision).text();

    // The C library would compute all the digits before it found that there is no room.
    if (precision >= kTooLongToFormat && std::isfinite(value)) return {};
    CQorStringT<wchar_t> text;
    if (precision < 0)
        text.Format(L"%lf", value);
    else
        text.Format(L"%.*lf", precision, precision == 0 ? std::round(value) : value);
    return text;
}

int StringToDouble(CQorStringT<wchar_t> const& text, double& value) {
    CQorStringT<wchar_t> number(text);
    int const comma = number.Find(L',');
    if (comma != -1) number.SetAt(comma, L'.');
    double read = 0.0;
    int const count = std::swscanf(number, L"%lf", &read);
    value = RoundToTwelve(read);
    return count == 1;
}

int StringToInt(wchar_t const* text, int& value) {
    ScannedInteger const number = Scan(text);
    value = ToSigned(number);
    return number.hasDigits;
}

int StringToLong(wchar_t const* text, long& value) {
    ScannedInteger const number = Scan(text);
    value = ToSigned(number);
    return number.hasDigits;
}

int StringToUint(wchar_t const* text, unsigned int& value) {
    ScannedInteger const number = Scan(text);
    value = ToUnsigned(number);
    return number.hasDigits;
}

int StringToShort(wchar_t const* text, short& value) {
    ScannedInteger const number = Scan(text);
    value = static_cast<short>(ToSigned(number));
    return number.hasDigits;
}

int StringToInt64(wchar_t const* text, long long& value) {
    ScannedInteger const number = ScanField64(text);
    auto const low = static_cast<std::uint32_t>(ToSigned(number));
    auto const high = number.hasDigits ? static_cast<std::uint64_t>(value) >> 32 : 0;
    value = static_cast<long long>(high << 32 | low);
    return number.hasDigits;
}

CQorStringT<wchar_t> ReplaceCommasWithDecPt(CQorStringT<wchar_t> const& text) {
    CQorStringT<wchar_t> copy(text);
    if (std::find(copy.begin(), copy.end(), L',') != copy.end()) copy.Replace(L',', L'.');
    return copy;
}

int DoIncPtno(CQorStringT<wchar_t>& text, int increment) {
    if (increment == 0) return 0;
    TrailingNumber const number = FindTrailingNumber(text);
    CQorStringT<wchar_t> const sum = Sum(text.c_str() + number.digits, increment);
    if (sum.IsEmpty()) return 0;
    bool const isLonger = sum.GetLength() > text.GetLength() - number.digits;
    bool const dropsZero = isLonger && number.zeros != number.digits;
    text = text.Left(number.digits - (dropsZero ? 1 : 0)) + sum;
    return 1;
}

}  // namespace qor_formats
