#include "qorutils/bignum/bignum.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>

#include "qorutils/bignum/limbs.h"
#include "qorutils/bignum/packed_digits.h"

using bignum_detail::AddDigits;
using bignum_detail::DigitWord;
using bignum_detail::DivideLimbs;
using bignum_detail::DropExcess;
using bignum_detail::FromLimb;
using bignum_detail::kDigitsPerWord;
using bignum_detail::kLimbBase;
using bignum_detail::kMaxLimbs;
using bignum_detail::LoadDigits;
using bignum_detail::LoadText;
using bignum_detail::MultiplyLimbs;
using bignum_detail::NonDigits;
using bignum_detail::StoreDigits;
using bignum_detail::StoreText;
using bignum_detail::SubtractDigits;
using bignum_detail::ToLimb;
using qor_text::CQorStringT;

char const digits_t<char>::digs[10] = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'};
wchar_t const digits_t<wchar_t>::digs[10] = {L'0', L'1', L'2', L'3', L'4',
                                             L'5', L'6', L'7', L'8', L'9'};

std::size_t (*const StrType<char const*>::lenFunc)(char const*) = std::strlen;
std::size_t (*const StrType<wchar_t const*>::lenFunc)(wchar_t const*) = std::wcslen;
std::size_t (*const StrType<wchar_t*>::lenFunc)(wchar_t const*) = std::wcslen;

namespace {

using Number = bignum_t<255>;

constexpr unsigned char kPositive = 1;
constexpr unsigned char kNegative = 255;

constexpr int kSignPlace = 255;  // the index of the sign, which the 256th digit takes
constexpr int kWords = (kSignPlace + 1) / kDigitsPerWord;

double const kNaN = std::numeric_limits<double>::quiet_NaN();

// The record as bytes: 255 digits and the sign, at the index of a further digit.
unsigned char* BytesOf(Number& v) {
    return reinterpret_cast<unsigned char*>(&v);
}
unsigned char const* BytesOf(Number const& v) {
    return reinterpret_cast<unsigned char const*>(&v);
}

// Where the digits of word i begin.
constexpr std::ptrdiff_t PlaceOf(int i) {
    return std::ptrdiff_t{i} * kDigitsPerWord;
}

// The index of the uppermost digit, for damaged records too; v is not NaN.
int TopOf(Number const& v) {
    return std::min<int>(v.top, kSignPlace);
}

// The digits up to top, eight a word; above there are only zeros.
class DigitWords {
  public:
    explicit DigitWords(Number const& v)
        : bytes_(BytesOf(v)),
          last_(TopOf(v) / kDigitsPerWord),
          lastMask_(~DigitWord{0} >> 8 * (kDigitsPerWord - 1 - TopOf(v) % kDigitsPerWord)) {}

    int last() const { return last_; }

    DigitWord operator[](int i) const {
        if (i > last_) return 0;
        DigitWord const word = LoadDigits(bytes_ + PlaceOf(i));
        return i < last_ ? word : word & lastMask_;
    }

  private:
    unsigned char const* bytes_;
    int last_;
    DigitWord lastMask_;
};

void StoreWord(Number* v, int i, DigitWord word) {
    StoreDigits(BytesOf(*v) + PlaceOf(i), word);
}

// All words from i on become 0, as does the sign.
void ClearWordsFrom(int i, Number* v) {
    std::memset(BytesOf(*v) + PlaceOf(i), 0, static_cast<std::size_t>(PlaceOf(kWords - i)));
}

// Gives v, whose first n words stand, zeros above them, its sign, unless a digit has that place,
// and its top: the highest digit that is not zero, from the given one downwards. That is mostly the
// first or the second; whole words of zeros are passed over at once.
void Finish(Number* v, int n, int top, unsigned char sign) {
    ClearWordsFrom(n, v);
    if (top < kSignPlace) v->sign = sign;
    unsigned char const* const place = BytesOf(*v);
    while (top > 0 && place[top] == 0) {
        bool const endsWord = top % kDigitsPerWord == kDigitsPerWord - 1;
        bool const isWordZero = endsWord && LoadDigits(place + top + 1 - kDigitsPerWord) == 0;
        top = std::max(0, top - (isWordZero ? kDigitsPerWord : 1));
    }
    if (place[top] == 0) v->sign = kPositive;
    v->top = static_cast<std::int16_t>(top);
}

void SetZero(Number* v) {
    v->init();
    v->top = 0;
}

// ---- Sums ----
// Here and below, the result may be one of the operands.

void AddSameSigns(Number const& a, Number const& b, Number* sum) {
    unsigned char const sign = a.sign;
    int const top = std::max(a.top, b.top) + 1;
    if (top > kSignPlace) {
        sum->init();
        sum->sign = sign;
        return;
    }
    DigitWords const x(a);
    DigitWords const y(b);
    int const n = top / kDigitsPerWord + 1;
    DigitWord carry = 0;
    for (int i = 0; i < n; ++i) StoreWord(sum, i, AddDigits(x[i], y[i], &carry));
    Finish(sum, n, top, sign);
}

// b is not larger than a.
void SubtractSmaller(Number const& a, Number const& b, Number* difference) {
    DigitWords const x(a);
    DigitWords const y(b);
    int const top = std::max(TopOf(a), TopOf(b));
    int const n = top / kDigitsPerWord + 1;
    DigitWord borrow = 0;
    DigitWord word = 0;
    for (int i = 0; i < n; ++i) {
        word = SubtractDigits(x[i], y[i], &borrow);
        StoreWord(difference, i, DropExcess(word));
    }
    // What once was a sign may be above 9; it borrows from nowhere.
    if (top == kSignPlace) difference->sign = static_cast<unsigned char>(word >> 56);
    Finish(difference, n, top, kPositive);
}

void Subtract(Number const& a, Number const& b, Number* difference) {
    if (a.isNaN() || b.isNaN()) return difference->init();
    if (b.compare(a) <= 0) return SubtractSmaller(a, b, difference);
    SubtractSmaller(b, a, difference);
    difference->sign = kNegative;
}

void Add(Number const& a, Number const& b, Number* sum) {
    if (a.isNaN() || b.isNaN()) return sum->init();
    if (a.sign == b.sign) return AddSameSigns(a, b, sum);
    b.sign = kPositive;
    Subtract(a, b, sum);
    b.sign = kNegative;
}

// ---- Products and quotients ----

struct Limbs {
    std::int32_t limbs[kMaxLimbs];
    int count;     // 0 for zero
    bool isValid;  // all are below the base; not so in damaged numbers only

