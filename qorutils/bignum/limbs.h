// Private: products and quotients of numbers in limbs, which are digits to the base 100000000, the
// least significant first. They are made in 64-bit sums that are carried late: a sum has room for
// 900 products of two limbs, and gets at most kMaxLimbs of them.

#ifndef QORUTILS_BIGNUM_LIMBS_H_
#define QORUTILS_BIGNUM_LIMBS_H_

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace bignum_detail {

constexpr std::int32_t kLimbBase = 100000000;

// What 256 digits take.
constexpr int kMaxLimbs = 32;

// Adds factor x limbs to as many sums.
inline void AddMultiple(std::int64_t* sums, std::int32_t const* limbs, int n, std::int32_t factor) {
    for (int i = 0; i < n; ++i) sums[i] += std::int64_t{limbs[i]} * factor;
}

// Makes limbs, 0 to kLimbBase - 1, of the sums, which may be negative. Returns what is carried out:
// negative if the whole is.
inline std::int64_t Carry(std::int64_t* sums, int n) {
    constexpr std::int64_t kBias = std::int64_t{1} << 36;  // x kLimbBase, above the size of any sum
    std::int64_t carry = 0;
    for (int i = 0; i < n; ++i) {
        auto const sum = static_cast<std::uint64_t>(sums[i] + carry + kBias * kLimbBase);
        carry = static_cast<std::int64_t>(sum / kLimbBase) - kBias;
        sums[i] = static_cast<std::int64_t>(sum % kLimbBase);
    }
    return carry;
}

// product, which gets an + bn limbs, is a x b. The smaller factor has at most kMaxLimbs limbs.
inline void MultiplyLimbs(std::int32_t const* a, int an, std::int32_t const* b, int bn,
                          std::int64_t* product) {
    std::fill_n(product, an + bn, 0);
    for (int i = 0; i < an; ++i) AddMultiple(product + i, b, bn, a[i]);
    Carry(product, an + bn);
}

// The value of the three uppermost of n limbs, the third of which has the weight 1. Where there are
// fewer, zeros follow.
template <typename T>
double Leading(T const* limbs, int n) {
    double value = static_cast<double>(limbs[n - 1]) * kLimbBase;
    if (n > 1) value += static_cast<double>(limbs[n - 2]);
    value *= kLimbBase;
    if (n > 2) value += static_cast<double>(limbs[n - 3]);
    return value;
}

inline std::int32_t Nearest(double value) {
    return static_cast<std::int32_t>(value + std::copysign(0.5, value));
}

// quotient, which gets an - bn + 1 limbs, is a / b. rest, which has an + 1 limbs with the last one
// 0, is a and is used up. kMaxLimbs >= an >= bn >= 1, and the uppermost limb of b is not 0.
//
// Each limb of the quotient is the nearest to what the leading limbs say, so that the rest is at
// most half of b, or little more, and may be negative: negative limbs then take back what the ones
// before them have too much. What the last one has too much shows as a negative rest.
//
// The leading limbs say enough. The others, not carried, are below 17 x base^2, or 17 / base of the
// smallest b, and the one that is folded below 20 x base, so that no sum overflows.
inline void DivideLimbs(std::int64_t* rest, int an, std::int32_t const* b, int bn,
                        std::int64_t* quotient) {
    double const reciprocal = 1 / Leading(b, bn);
    for (int i = an - bn; i >= 0; --i) {
        rest[i + bn - 1] += rest[i + bn] * kLimbBase;
        std::int32_t const limb = Nearest(Leading(rest, i + bn) * reciprocal);
        AddMultiple(rest + i, b, bn, -limb);
        quotient[i] = limb;
    }
    if (Carry(rest, bn) < 0) --quotient[0];
    Carry(quotient, an - bn + 1);
}

}  // namespace bignum_detail

#endif  // QORUTILS_BIGNUM_LIMBS_H_
