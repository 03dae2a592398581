#include <qorutils/bignum/bignum.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace {

using Big = bignum_t<255>;

// "-" stands for the sign 255 and "?" for any but that and 1.
std::string SignedText(Big const& v) {
    qor_text::CQorStringT<char> const text = v;
    return (v.sign == 255 ? "-" : v.sign == 1 ? "" : "?") + std::string(text.c_str());
}

// ---- From integers ----

template <typename T>
std::string Assigned(T value) {
    Big v("-999999999999999999999999999999");
    v = value;
    for (int i = v.top + 1; i < 255; ++i) EXPECT_EQ(0, v.digits[i]) << i;
    return SignedText(v);
}

TEST(BignumFromInteger, HoldsTheLimitsOfEachType) {
    EXPECT_EQ("127", Assigned(static_cast<char>(127)));
    EXPECT_EQ("-32768", Assigned(static_cast<short>(SHRT_MIN)));
    EXPECT_EQ("32767", Assigned(static_cast<short>(SHRT_MAX)));
    EXPECT_EQ("-2147483648", Assigned(INT_MIN));
    EXPECT_EQ("2147483647", Assigned(INT_MAX));
    EXPECT_EQ("-9223372036854775808", Assigned(LLONG_MIN));
    EXPECT_EQ("9223372036854775807", Assigned(LLONG_MAX));
    EXPECT_EQ("255", Assigned(static_cast<unsigned char>(255)));
    EXPECT_EQ("65535", Assigned(static_cast<unsigned short>(65535)));
    EXPECT_EQ("4294967295", Assigned(UINT_MAX));
    EXPECT_EQ("18446744073709551615", Assigned(ULLONG_MAX));
    EXPECT_EQ("-2147483648", Assigned(-2147483647L - 1));
    EXPECT_EQ("4294967295", Assigned(4294967295UL));
}

TEST(BignumFromInteger, HasItsHighestDigitOnTop) {
    for (int digits = 1; digits <= 19; ++digits) {
        Big v;
        unsigned long long value = 1;
        for (int i = 1; i < digits; ++i) value *= 10;
        v = value;
        EXPECT_EQ(digits - 1, v.top);
        v = value - 1;
        EXPECT_EQ(digits == 1 ? 0 : digits - 2, v.top);
    }
}

TEST(BignumFromInteger, IsPositiveForZero) {
    EXPECT_EQ("0", Assigned(0));
    EXPECT_EQ("0", Assigned(0LL));
    Big v;
    v = 0;
    EXPECT_EQ(0, v.top);
}

TEST(BignumFromInteger, TakesCharWithoutSignOnEveryMachine) {
    EXPECT_EQ("255", Assigned(static_cast<char>(-1)));
    EXPECT_EQ("128", Assigned(static_cast<char>(128)));
}

TEST(BignumFromInteger, TakesWhat32BitsHoldOfALong) {
    long const wide = static_cast<long>(0x1234567890ABCDEFLL);
    unsigned long const unsignedWide = static_cast<unsigned long>(0x12345678FFFFFFFFULL);
    EXPECT_EQ("-1867788817", Assigned(wide));
    EXPECT_EQ("4294967295", Assigned(unsignedWide));
}

// ---- To integers ----

// The number, or "false" if it is not given and the output untouched.
template <typename T>
std::string Given(char const* number) {
    T out = 77;
    if (Big(number).cast2int(out)) return std::to_string(+out);
    return out == 77 ? "false" : "touched";
}

TEST(BignumToInteger, GivesWhatTheTypeHolds) {
    EXPECT_EQ("32767", Given<short>("32767"));
    EXPECT_EQ("false", Given<short>("32768"));
    EXPECT_EQ("2147483647", Given<int>("2147483647"));
    EXPECT_EQ("false", Given<int>("2147483648"));
    EXPECT_EQ("2147483647", Given<long>("2147483647"));
    EXPECT_EQ("false", Given<long>("2147483648"));
    EXPECT_EQ("255", Given<unsigned char>("255"));
    EXPECT_EQ("false", Given<unsigned char>("256"));
    EXPECT_EQ("65535", Given<unsigned short>("65535"));
    EXPECT_EQ("false", Given<unsigned short>("65536"));
    EXPECT_EQ("4294967295", Given<unsigned int>("4294967295"));
    EXPECT_EQ("false", Given<unsigned int>("4294967296"));
    EXPECT_EQ("4294967295", Given<unsigned long>("4294967295"));
    EXPECT_EQ("false", Given<unsigned long>("4294967296"));
    EXPECT_EQ("9223372036854775807", Given<long long>("9223372036854775807"));
    EXPECT_EQ("18446744073709551615", Given<unsigned long long>("18446744073709551615"));
    EXPECT_EQ("0", Given<int>("0"));
}

TEST(BignumToInteger, OnPurposeTakesWhatRoundsToTheLimitOf64Bits) {
    EXPECT_EQ("-9223372036854775808", Given<long long>("9223372036854775808"));
    EXPECT_EQ("-9223372036854775807", Given<long long>("9223372036854775809"));
    EXPECT_EQ("false", Given<long long>("9223372036854780000"));
    EXPECT_EQ("0", Given<unsigned long long>("18446744073709551616"));
    EXPECT_EQ("1", Given<unsigned long long>("18446744073709551617"));
    EXPECT_EQ("false", Given<unsigned long long>("18446744073709560000"));
}

TEST(BignumToInteger, OnPurposeGivesTheMagnitude) {
    EXPECT_EQ("5", Given<int>("-5"));
    EXPECT_EQ("false", Given<int>("-2147483648"));
    EXPECT_EQ("5", Given<unsigned char>("-5"));
}

TEST(BignumToInteger, OnPurposeGivesNoChar) {
    for (char const* number : {"0", "1", "127", "128", "255", "1000", "x"})
        EXPECT_EQ("false", Given<char>(number)) << number;
}

TEST(BignumToInteger, IsNotGivenForNaNAndForLargeNumbers) {
    EXPECT_EQ("false", Given<int>("x"));
    EXPECT_EQ("false", Given<long long>("x"));
    EXPECT_EQ("false", Given<long long>(std::string(255, '9').c_str()));
    EXPECT_EQ("false", Given<unsigned long long>(("1" + std::string(254, '0')).c_str()));
}

// ---- To double ----

TEST(BignumToDouble, IsTheMagnitude) {
    EXPECT_EQ(2.0, static_cast<double>(Big("-2")));
    EXPECT_EQ(0.0, static_cast<double>(Big("0")));
    EXPECT_EQ(123456789012345.0, static_cast<double>(Big("123456789012345")));
    EXPECT_EQ(1e22, static_cast<double>(Big("10000000000000000000000")));
}

TEST(BignumToDouble, IsQuietNaNForNaN) {
    EXPECT_TRUE(std::isnan(static_cast<double>(Big())));
}

TEST(BignumToDouble, IsSummedFromTheLeastSignificantDigit) {
    std::string const text = std::string(120, '7') + std::string(135, '3');
    double sum = 0;
    double volatile power = 1;
    for (std::size_t i = text.size(); i-- > 0;) {
        double volatile const part = (text[i] - '0') * power;
        sum += part;
        power = power * 10;
    }
    EXPECT_EQ(sum, static_cast<double>(Big(text.c_str())));
}

}  // namespace
