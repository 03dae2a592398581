#include "qorutils/bignum/limbs.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <boost/multiprecision/cpp_int.hpp>

namespace {

using bignum_detail::kLimbBase;
using boost::multiprecision::cpp_int;
using Limbs = std::vector<std::int32_t>;

constexpr int kHighest = kLimbBase - 1;

template <typename T>
cpp_int Value(std::vector<T> const& limbs) {
    cpp_int value = 0;
    for (auto i = limbs.size(); i-- > 0;) value = value * kLimbBase + limbs[i];
    return value;
}

template <typename T>
bool AreBelowBase(std::vector<T> const& limbs) {
    return std::all_of(limbs.begin(), limbs.end(), [](T x) { return x >= 0 && x < kLimbBase; });
}

void ExpectProduct(Limbs const& a, Limbs const& b) {
    std::vector<std::int64_t> product(a.size() + b.size(), -1);
    bignum_detail::MultiplyLimbs(a.data(), static_cast<int>(a.size()), b.data(),
                                 static_cast<int>(b.size()), product.data());
    ASSERT_TRUE(AreBelowBase(product));
    ASSERT_EQ(Value(a) * Value(b), Value(product));
}

void ExpectQuotient(Limbs const& a, Limbs const& b) {
    std::vector<std::int64_t> rest(a.size() + 1, 0);
    std::copy(a.begin(), a.end(), rest.begin());
    std::vector<std::int64_t> quotient(a.size() - b.size() + 1, -1);
    bignum_detail::DivideLimbs(rest.data(), static_cast<int>(a.size()), b.data(),
                               static_cast<int>(b.size()), quotient.data());
    ASSERT_TRUE(AreBelowBase(quotient));
    ASSERT_EQ(Value(a) / Value(b), Value(quotient)) << Value(a) << " / " << Value(b);
}

TEST(CarryLimbs, TakesNegativeSumsBackFromTheNext) {
    std::vector<std::int64_t> sums = {-1, 0, 0, 1};
    EXPECT_EQ(0, bignum_detail::Carry(sums.data(), 4));
    EXPECT_EQ((std::vector<std::int64_t>{kHighest, kHighest, kHighest, 0}), sums);
}

TEST(CarryLimbs, TellsANegativeWhole) {
    std::vector<std::int64_t> sums = {5, -1};
    EXPECT_EQ(-1, bignum_detail::Carry(sums.data(), 2));
    sums = {kHighest, -kLimbBase, 1};
    EXPECT_EQ(0, bignum_detail::Carry(sums.data(), 3));
    EXPECT_EQ((std::vector<std::int64_t>{kHighest, 0, 0}), sums);
}

TEST(CarryLimbs, TakesTheLargestSums) {
    std::int64_t const largest = 50 * std::int64_t{kLimbBase} * kLimbBase;
    std::vector<std::int64_t> sums = {largest, -largest};
    EXPECT_EQ(-50LL * kLimbBase + 50, bignum_detail::Carry(sums.data(), 2));
}

// Limbs that make quotients hard to estimate come often.
std::int32_t RandomLimb(std::mt19937* random) {
    static std::int32_t const kOften[] = {
        0, 1, 2, kLimbBase / 2 - 1, kLimbBase / 2, kHighest - 1, kHighest};
    unsigned int const choice = (*random)() % 12;
    return choice < 7 ? kOften[choice] : static_cast<std::int32_t>((*random)() % kLimbBase);
}

Limbs RandomLimbs(std::mt19937* random, std::size_t n) {
    Limbs limbs(n);
    for (auto& limb : limbs) limb = RandomLimb(random);
    if (limbs.back() == 0) limbs.back() = 1;
    return limbs;
}

TEST(MultiplyLimbs, GivesTheProduct) {
    std::mt19937 random(2);
    for (int i = 0; i < 3000; ++i) {
        std::size_t const n = random() % 32 + 1;
        ExpectProduct(RandomLimbs(&random, n), RandomLimbs(&random, random() % (33 - n) + 1));
    }
}

TEST(MultiplyLimbs, GivesTheLargestProducts) {
    for (std::size_t n = 1; n <= 32; ++n)
        ExpectProduct(Limbs(n, kHighest), Limbs(33 - n, kHighest));
}

TEST(DivideLimbs, GivesTheQuotient) {
    std::mt19937 random(3);
    for (int i = 0; i < 20000; ++i) {
        std::size_t const n = random() % 32 + 1;
        ExpectQuotient(RandomLimbs(&random, n), RandomLimbs(&random, random() % n + 1));
    }
}

// As far as an estimate can be from the truth: the rest is just below, at or above a multiple.
TEST(DivideLimbs, GivesTheQuotientNextToMultiples) {
    std::mt19937 random(4);
    for (int i = 0; i < 20000; ++i) {
        std::size_t const n = random() % 31 + 1;
        Limbs const b = RandomLimbs(&random, n);
        Limbs const q = RandomLimbs(&random, random() % (32 - n) + 1);
        cpp_int a = Value(b) * Value(q) + static_cast<int>(random() % 3) - 1;
        if (random() % 4 == 0) a += Value(b) / 2;
        Limbs limbs;
        for (; a != 0; a /= kLimbBase) limbs.push_back(static_cast<std::int32_t>(a % kLimbBase));
        if (limbs.size() >= n && limbs.size() <= 32) ExpectQuotient(limbs, b);
    }
}

TEST(DivideLimbs, GivesTheQuotientOfTheHighestAndLowest) {
    for (std::size_t n = 1; n <= 32; ++n) {
        for (std::size_t m = 1; m <= n; ++m) {
            Limbs power(m, 0);
            power.back() = 1;
            ExpectQuotient(Limbs(n, kHighest), power);
            ExpectQuotient(Limbs(n, kHighest), Limbs(m, kHighest));
            power.front() = power.front() == 0 ? kHighest : 2;
            ExpectQuotient(Limbs(n, kHighest), power);
        }
    }
}

}  // namespace