    explicit Limbs(Number const& v) {
        DigitWords const words(v);
        std::uint32_t largest = 0;
        count = words.last() + 1;
        for (int i = 0; i < count; ++i) {
            std::uint32_t const limb = ToLimb(words[i]);
            largest = std::max(largest, limb);
            limbs[i] = static_cast<std::int32_t>(limb);
        }
        isValid = largest < kLimbBase;
        while (count > 0 && limbs[count - 1] == 0) --count;
    }
};

// Of a number with the positive sign, which takes the place of a 256th digit.
Limbs LimbsOfPositive(Number const& v) {
    if (TopOf(v) < kSignPlace) return Limbs(v);
    Number positive(v);
    positive.sign = kPositive;
    return Limbs(positive);
}

void StoreLimbs(Number* v, std::int64_t const* limbs, int n) {
    for (int i = 0; i < n; ++i) StoreWord(v, i, FromLimb(static_cast<std::uint32_t>(limbs[i])));
}

void Multiply(Number const& a, Number const& b, Number* product) {
    if (a.isNaN() || b.isNaN()) return product->init();
    Limbs const x(a);
    Limbs const y(b);
    if (x.count == 0 || y.count == 0) return SetZero(product);
    int const n = x.count + y.count;
    if (n > kMaxLimbs + 1 || !x.isValid || !y.isValid) return product->init();
    std::int64_t limbs[kMaxLimbs + 1];
    limbs[kMaxLimbs] = 0;
    MultiplyLimbs(x.limbs, x.count, y.limbs, y.count, limbs);
    int const stored = std::min(n, kMaxLimbs);
    StoreLimbs(product, limbs, stored);
    bool const has256Digits = stored == kMaxLimbs && product->sign != 0;
    if (has256Digits || limbs[kMaxLimbs] != 0) return product->init();
    Finish(product, stored, std::min(stored * kDigitsPerWord, kSignPlace) - 1, kPositive);
}

void Divide(Number const& a, Number const& b, Number* quotient) {
    if (a.isNaN() || b.isNaN() || b.isZero()) return quotient->init();
    Limbs const x = LimbsOfPositive(a);
    Limbs const y = LimbsOfPositive(b);
    if (!x.isValid || !y.isValid) return quotient->init();
    if (x.count < y.count) return SetZero(quotient);
    std::int64_t rest[kMaxLimbs + 1];
    *std::copy_n(x.limbs, x.count, rest) = 0;
    std::int64_t limbs[kMaxLimbs];
    int const n = x.count - y.count + 1;
    DivideLimbs(rest, x.count, y.limbs, y.count, limbs);
    int const top = TopOf(a);
    StoreLimbs(quotient, limbs, n);
    // Digits above those stored are zeros, at the place of the sign too.
    unsigned char const sign = top < kSignPlace ? kPositive : 0;
    Finish(quotient, n, std::min(top, n * kDigitsPerWord - 1), sign);
}

// ---- Text ----

// The n % 8 most significant digits of a text of n, all eight shifted out if there are none: in two
// steps, as a word cannot be shifted by 64.
template <typename T>
DigitWord LoadUppermost(T const* text, int n) {
    if (n < kDigitsPerWord) return LoadText(text, n);
    return LoadText(text) >> 8 * (kDigitsPerWord - 1 - n % kDigitsPerWord) >> 8;
}

// Becomes the number that the text says, or stays as it is and returns false.
template <typename T>
bool Parse(T const* text, Number* v) {
    if (text == nullptr) return false;
    std::size_t const length = StrType<T const*>::lenFunc(text);
    if (length < 1 || length > 255) return false;
    T const* const end = text + length;
    unsigned char sign = kPositive;
    for (; *text == T('+') || *text == T('-'); ++text)
        sign = *text == T('-') ? kNegative : kPositive;
    int const n = static_cast<int>(end - text);
    if (n == 0) return false;

    int const whole = n / kDigitsPerWord;
    DigitWord const uppermost = LoadUppermost(text, n);
    DigitWord nonDigits = NonDigits(uppermost);
    for (int i = 1; i <= whole; ++i) nonDigits |= NonDigits(LoadText(end - i * kDigitsPerWord));
    if (nonDigits != 0) return false;

    for (int i = 0; i < whole; ++i) StoreWord(v, i, LoadText(end - (i + 1) * kDigitsPerWord));
    StoreWord(v, whole, uppermost);
    Finish(v, whole + 1, n - 1, sign);
    return true;
}

template <typename T>
Number& AssignText(T const* text, Number* v) {
    if (!Parse(text, v)) v->setNaN();
    return *v;
}

// Writes the n digits of v; false for a digit above 9.
template <typename T>
bool WriteDigits(Number const& v, int n, T* text) {
    DigitWords const words(v);
    int const whole = n / kDigitsPerWord;
    DigitWord nonDigits = NonDigits(words[whole]);
    if (n < kDigitsPerWord)
        StoreText(words[0], text, n);
    else
        StoreText(LoadDigits(BytesOf(v) + (n - kDigitsPerWord)), text);
    for (int i = 0; i < whole; ++i) {
        nonDigits |= NonDigits(words[i]);
        StoreText(words[i], text + (n - (i + 1) * kDigitsPerWord));
    }
    return nonDigits == 0;
}

template <typename T>
bool WriteText(Number const& v, T* buf, unsigned int size) {
    if (buf == nullptr || size == 0) return false;
    *buf = T();
    if (v.isNaN() || size == 1) return true;
    int const n = TopOf(v) + 1;
    if (static_cast<unsigned int>(n) >= size) return false;
    bool const areDigits = WriteDigits(v, n, buf);
    buf[areDigits ? n : 0] = T();
    return areDigits;
}

template <typename T>
CQorStringT<T> MakeString(Number const& v) {
    CQorStringT<T> text;
    if (v.isNaN()) return text;
    int const n = TopOf(v) + 1;
    if (!WriteDigits(v, n, text.GetBufferSetLength(n))) text.Empty();
    return text;
}

}  // namespace

