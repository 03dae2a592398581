#include <qorutils/formats/qor_math.h>

#include <cfenv>
#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/scoped_rounding.h"

namespace {

using qor::math::round_prec;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

struct RoundCase {
    double x;
    int precision;
    double rounded;
};

// Exact comparison: the step away from zero is the point.
void ExpectRounded(RoundCase const& c) {
    EXPECT_EQ(c.rounded, round_prec(c.x, c.precision)) << c.x << ' ' << c.precision;
    EXPECT_EQ(-c.rounded, round_prec(-c.x, c.precision)) << -c.x << ' ' << c.precision;
}

TEST(RoundPrec, RoundsHalfAwayFromZeroAndOneStepFarther) {
    RoundCase const cases[] = {
        {0.125, 2, 0.13000000000000003}, {0.124, 2, 0.12000000000000001},
        {0.5, 0, 1.0000000000000002},    {0.25, 1, 0.30000000000000004},
        {0.999, 2, 1.0000000000000002},  {0.3, 9, 0.30000000000000004},
        {0.3, 12, 0.30000000000000004},  // a power of ten that is in no table
    };
    for (auto const& c : cases) ExpectRounded(c);
}

// The step is one of the fraction; the whole part is added to it afterwards.
TEST(RoundPrec, LosesTheStepWhereTheWholePartIsLarge) {
    RoundCase const cases[] = {
        {1.125, 2, 1.1300000000000001},  // not yet large enough
        {2.675, 2, 2.67},                // stored a little below
        {1000000.5, 0, 1000001},
        {7, 3, 7},
        {4503599627370496.0, 3, 4503599627370496.0},
        {1e300, 2, 1e300},
    };
    for (auto const& c : cases) ExpectRounded(c);
}

// On purpose: no rounding to tens.
TEST(RoundPrec, CutsTheFractionOffForANegativePrecision) {
    RoundCase const cases[] = {
        {1234.75, -1, 1234},
        {1234.75, -2, 1234},
        {0.75, -1, kSmallest},  // the step away from zero
        {1234.75, -300, 1234},
    };
    for (auto const& c : cases) ExpectRounded(c);
}

TEST(RoundPrec, GivesZeroForZeroAndNan) {
    for (double const x : {0.0, -0.0, kNan, -kNan}) {
        double const rounded = round_prec(x, 2);
        EXPECT_EQ(0.0, rounded);
        EXPECT_FALSE(std::signbit(rounded));
    }
}

// Machines differ in the sign that the processor gives it.
TEST(RoundPrec, GivesPositiveNanWhereNothingCanBeRounded) {
    struct {
        double x;
        int precision;
    } const cases[] = {
        {kInfinity, 2}, {-kInfinity, 2}, {1.5, 400}, {-1.5, INT_MAX}, {1.0, 400}, {1.5, INT_MIN},
    };
    for (auto const& c : cases) {
        double const rounded = round_prec(c.x, c.precision);
        EXPECT_TRUE(std::isnan(rounded)) << c.x << ' ' << c.precision;
        EXPECT_FALSE(std::signbit(rounded)) << c.x << ' ' << c.precision;
    }
}

// -0.35 is stored a little nearer to zero; times ten it becomes -3.5 only when rounded downward.
TEST(RoundPrec, RoundsItsStepsAsTheProgramSays) {
    ScopedRounding const upward(FE_UPWARD);
    EXPECT_EQ(0.40000000000000008, round_prec(0.35, 1));
    EXPECT_EQ(-0.30000000000000004, round_prec(-0.35, 1));
}

TEST(RoundPrec, RoundsTheSmallestNumbersToOneStepFromZero) {
    ExpectRounded({kSmallest, 2, kSmallest});
    ExpectRounded({1e-300, 9, kSmallest});
}

}  // namespace
