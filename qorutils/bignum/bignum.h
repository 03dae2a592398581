/// @file
/// `bignum_t<255>`: whole numbers of up to 255 decimal digits, for exact counting beyond 64 bits.
///
///     bignum_t<255> const count("12345678901234567890123");
///     bignum_t<255> const share = count / bignum_t<255>("1000");
///     wchar_t text[256];
///     unsigned int size = 256;
///     share.cast2s(text, size);  // L"12345678901234567890"
///
/// A value is a plain record without heap memory: copying copies it, and destroying does nothing.
/// Instead of failing, everything answers with NaN (not a number): results of more than 255 digits,
/// division by zero, text that is no number, and all arithmetic on NaN. isNaN() is the caller's
/// test. Nothing here throws, except that the conversions to strings throw std::bad_alloc.
///
/// On purpose: the sign is kept but never shown. isNegative() is false for every value, and each
/// way out of the type (double, integers, text) gives the magnitude. Comparisons, subtraction,
/// multiplication and division see magnitudes only; the operators say what they do with signs.
///
/// On purpose: an addition or a digit_shift can give 256 digits, the uppermost lying in the place
/// of the sign, where it is the sign to whoever reads that. The sum of a number of 255 digits and
/// one of the same sign always writes there: 1 with the uppermost digit, and 0 where there is none.
/// So do a difference that is not negative and a quotient, of a number of 256 digits, unless they
/// are zero. A sign of 0 differs from both other signs.
///
/// The fields are open to ported code. Records that do not keep to what is said there are safe to
/// use: the results are some number or NaN.
///
/// Threads: values may be read from any thread, but an addition writes to its right operand (see
/// operator+), also to a const one; it must not be in use elsewhere then.

#ifndef QORUTILS_BIGNUM_BIGNUM_H_
#define QORUTILS_BIGNUM_BIGNUM_H_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

/// The ten characters "0123456789", without terminator, as `digits_t<char>::digs` and
/// `digits_t<wchar_t>::digs`.
template <typename T>
struct digits_t;
/// The ten digits as char.
template <>
struct QORUTILS_API digits_t<char> {
    static char const digs[10];  ///< '0' to '9', without terminator
};
/// The ten digits as wchar_t.
template <>
struct QORUTILS_API digits_t<wchar_t> {
    static wchar_t const digs[10];  ///< '0' to '9', without terminator
};

/// The functions that measure a text: strlen and wcslen, as `StrType<char const*>::lenFunc` and so
/// on.
template <typename Text>
struct StrType;
/// Measures narrow texts.
template <>
struct QORUTILS_API StrType<char const*> {
    static std::size_t (*const lenFunc)(char const*);  ///< strlen
};
/// Measures wide texts.
template <>
struct QORUTILS_API StrType<wchar_t const*> {
    static std::size_t (*const lenFunc)(wchar_t const*);  ///< wcslen
};
/// Measures wide texts.
template <>
struct QORUTILS_API StrType<wchar_t*> {
    static std::size_t (*const lenFunc)(wchar_t const*);  ///< wcslen
};

namespace bignum_detail {

// The integer types that a bignum_t takes and gives. Each has the range that it has on the 32-bit
// target, on every machine.
template <typename T>
struct Integer;

template <typename T>
struct IntegerLike {
    using Target = T;
    static double Lowest() { return static_cast<double>(std::numeric_limits<T>::min()); }
    static double Highest() { return static_cast<double>(std::numeric_limits<T>::max()); }
};

template <>
struct Integer<char> {
    using Target = unsigned char;
    static double Lowest() { return 128; }
    static double Highest() { return 127; }
};
template <>
struct Integer<short> : IntegerLike<std::int16_t> {};
template <>
struct Integer<int> : IntegerLike<std::int32_t> {};
template <>
struct Integer<long> : IntegerLike<std::int32_t> {};
template <>
struct Integer<long long> : IntegerLike<std::int64_t> {};
template <>
struct Integer<unsigned char> : IntegerLike<std::uint8_t> {};
template <>
struct Integer<unsigned short> : IntegerLike<std::uint16_t> {};
template <>
struct Integer<unsigned int> : IntegerLike<std::uint32_t> {};
template <>
struct Integer<unsigned long> : IntegerLike<std::uint32_t> {};
template <>
struct Integer<unsigned long long> : IntegerLike<std::uint64_t> {};

}  // namespace bignum_detail