template <unsigned int N>
bignum_t<N>::bignum_t(char const* text) {
    if (!Parse(text, this)) init();
}

template <unsigned int N>
bignum_t<N>::bignum_t(wchar_t const* text) {
    if (!Parse(text, this)) init();
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator=(char const* text) {
    return AssignText(text, this);
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator=(wchar_t const* text) {
    return AssignText(text, this);
}

template <unsigned int N>
void bignum_t<N>::AssignInteger(std::uint64_t bits, bool isNegative) {
    std::uint64_t rest = isNegative ? 0 - bits : bits;
    int n = 0;
    do {
        StoreWord(this, n++, FromLimb(static_cast<std::uint32_t>(rest % kLimbBase)));
        rest /= kLimbBase;
    } while (rest != 0);
    Finish(this, n, n * kDigitsPerWord - 1, isNegative ? kNegative : kPositive);
}

template <unsigned int N>
void bignum_t<N>::init() {
    ClearWordsFrom(0, this);
    sign = kPositive;
    top = -1;
}

template <unsigned int N>
bool bignum_t<N>::isZero() const {
    if (isNaN()) return false;
    DigitWords const words(*this);
    int i = words.last();
    while (i > 0 && words[i] == 0) --i;
    return words[i] == 0;
}

template <unsigned int N>
bignum_t<N> bignum_t<N>::operator-() const {
    bignum_t opposite(*this);
    if (sign == kPositive) opposite.sign = kNegative;
    if (sign == kNegative) opposite.sign = kPositive;
    return opposite;
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator+=(bignum_t const& b) {
    Add(*this, b, this);
    return *this;
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator-=(bignum_t const& b) {
    Subtract(*this, b, this);
    return *this;
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator*=(bignum_t const& b) {
    Multiply(*this, b, this);
    return *this;
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator/=(bignum_t const& b) {
    Divide(*this, b, this);
    return *this;
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator++() {
    bignum_t one;
    one = char{1};
    return *this += one;
}

template <unsigned int N>
bignum_t<N>& bignum_t<N>::operator--() {
    bignum_t one;
    one = char{1};
    return *this -= one;
}

template <unsigned int N>
bignum_t<N> bignum_t<N>::operator++(int) {
    bignum_t const old(*this);
    ++*this;
    return old;
}

template <unsigned int N>
bignum_t<N> bignum_t<N>::operator--(int) {
    bignum_t const old(*this);
    --*this;
    return old;
}

template <unsigned int N>
int bignum_t<N>::compare(bignum_t const& b) const {
    if (this == &b) return 0;
    if (isNaN()) return b.isNaN() ? 0 : -1;
    if (b.isNaN()) return 1;
    DigitWords const x(*this);
    DigitWords const y(b);
    int i = std::max(x.last(), y.last());
    while (i > 0 && x[i] == y[i]) --i;
    if (x[i] == y[i]) return 0;
    return x[i] > y[i] ? 1 : -1;
}

template <unsigned int N>
bignum_t<N>::operator double() const {
    if (isNaN()) return kNaN;
    unsigned char const* const place = BytesOf(*this);
    double sum = 0;
    double power = 1;
    for (int i = 0; i <= TopOf(*this); ++i) {
        sum += place[i] * power;
        power *= 10;
    }
    return sum;
}

// The sum of the digits by their powers, modulo 2^64. False as soon as the sum as a double is out
// of the limits, and for NaN.
template <unsigned int N>
bool bignum_t<N>::SumDigits(double lowest, double highest, std::uint64_t* sum) const {
    if (isNaN()) return false;
    unsigned char const* const place = BytesOf(*this);
    std::uint64_t power = 1;
    double doublePower = 1;
    double doubleSum = 0;
    *sum = 0;
    for (int i = 0; i <= TopOf(*this); ++i) {
        *sum += place[i] * power;
        doubleSum += place[i] * doublePower;
        if (doubleSum < lowest || doubleSum > highest) return false;
        power *= 10;
        doublePower *= 10;
    }
    return true;
}

template <unsigned int N>
bool bignum_t<N>::cast2s(char* buf, unsigned int& size) const {
    return WriteText(*this, buf, size);
}

template <unsigned int N>
bool bignum_t<N>::cast2s(wchar_t* buf, unsigned int& size) const {
    return WriteText(*this, buf, size);
}

template <unsigned int N>
bignum_t<N>::operator CQorStringT<char>() const {
    return MakeString<char>(*this);
}

template <unsigned int N>
bignum_t<N>::operator CQorStringT<wchar_t>() const {
    return MakeString<wchar_t>(*this);
}

template <unsigned int N>
bignum_t<N> operator+(bignum_t<N> const& a, bignum_t<N> const& b) {
    bignum_t<N> result((typename bignum_t<N>::Unset()));
    Add(a, b, &result);
    return result;
}

template <unsigned int N>
bignum_t<N> operator-(bignum_t<N> const& a, bignum_t<N> const& b) {
    bignum_t<N> result((typename bignum_t<N>::Unset()));
    Subtract(a, b, &result);
    return result;
}

template <unsigned int N>
bignum_t<N> operator*(bignum_t<N> const& a, bignum_t<N> const& b) {
    bignum_t<N> result((typename bignum_t<N>::Unset()));
    Multiply(a, b, &result);
    return result;
}

template <unsigned int N>
bignum_t<N> operator/(bignum_t<N> const& a, bignum_t<N> const& b) {
    bignum_t<N> result((typename bignum_t<N>::Unset()));
    Divide(a, b, &result);
    return result;
}

template <unsigned int N>
void digit_shift(bignum_t<N>* v, int n) {
    if (n <= 0 || v->isNaN() || (v->top == 0 && v->digits[0] == 0)) return;
    if (n > kSignPlace - v->top) return v->setNaN();
    unsigned char* const place = BytesOf(*v);
    std::memmove(place + n, place, static_cast<std::size_t>(v->top) + 1);
    std::memset(place, 0, static_cast<std::size_t>(n));
    v->top = static_cast<std::int16_t>(v->top + n);
}

template class bignum_t<255>;
template bignum_t<255> operator+(bignum_t<255> const& a, bignum_t<255> const& b);
template bignum_t<255> operator-(bignum_t<255> const& a, bignum_t<255> const& b);
template bignum_t<255> operator*(bignum_t<255> const& a, bignum_t<255> const& b);
template bignum_t<255> operator/(bignum_t<255> const& a, bignum_t<255> const& b);
template void digit_shift(bignum_t<255>* v, int n);
