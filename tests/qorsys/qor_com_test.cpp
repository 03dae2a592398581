#include <qorutils/qorsys/qor_com.h>
#include <qorutils/text/qor_string.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <new>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/guard_page.h"
#include "support/main_log.h"

namespace {

using qor_text::CQorStringT;

std::string Report(int line) {
    return "DBGCHK  qorutils/qorsys/qor_com @ " + std::to_string(line) + "\n";
}

// Owns a BSTR.
class Bstr {
  public:
    explicit Bstr(wchar_t* bstr) : bstr_(bstr) {}
    ~Bstr() { SysFreeString(bstr_); }
    Bstr(Bstr const&) = delete;
    Bstr& operator=(Bstr const&) = delete;

    wchar_t** Place() { return &bstr_; }
    void Fill(wchar_t const* text) { std::wmemcpy(bstr_, text, std::wcslen(text)); }
    operator wchar_t const*() const { return bstr_; }

  private:
    wchar_t* bstr_;
};

TEST(SysAllocStringLen, CopiesAsManyCharactersAndTerminatesThem) {
    Bstr const bstr(SysAllocStringLen(L"abc", 2));
    EXPECT_STREQ(L"ab", bstr);
}

TEST(SysAllocStringLen, ReportsEveryOrdinaryCall) {
    EXPECT_EQ(Report(101), CheckReports([] { Bstr const bstr(SysAllocStringLen(L"abc", 2)); }));
}

TEST(SysAllocStringLen, CopiesZerosAmongTheCharacters) {
    Bstr const bstr(SysAllocStringLen(L"a\0b", 3));
    EXPECT_EQ(std::wstring(L"a\0b\0", 4), std::wstring(bstr, 4));
}

TEST(SysAllocStringLen, GivesATerminatorForNoCharacters) {
    Bstr const none(SysAllocStringLen(nullptr, 0));
    EXPECT_STREQ(L"", none);
    Bstr const noneOfSome(SysAllocStringLen(L"abc", 0));
    EXPECT_STREQ(L"", noneOfSome);
}

TEST(SysAllocStringLen, LeavesTheCharactersOpenForANullSource) {
    Bstr bstr(SysAllocStringLen(nullptr, 3));
    bstr.Fill(L"xyz");
    EXPECT_STREQ(L"xyz", bstr);
}

TEST(SysAllocStringLen, ReadsNothingBehindTheLength) {
    GuardedArray<wchar_t> const source(L"xyz", 3);
    Bstr const bstr(SysAllocStringLen(source.data(), 3));
    EXPECT_STREQ(L"xyz", bstr);
}

TEST(SysAllocStringLen, ThrowsForAnImpossibleLength) {
    // The first length that is refused, one in the middle, and the last that is also reported.
    for (unsigned int length : {0x1FC00000u, 0x40000000u, 0x7FFFFFFEu})
        EXPECT_EQ(Report(101), CheckReports([=] {
                      EXPECT_THROW(SysAllocStringLen(nullptr, length), std::bad_array_new_length);
                  }))
            << length;
}

TEST(SysAllocStringLen, ReportsNoLengthThatIsNegativeAsANumber) {
    for (unsigned int length : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ("", CheckReports([=] {
                      EXPECT_THROW(SysAllocStringLen(nullptr, length), std::bad_array_new_length);
                  }))
            << length;
}

TEST(SysReAllocStringLen, ReplacesTheString) {
    Bstr bstr(SysAllocStringLen(L"before", 6));
    EXPECT_EQ(Report(101),
              CheckReports([&] { EXPECT_EQ(1, SysReAllocStringLen(bstr.Place(), L"xy", 2)); }));
    EXPECT_STREQ(L"xy", bstr);
}

TEST(SysReAllocStringLen, StartsFromNull) {
    Bstr bstr(nullptr);
    EXPECT_EQ(1, SysReAllocStringLen(bstr.Place(), L"xy", 1));
    EXPECT_STREQ(L"x", bstr);
}

TEST(SysReAllocStringLen, HasFreedTheStringWhenALengthIsImpossible) {
    Bstr bstr(SysAllocStringLen(L"before", 6));
    EXPECT_THROW(SysReAllocStringLen(bstr.Place(), L"xy", 0xFFFFFFFFu), std::bad_array_new_length);
    EXPECT_EQ(nullptr, static_cast<wchar_t const*>(bstr));
}

TEST(SysReAllocStringLenDeathTest, ReportsANullStringAndUsesItAllTheSame) {
    LogMark const mark;
    EXPECT_DEATH(SysReAllocStringLen(nullptr, L"xy", 2), "");
    EXPECT_EQ("DBGCHK  qorutils/qorsys/qor_com @ 122", mark.Messages().at(0));
}

TEST(SysFreeString, TakesNull) {
    EXPECT_EQ("", CheckReports([] { SysFreeString(nullptr); }));
}

// --- The string's members -----------------------------------------------------------------------

TEST(AllocSysString, CopiesAWideText) {
    Bstr const bstr(CQorStringT<wchar_t>(L"abc").AllocSysString());
    EXPECT_STREQ(L"abc", bstr);
}

TEST(AllocSysString, CopiesZerosInAWideText) {
    Bstr const bstr(CQorStringT<wchar_t>(L"a\0b", 3).AllocSysString());
    EXPECT_EQ(std::wstring(L"a\0b\0", 4), std::wstring(bstr, 4));
}

TEST(AllocSysString, GivesATerminatorForAnEmptyString) {
    Bstr const wide(CQorStringT<wchar_t>().AllocSysString());
    EXPECT_STREQ(L"", wide);
    Bstr const narrow(CQorStringT<char>().AllocSysString());
    EXPECT_STREQ(L"", narrow);
}

TEST(AllocSysString, OnPurposeOnlyTakesTheLengthOfACharText) {
    Bstr bstr(CQorStringT<char>("abc").AllocSysString());
    EXPECT_EQ(L'\0', bstr[3]);
    bstr.Fill(L"xyz");
    EXPECT_STREQ(L"xyz", bstr);
}

TEST(AllocSysString, ReportsLikeTheFunctionItCalls) {
    EXPECT_EQ(Report(101) + Report(101), CheckReports([] {
                  Bstr const wide(CQorStringT<wchar_t>(L"abc").AllocSysString());
                  Bstr const narrow(CQorStringT<char>("abc").AllocSysString());
              }));
}

TEST(SetSysString, ReplacesTheStringByAWideTextAndReturnsIt) {
    Bstr bstr(SysAllocStringLen(L"before", 6));
    wchar_t const* const result = CQorStringT<wchar_t>(L"a\0b", 3).SetSysString(bstr.Place());
    EXPECT_EQ(static_cast<wchar_t const*>(bstr), result);
    EXPECT_EQ(std::wstring(L"a\0b\0", 4), std::wstring(bstr, 4));
}

TEST(SetSysString, OnPurposeOnlyTakesTheLengthOfACharText) {
    Bstr bstr(nullptr);
    wchar_t* const result = CQorStringT<char>("abc").SetSysString(bstr.Place());
    EXPECT_EQ(static_cast<wchar_t const*>(bstr), result);
    EXPECT_EQ(L'\0', result[3]);
}

// --- COM ----------------------------------------------------------------------------------------

constexpr GUID kId = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};

TEST(CoCreateInstance, RefusesAndLeavesTheObjectAlone) {
    int mark = 0;
    void* object = &mark;
    EXPECT_EQ(Report(55), CheckReports([&] {
                  EXPECT_EQ(E_NOINTERFACE, CoCreateInstance(kId, nullptr, 1, kId, &object));
              }));
    EXPECT_EQ(&mark, object);
}

TEST(CoCreateInstance, TakesNullForTheObject) {
    EXPECT_EQ(Report(55), CheckReports([] { CoCreateInstance(kId, nullptr, 1, kId, nullptr); }));
}

TEST(Results, AreThoseOfWindowsOnEveryMachine) {
    EXPECT_EQ(0x80004002u, static_cast<unsigned int>(E_NOINTERFACE));
    EXPECT_EQ(0x800401F3u, static_cast<unsigned int>(CO_E_CLASSSTRING));
    EXPECT_LT(E_NOINTERFACE, 0);
    EXPECT_LT(CO_E_CLASSSTRING, 0);
}

bool operator==(GUID const& a, GUID const& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <typename Convert>
void ExpectIdUntouched(int line, Convert convert) {
    GUID id = kId;
    EXPECT_EQ(Report(line), CheckReports([&] { EXPECT_EQ(CO_E_CLASSSTRING, convert(&id)); }));
    EXPECT_TRUE(id == kId);
}

TEST(IdsFromText, AreRefusedAndLeaveTheIdAlone) {
    ExpectIdUntouched(61, [](CLSID* id) { return CLSIDFromProgID(L"Word.Document", id); });
    ExpectIdUntouched(73, [](CLSID* id) { return CLSIDFromString(L"{00000000}", id); });
    ExpectIdUntouched(85, [](IID* id) { return IIDFromString(nullptr, id); });
}

template <typename Convert>
void ExpectTextUntouched(int line, Convert convert) {
    wchar_t before[] = L"before";
    wchar_t* text = before;
    EXPECT_EQ(Report(line), CheckReports([&] { EXPECT_EQ(CO_E_CLASSSTRING, convert(&text)); }));
    EXPECT_EQ(before, text);
    EXPECT_STREQ(L"before", text);
}

TEST(TextOfIds, IsRefusedAndLeavesTheTextAlone) {
    ExpectTextUntouched(67, [](wchar_t** text) { return StringFromCLSID(kId, text); });
    ExpectTextUntouched(79, [](wchar_t** text) { return StringFromIID(kId, text); });
}

TEST(Guid, HasTheLayoutOfWindows) {
    EXPECT_EQ(16u, sizeof(GUID));
    EXPECT_EQ(4u, offsetof(GUID, Data2));
    EXPECT_EQ(6u, offsetof(GUID, Data3));
    EXPECT_EQ(8u, offsetof(GUID, Data4));
}

// Not an unsigned long, which has 64 bits on some machines.
static_assert(std::is_same<std::uint32_t, DWORD>::value, "");
static_assert(sizeof(HRESULT) == 4 && sizeof(BOOL) == 4, "");

}  // namespace
