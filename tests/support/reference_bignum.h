// The arithmetic of bignum_t<255> done plainly, one digit after another: products by repeated
// addition, quotients by repeated subtraction. What the library's own must give, to the last byte.
#ifndef QORUTILS_TESTS_SUPPORT_REFERENCE_BIGNUM_H_
#define QORUTILS_TESTS_SUPPORT_REFERENCE_BIGNUM_H_

#include <qorutils/bignum/bignum.h>

#include <algorithm>
#include <array>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace reference_bignum {

constexpr int kSign = 255;  // the place of the sign among the digits

// NaN at first.
struct Record {
    std::array<unsigned char, 256> digits;  // the last is the sign
    int top = -1;

    Record() {
        digits.fill(0);
        digits[kSign] = 1;
    }
    bool IsNaN() const { return top < 0; }
    int At(int i) const { return i > top ? 0 : digits[static_cast<std::size_t>(i)]; }
    void Set(int i, int digit) {
        digits[static_cast<std::size_t>(i)] = static_cast<unsigned char>(digit);
    }
    int Sign() const { return digits[kSign]; }
    void SetSign(int sign) { Set(kSign, sign); }
};

inline Record FromNumber(bignum_t<255> const& v) {
    Record r;
    std::copy(v.digits, v.digits + kSign, r.digits.begin());
    r.SetSign(v.sign);
    r.top = v.top;
    return r;
}

// Of NaN, nothing else is compared.
inline bool operator==(Record const& a, Record const& b) {
    return a.IsNaN() ? b.IsNaN() : a.top == b.top && a.digits == b.digits;
}

inline void PrintTo(Record const& v, std::ostream* out) {
    *out << "sign " << v.Sign() << " top " << v.top << " digits ";
    for (int i = v.top; i >= 0; --i) *out << v.At(i) << (v.At(i) > 9 ? "!" : "");
}

inline Record Zero() {
    Record r;
    r.top = 0;
    return r;
}

inline bool IsZero(Record const& v) {
    for (int i = 0; i <= v.top; ++i)
        if (v.At(i) != 0) return false;
    return !v.IsNaN();
}

inline void Normalise(Record* v) {
    if (v->top < 1 || v->At(v->top) != 0) return;
    while (v->top > 0 && v->At(v->top) == 0) --v->top;
    if (IsZero(*v)) v->SetSign(1);
}

inline int Compare(Record const& a, Record const& b) {
    if (a.IsNaN()) return b.IsNaN() ? 0 : -1;
    if (b.IsNaN()) return 1;
    for (int i = std::max(a.top, b.top); i >= 0; --i)
        if (a.At(i) != b.At(i)) return a.At(i) > b.At(i) ? 1 : -1;
    return 0;
}

inline Record Subtract(Record const& a, Record const& b) {
    if (a.IsNaN() || b.IsNaN()) return Record();
    Record r = Zero();
    if (Compare(b, a) > 0) {
        r = Subtract(b, a);
        r.SetSign(255);
        return r;
    }
    r.top = std::max(a.top, b.top);
    int borrow = 0;
    for (int i = 0; i <= r.top; ++i) {
        int d = a.At(i) - borrow - b.At(i);
        borrow = d < 0 ? 1 : 0;
        if (d < 0) d += 10;
        r.Set(i, d);
    }
    Normalise(&r);
    return r;
}

inline Record Add(Record const& a, Record* b) {
    if (a.IsNaN() || b->IsNaN()) return Record();
    if (a.Sign() != b->Sign()) {
        b->SetSign(1);
        Record const r = Subtract(a, *b);
        b->SetSign(255);
        return r;
    }
    Record r = Zero();
    r.SetSign(a.Sign());
    r.top = std::max(a.top, b->top) + 1;
    if (r.top > kSign) return Record();
    int carry = 0;
    for (int i = 0; i <= r.top; ++i) {
        int const sum = a.At(i) + b->At(i) + carry;
        r.Set(i, sum % 10);
        carry = sum / 10;
    }
    Normalise(&r);
    return r;
}

inline void Shift(Record* v, int n) {
    if (n == 0 || v->IsNaN() || (v->top == 0 && v->At(0) == 0)) return;
    int const top = v->top;
    if (top + n > kSign) {
        v->top = -1;
        return;
    }
    v->top += n;
    for (int i = top; i >= 0; --i) v->Set(i + n, v->At(i));
    for (int i = 0; i < n; ++i) v->Set(i, 0);
}

// The magnitudes' product in as many digits as it takes.
inline Record Multiply(Record const& a, Record const& b) {
    if (a.IsNaN() || b.IsNaN()) return Record();
    std::vector<int> product(513, 0);
    for (int j = 0; j <= b.top; ++j) {
        for (int times = b.At(j); times > 0; --times) {
            int carry = 0;
            for (std::size_t i = 0; i + static_cast<std::size_t>(j) < product.size(); ++i) {
                int& digit = product[i + static_cast<std::size_t>(j)];
                int const sum = digit + (i < 256 ? a.At(static_cast<int>(i)) : 0) + carry;
                digit = sum % 10;
                carry = sum / 10;
            }
        }
    }
    Record r = Zero();
    for (int i = 0; i < 513; ++i) {
        int const digit = product[static_cast<std::size_t>(i)];
        if (digit != 0 && i >= kSign) return Record();
        if (digit != 0) r.top = i;
        if (i < kSign) r.Set(i, digit);
    }
    return r;
}

inline Record Divide(Record a, Record b) {
    if (a.IsNaN() || b.IsNaN() || IsZero(b)) return Record();
    a.SetSign(1);
    b.SetSign(1);
    Record q = Zero();
    q.top = a.top;
    Record rest = Zero();
    for (int i = a.top; i >= 0; --i) {
        Shift(&rest, 1);
        if (rest.IsNaN()) return Record();
        rest.Set(0, a.At(i));
        int digit = 0;
        while (Compare(b, rest) <= 0) {
            ++digit;
            rest = Subtract(rest, b);
        }
        q.Set(i, digit);
    }
    Normalise(&q);
    return q;
}

// ---- Operands ----

// 1 to 256 digits: mostly random ones, or many equal, or a 1 with zeros, a few of them changed.
// With 256, the uppermost is the sign.
inline std::string DigitText(std::mt19937* random, int n) {
    static char const kFill[] = {'0', '9', '0', '9', '4', '5'};
    unsigned int const kind = (*random)() % 10;
    std::string text;
    for (int i = 0; i < n; ++i)
        text += kind < 6 ? kFill[kind] : static_cast<char>('0' + (*random)() % 10);
    if (kind < 4 && (*random)() % 2 != 0)
        text[(*random)() % text.size()] = static_cast<char>('0' + (*random)() % 10);
    if (text[0] == '0' && n > 1) text[0] = static_cast<char>('1' + (*random)() % 9);
    return text;
}

inline bignum_t<255> Number(std::string const& digits) {
    bignum_t<255> v(digits.substr(0, 255).c_str());
    if (digits.size() < 256) return v;
    digit_shift(&v, 1);
    v.digits[0] = static_cast<unsigned char>(digits[255] - '0');
    return v;
}

}  // namespace reference_bignum

#endif  // QORUTILS_TESTS_SUPPORT_REFERENCE_BIGNUM_H_
