// The arithmetic of numbers of all lengths, beside a plain procedure; and of damaged records.

#include <qorutils/bignum/bignum.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "bignum/digit_texts.h"
#include "support/guard_page.h"
#include "support/reference_bignum.h"

namespace {

using Big = bignum_t<255>;
using reference_bignum::FromNumber;
using reference_bignum::Record;

// Operands of all lengths and signs, of which one in eight has 254 to 256 digits.
Big RandomNumber(std::mt19937* random) {
    unsigned int const choice = (*random)() % 16;
    int const n = choice < 2   ? 254 + static_cast<int>((*random)() % 3)
                  : choice < 4 ? 1 + static_cast<int>((*random)() % 10)
                               : 1 + static_cast<int>((*random)() % 255);
    Big v = reference_bignum::Number(reference_bignum::DigitText(random, n));
    if ((*random)() % 2 != 0) v = -v;
    return v;
}

void ExpectAllAsReference(Big const& a, Big const& b) {
    Record const x = FromNumber(a);
    Record const y = FromNumber(b);
    EXPECT_EQ(reference_bignum::Compare(x, y), a.compare(b));
    EXPECT_EQ(reference_bignum::Subtract(x, y), FromNumber(a - b));
    EXPECT_EQ(reference_bignum::Multiply(x, y), FromNumber(a * b));
    EXPECT_EQ(reference_bignum::Divide(x, y), FromNumber(a / b));
    EXPECT_EQ(x, FromNumber(a));
    EXPECT_EQ(y, FromNumber(b));

    Record yAfter = y;
    EXPECT_EQ(reference_bignum::Add(x, &yAfter), FromNumber(a + b));
    EXPECT_EQ(x, FromNumber(a));
    EXPECT_EQ(yAfter, FromNumber(b));
}

TEST(BignumArithmetic, IsThatOfThePlainProcedure) {
    std::mt19937 random(5);
    for (int i = 0; i < 250 && !HasFailure(); ++i)
        ExpectAllAsReference(RandomNumber(&random), RandomNumber(&random));
}

TEST(BignumArithmetic, IsThatOfThePlainProcedureForOperandsOfLikeSize) {
    std::mt19937 random(6);
    for (int i = 0; i < 250 && !HasFailure(); ++i) {
        Big const a = RandomNumber(&random);
        Big b = a;
        b.digits[random() % static_cast<unsigned int>(std::min<int>(a.top, 254) + 1)] = 1;
        if (b.top < 255 && b.digits[b.top] == 0) b.digits[b.top] = 1;
        ExpectAllAsReference(a, b);
    }
}

TEST(BignumArithmetic, IsThatOfThePlainProcedureForExtremeOperands) {
    Big negative("-7");
    Big const least256 = Big(Nines(255).c_str()) + Big("1");
    digit_shift(&negative, 255);
    Big const sets[] = {Big("0"),
                        -Big("0"),
                        Big("1"),
                        Big("-1"),
                        Big(Power(254).c_str()),
                        Big(Nines(254).c_str()),
                        Big(("-" + Nines(254)).c_str()),
                        Big(Nines(255).c_str()),
                        -Big(Nines(255).c_str()),
                        Big(Nines(255).c_str()) + Big("0"),
                        least256,
                        -least256,
                        negative,
                        Big("5") - negative,
                        Big()};
    for (Big const& a : sets)
        for (Big const& b : sets) ExpectAllAsReference(Big(a), Big(b));
}

TEST(BignumArithmetic, IsThatOfThePlainProcedureForNinesOfEveryLength) {
    Big const others[] = {Big("1"), Big("9"), Big("10"), Big(Nines(100).c_str())};
    for (std::size_t n = 1; n <= 255 && !HasFailure(); ++n)
        ExpectAllAsReference(Big(Nines(n).c_str()), Big(others[n % 4]));
}

TEST(BignumArithmetic, LeavesOnlyZerosAboveTop) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        Big a = RandomNumber(&random);
        Big const b = RandomNumber(&random);
        switch (random() % 4) {
            case 0:
                a += b;
                break;
            case 1:
                a -= b;
                break;
            case 2:
                a *= b;
                break;
            default:
                a /= b;
                break;
        }
        for (int k = a.top + 1; k < 255; ++k) ASSERT_EQ(0, a.digits[k]);
    }
}

// ---- Damaged records ----

TEST(BignumArithmetic, StaysInsideDamagedRecords) {
    std::mt19937 random(9);
    GuardedArray<Big> const memory(2);
    Big* const a = const_cast<Big*>(memory.data());
    Big* const b = a + 1;
    for (int i = 0; i < 3000; ++i) {
        for (Big* v : {a, b}) {
            *v = RandomNumber(&random);
            for (auto& digit : v->digits)
                if (random() % 4 == 0) digit = static_cast<unsigned char>(random());
            v->sign = static_cast<unsigned char>(random());
            if (random() % 4 == 0) v->top = static_cast<std::int16_t>(random());
            if (random() % 4 == 0) v->top = 255;
        }
        Big const result[] = {*a + *b, *a - *b, *a * *b, *a / *b, -*a};
        for (Big const& r : result) ASSERT_LE(r.top, std::max<int>(255, a->top));
        char text[300];
        unsigned int size = sizeof text;
        b->cast2s(text, size);
        ASSERT_LE(std::strlen(text), 256u);
        long long number = 0;
        b->cast2int(number);
        ASSERT_EQ(b->compare(*a), -a->compare(*b));
        ASSERT_FALSE(b->isZero() && !(static_cast<double>(*b) == 0));
        digit_shift(b, static_cast<int>(random() % 300) - 20);
        *b += *a;
        *a /= *a;
    }
}

}  // namespace