/// A whole number of up to N decimal digits. There is only `bignum_t<255>`.
///
/// `T` below is one of char, short, int, long, long long, their unsigned kinds, but not signed
/// char. On every machine char has no sign and long 32 bits; of a wider long, the low 32 bits
/// count.
template <unsigned int N>
class QORUTILS_API bignum_t {
  public:
    unsigned char digits[N];     ///< 0 to 9, the least significant first; 0 above top
    mutable unsigned char sign;  ///< 1 positive, 255 negative
    std::int16_t top;            ///< index of the most significant digit, 0 for zero; below 0: NaN

    /// @name Values
    /// @{

    /// NaN.
    bignum_t() { init(); }

    bignum_t(bignum_t const&) = default;             ///< Copies the record.
    bignum_t& operator=(bignum_t const&) = default;  ///< Copies the record.

    /// @}
    /// @name From text
    /// @{

    /// Decimal text of 1 to 255 characters: signs, of which the last one holds ("+-5" is -5), then
    /// digits, any number of them zeros in front. Everything else is NaN: null, white space,
    /// decimal points, a sign behind a digit.
    /// On purpose: a text that is longer than that is NaN also when its number is small.
    bignum_t(char const* text);
    bignum_t(wchar_t const* text);
    bignum_t& operator=(char const* text);
    bignum_t& operator=(wchar_t const* text);

    /// @}
    /// @name From integers, and what a value is
    /// @{

    /// The value of v; a negative one keeps its magnitude and gets the sign 255.
    template <typename T, typename Target = typename bignum_detail::Integer<T>::Target>
    bignum_t& operator=(T const& v) {
        auto const bits = static_cast<std::uint64_t>(static_cast<Target>(v));
        AssignInteger(bits, std::is_signed<Target>::value && bits >> 63 != 0);
        return *this;
    }

    /// NaN, with all digits 0 and the sign 1.
    void init();

    /// NaN; digits and sign stay as they are.
    void setNaN() { top = -1; }

    /// Whether this is no number.
    bool isNaN() const { return top < 0; }

    /// Whether the value is 0. False for NaN.
    bool isZero() const;

    /// Whether the value is below 0.
    /// On purpose: always false, whatever the sign.
    bool isNegative() const { return false; }

    /// @}
    /// @name Arithmetic
    /// @{

    /// The value with the other sign: 255 for 1 and 1 for 255, even if it is a digit; any other
    /// stays.
    /// On purpose: zero and NaN get it too.
    bignum_t operator-() const;

    /// @}
    /// @name Arithmetic in place
    /// @{

    /// As the operator with two operands. The value itself may be the operand.
    bignum_t& operator+=(bignum_t const& b);
    bignum_t& operator-=(bignum_t const& b);
    bignum_t& operator*=(bignum_t const& b);
    bignum_t& operator/=(bignum_t const& b);

    /// @}
    /// @name Counting
    /// @{

    /// `+= 1` and `-= 1`, with what these do to signs: `++` of -5 gives 4, `--` of it 4 as well.
    bignum_t& operator++();
    bignum_t& operator--();
    bignum_t operator++(int);
    bignum_t operator--(int);

    /// @}
    /// @name Comparison
    /// @{

    /// -1, 0 or 1. NaN equals NaN and is below everything else.
    /// On purpose: of the magnitudes; -5 equals 5 and is above 3.
    int compare(bignum_t const& b) const;
    /// As compare().
    bool operator<(bignum_t const& b) const { return compare(b) < 0; }
    /// As compare().
    bool operator==(bignum_t const& b) const { return compare(b) == 0; }

    /// @}
    /// @name To doubles and integers
    /// @{

    /// The magnitude: the sum of digit x power of ten from the least significant digit on, rounded
    /// at each step. A quiet NaN for NaN. Operators that are not declared here, as `>` and, before
    /// C++20, `!=`, compare these doubles.
    operator double() const;

    /// Stores the magnitude at out. False, with out untouched, for NaN and for what T cannot hold.
    /// On purpose: 64-bit types take what rounds to their upper limit as a double, and wrap: 2^63
    /// becomes the lowest long long. char takes nothing, not even 0.
    template <typename T, typename Target = typename bignum_detail::Integer<T>::Target>
    bool cast2int(T& out) const {
        using Limits = bignum_detail::Integer<T>;
        std::uint64_t sum;
        if (!SumDigits(Limits::Lowest(), Limits::Highest(), &sum)) return false;
        out = static_cast<T>(static_cast<Target>(sum));
        return true;
    }

    /// @}
    /// @name To text
    /// @{

    /// Writes the digits of the magnitude and a terminating zero to buf, which has size elements;
    /// size stays as it is. False, with an empty text, when they do not fit or a digit is above 9;
    /// false for a null buf or a size of 0.
    /// On purpose: NaN is the empty text and true; so is every value with a size of 1.
    bool cast2s(char* buf, unsigned int& size) const;
    bool cast2s(wchar_t* buf, unsigned int& size) const;

    /// @}
    /// @name To strings
    /// @{

    /// The same text as a string; empty for NaN and where a digit is above 9. To be written as
    /// `CQorStringT<wchar_t> text = value;`: a string can be made of a double's character too, so
    /// that other forms may be ambiguous.
    operator qor_text::CQorStringT<char>() const;
    operator qor_text::CQorStringT<wchar_t>() const;

    /// @}

  private:
    template <unsigned int M>
    friend bignum_t<M> operator+(bignum_t<M> const& a, bignum_t<M> const& b);
    template <unsigned int M>
    friend bignum_t<M> operator-(bignum_t<M> const& a, bignum_t<M> const& b);
    template <unsigned int M>
    friend bignum_t<M> operator*(bignum_t<M> const& a, bignum_t<M> const& b);
    template <unsigned int M>
    friend bignum_t<M> operator/(bignum_t<M> const& a, bignum_t<M> const& b);

    // Leaves the digits without value.
    struct Unset {};
    QORUTILS_LOCAL explicit bignum_t(Unset) : sign(1), top(-1) {}

    void AssignInteger(std::uint64_t bits, bool isNegative);
    bool SumDigits(double lowest, double highest, std::uint64_t* sum) const;
};

/// `|a| + |b|` with their sign, if they have the same.
/// On purpose: with different signs, `|a| - |b|`, and b, const or not, has the sign 255 afterwards:
/// 3 + (-7) is -4, and so is (-3) + 7, which leaves -7 in b. Sums of up to 256 digits: see above.
template <unsigned int N>
QORUTILS_API bignum_t<N> operator+(bignum_t<N> const& a, bignum_t<N> const& b);

/// On purpose: `|a| - |b|`, negative if |b| is the larger.
template <unsigned int N>
QORUTILS_API bignum_t<N> operator-(bignum_t<N> const& a, bignum_t<N> const& b);

/// `|a| x |b|`, always positive; NaN if it has more than 255 digits.
template <unsigned int N>
QORUTILS_API bignum_t<N> operator*(bignum_t<N> const& a, bignum_t<N> const& b);

/// `|a| / |b|` without remainder, always positive; NaN for b = 0.
/// On purpose: in an operand of 256 digits, the uppermost counts as 1.
template <unsigned int N>
QORUTILS_API bignum_t<N> operator/(bignum_t<N> const& a, bignum_t<N> const& b);

/// Multiplies by 10^n; the sign stays. An n below 1, NaN and zero change nothing.
/// On purpose: NaN only above 256 digits; with 256, the uppermost takes the place of the sign.
template <unsigned int N>
QORUTILS_API void digit_shift(bignum_t<N>* v, int n);

/// @cond
extern template class bignum_t<255>;
extern template bignum_t<255> operator+(bignum_t<255> const& a, bignum_t<255> const& b);
extern template bignum_t<255> operator-(bignum_t<255> const& a, bignum_t<255> const& b);
extern template bignum_t<255> operator*(bignum_t<255> const& a, bignum_t<255> const& b);
extern template bignum_t<255> operator/(bignum_t<255> const& a, bignum_t<255> const& b);
extern template void digit_shift(bignum_t<255>* v, int n);
/// @endcond

static_assert(sizeof(bignum_t<255>) == 258 && offsetof(bignum_t<255>, sign) == 255,
              "digits, sign and top follow each other without gaps");

#endif  // QORUTILS_BIGNUM_BIGNUM_H_
