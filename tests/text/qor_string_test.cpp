#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/text_literal.h"

using qor_text::CQorStringData;
using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringLayout : public testing::Test {};
template <typename T>
class QorStringPrimitives : public testing::Test {};
template <typename T>
class QorStringBuffer : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringLayout, CharacterTypes, );
TYPED_TEST_SUITE(QorStringPrimitives, CharacterTypes, );
TYPED_TEST_SUITE(QorStringBuffer, CharacterTypes, );

bool NilBlockIsIntact() {
    auto const& nil = qor_string_internal_data::g_afxInitData;
    return nil.nRefs == -1 && nil.nDataLength == 0 && nil.nAllocLength == 0 && nil.terminator == 0;
}

}  // namespace

// --- Layout ------------------------------------------------------------------------------------

TYPED_TEST(QorStringLayout, ObjectIsOnePointerToItsCharacters) {
    using T = TypeParam;
    static_assert(sizeof(CQorStringT<T>) == sizeof(T*), "one pointer");
    static_assert(std::is_standard_layout<CQorStringT<T>>::value, "readable as that pointer");
    auto const s = String<T>("abc");
    EXPECT_EQ(s.c_str(), *reinterpret_cast<T* const*>(&s));
}

TYPED_TEST(QorStringLayout, HeaderOfThreeWordsLiesInFrontOfTheCharacters) {
    using T = TypeParam;
    using Data = CQorStringData<T>;
    static_assert(sizeof(Data) == 12, "three words");
    static_assert(offsetof(Data, nRefs) == 0 && offsetof(Data, nDataLength) == 4 &&
                      offsetof(Data, nAllocLength) == 8,
                  "count of references, length, capacity");
    static_assert(std::is_same<decltype(Data::nRefs), std::int32_t>::value, "signed");

    auto const s = String<T>("abc");
    auto const* const header = reinterpret_cast<char const*>(s.GetData());
    EXPECT_EQ(12, reinterpret_cast<char const*>(s.c_str()) - header);
    EXPECT_EQ(1, s.GetData()->nRefs);
    EXPECT_EQ(3, s.GetData()->nDataLength);
    EXPECT_EQ(3, s.GetData()->nAllocLength);
}

TYPED_TEST(QorStringLayout, AccessorsTellTextLengthAndCapacity) {
    using T = TypeParam;
    auto const s = WithRoom(Text<T>("abc"), 10);
    EXPECT_EQ(3, s.GetLength());
    EXPECT_EQ(3, s.size());
    EXPECT_EQ(3, s.length());
    EXPECT_EQ(10, s.GetAllocLength());
    EXPECT_FALSE(s.IsEmpty());
    EXPECT_FALSE(s.empty());
    EXPECT_EQ(s.c_str(), static_cast<T const*>(s));
    EXPECT_EQ(s.c_str(), s.begin());
    EXPECT_EQ(s.begin() + 3, s.end());
    EXPECT_EQ(T('b'), s.GetAt(1));
    EXPECT_EQ(T('c'), s[2]);
    EXPECT_EQ(T(), s[3]);
    static_assert(std::is_same<decltype(s.GetLength()), int>::value, "int on every machine");
    static_assert(std::is_same<decltype(s.size()), int>::value, "int on every machine");
}

TYPED_TEST(QorStringLayout, NilStringIsSharedByBothTypesAndEmpty) {
    using T = TypeParam;
    using namespace qor_string_internal_data;
    static_assert(sizeof(g_afxInitData) == 16, "header and one wide terminator");
    CQorStringT<T> const s;
    EXPECT_EQ(static_cast<void const*>(&g_afxInitData), s.GetData());
    EXPECT_EQ(static_cast<void const*>(&g_afxInitData), CQorStringT<T>::get_afxDataNil());
    EXPECT_EQ(g_afxNilStr, static_cast<void const*>(s.c_str()));
    EXPECT_EQ(reinterpret_cast<char const*>(&g_afxInitData) + 12,
              static_cast<char const*>(g_afxNilStr));
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_TRUE(s.empty());
    EXPECT_EQ(0, s.GetLength());
    EXPECT_EQ(0, s.GetAllocLength());
    EXPECT_EQ(s.begin(), s.end());
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_TRUE(NilBlockIsIntact());
}

TYPED_TEST(QorStringLayout, StaticAccessorsYieldTheEmptyTextAndTheEmptyString) {
    using T = TypeParam;
    using namespace qor_string_internal_data;
    void const* const emptyText =
        sizeof(T) == 1 ? static_cast<void const*>(&afxChNil) : static_cast<void const*>(&afxChNilW);
    EXPECT_EQ(emptyText, CQorStringT<T>::get_afxChNil());
    EXPECT_EQ(T(), *CQorStringT<T>::get_afxChNil());

    CQorStringT<T> const& empty = CQorStringT<T>::AfxGetEmptyString();
    EXPECT_EQ(static_cast<void const*>(&g_afxNilStr), &empty);
    EXPECT_TRUE(IsNil(empty));
    CQorStringT<T> const copy = empty;
    EXPECT_TRUE(IsNil(copy));

    static_assert(std::is_void<decltype(CQorStringT<T>::mfcString())>::value, "returns nothing");
    CQorStringT<T>::mfcString();
    EXPECT_TRUE(NilBlockIsIntact());
}

TYPED_TEST(QorStringLayout, NilBlockSurvivesEveryWriterThatKeepsIt) {
    using T = TypeParam;
    CQorStringT<T> s;
    s.AssignCopy(0, s.c_str());
    s.ReleaseBuffer();
    s.ReleaseBuffer(0);
    s.GetBufferSetLength(0);
    s.LockBuffer();
    s.UnlockBuffer();
    s.FreeExtra();
    s.Empty();
    s.Truncate(0);
    s.CopyBeforeWrite();
    s.AllocBeforeWrite(0);
    s.ConcatInPlace(0, nullptr);
    s.ConcatCopy(0, nullptr, 0, nullptr);
    s.AllocBuffer(0);
    s.Release();
    CQorStringT<T>::Release(s.GetData());
    CQorStringT<T>::FreeData(s.GetData());
    s = static_cast<T const*>(nullptr);
    s = Text<T>("");
    s.MakeUpper();
    s.MakeLower();
    s.MakeReverse();
    s.Trim();
    s.Trim(T('x'));
    s.Trim(T());
    s.Trim(Text<T>("x"));
    s.Remove(T('x'));
    s.Remove(T());
    s.Replace(T('x'), T('y'));
    s.Replace(T(), T('y'));
    s.Delete(0);
    EXPECT_TRUE(IsNil(s));
    EXPECT_TRUE(NilBlockIsIntact());
}

// --- Primitives --------------------------------------------------------------------------------

TYPED_TEST(QorStringPrimitives, InitForgetsTheBufferWithoutReleasingIt) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    s.Init();
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(2, Refs(keeper));
    CQorStringT<T>::Release(keeper.GetData());
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringPrimitives, AllocBufferGivesAPrivateTerminatedBuffer) {
    using T = TypeParam;
    CQorStringT<T> s;
    s.AllocBuffer(7);
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(7, s.GetLength());
    EXPECT_EQ(7, s.GetAllocLength());
    EXPECT_EQ(T(), s.c_str()[7]);
}

TYPED_TEST(QorStringPrimitives, AllocBufferOfNothingIsTheNilString) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    s.AllocBuffer(0);
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(2, Refs(keeper));  // the buffer before is the caller's business
    CQorStringT<T>::Release(keeper.GetData());
}

TYPED_TEST(QorStringPrimitives, ReleaseDropsOneReferenceAndBecomesNil) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    s.Release();
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
    EXPECT_EQ(Text<T>("abc"), keeper);
    s.Release();
    EXPECT_TRUE(IsNil(s));
}

TYPED_TEST(QorStringPrimitives, ReleaseFreesALockedBuffer) {
    using T = TypeParam;
    auto s = String<T>("abc");
    s.LockBuffer();
    s.Release();  // the leak checker sees it if it does not
    EXPECT_TRUE(IsNil(s));
}

TYPED_TEST(QorStringPrimitives, CopyBeforeWriteLeavesAPrivateBufferAlone) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("abc"), 10);
    T const* const buffer = s.c_str();
    s.CopyBeforeWrite();
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(10, s.GetAllocLength());
    s.LockBuffer();
    s.CopyBeforeWrite();
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(-1, Refs(s));
}

TYPED_TEST(QorStringPrimitives, CopyBeforeWriteCopiesASharedBufferToExactCapacity) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>("a\0bc"), 10);
    auto s = keeper;
    s.CopyBeforeWrite();
    EXPECT_NE(keeper.c_str(), s.c_str());
    EXPECT_EQ(Text<T>("a\0bc"), s);
    EXPECT_EQ(4, s.GetAllocLength());
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(1, Refs(keeper));
    EXPECT_EQ(10, keeper.GetAllocLength());
}

TYPED_TEST(QorStringPrimitives, CopyBeforeWriteOfASharedEmptyBufferBecomesNil) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>(""), 10);
    auto s = keeper;
    ASSERT_EQ(2, Refs(keeper));
    s.CopyBeforeWrite();
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringPrimitives, AllocBeforeWriteKeepsAPrivateBufferThatIsLargeEnough) {
    using T = TypeParam;
    auto s = String<T>("abcd");
    T const* const buffer = s.c_str();
    for (int n : {4, 3, 0}) {
        s.AllocBeforeWrite(n);
        EXPECT_EQ(buffer, s.c_str());
        EXPECT_EQ(4, s.GetAllocLength());
        EXPECT_EQ(Text<T>("abcd"), s);
    }
    s.LockBuffer();
    s.AllocBeforeWrite(4);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(-1, Refs(s));
}

TYPED_TEST(QorStringPrimitives, AllocBeforeWriteReplacesASharedOrSmallBuffer) {
    using T = TypeParam;
    auto const keeper = String<T>("abcd");
    auto s = keeper;
    s.AllocBeforeWrite(2);
    EXPECT_NE(keeper.c_str(), s.c_str());
    EXPECT_EQ(2, s.GetAllocLength());
    EXPECT_EQ(2, s.GetLength());
    EXPECT_EQ(1, Refs(keeper));
    s.AllocBeforeWrite(3);
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_EQ(1, Refs(s));

    s = keeper;
    s.AllocBeforeWrite(0);
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringPrimitives, AllocCopyFillsAFreshStringWithRoomToSpare) {
    using T = TypeParam;
    auto const s = String<T>("ab\0def");
    CQorStringT<T> dest;
    s.AllocCopy(dest, 3, 1, 4);
    EXPECT_EQ(7, dest.GetAllocLength());
    EXPECT_EQ(7, dest.GetLength());
    EXPECT_EQ(T(), dest[7]);
    EXPECT_EQ(Text<T>("b\0d").characters, Content(dest).substr(0, 3));

    CQorStringT<T> exact;
    s.AllocCopy(exact, 6, 0, 0);
    EXPECT_EQ(Text<T>("ab\0def"), exact);
    EXPECT_EQ(6, exact.GetAllocLength());
}

TYPED_TEST(QorStringPrimitives, AllocCopyOfNothingIsTheNilString) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    CQorStringT<T> dest;
    s.AllocCopy(dest, 0, 3, 0);
    EXPECT_TRUE(IsNil(dest));
}

TYPED_TEST(QorStringPrimitives, AssignCopyTakesExactlySoManyCharacters) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("xyz"), 8);
    T const* const buffer = s.c_str();
    s.AssignCopy(4, Text<T>("a\0cdef"));
    EXPECT_EQ(Text<T>("a\0cd"), s);
    EXPECT_EQ(buffer, s.c_str());
    s.AssignCopy(0, nullptr);
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(buffer, s.c_str());
    s.AssignCopy(9, Text<T>("123456789"));
    EXPECT_EQ(Text<T>("123456789"), s);
    EXPECT_EQ(9, s.GetAllocLength());
}

TYPED_TEST(QorStringPrimitives, AssignCopyOfNothingToASharedStringBecomesNil) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    s.AssignCopy(0, nullptr);
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(Text<T>("abc"), keeper);
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringPrimitives, ConcatCopyJoinsTwoTextsInANewBuffer) {
    using T = TypeParam;
    CQorStringT<T> s;
    s.ConcatCopy(3, Text<T>("a\0b"), 2, Text<T>("cd"));
    EXPECT_EQ(Text<T>("a\0bcd"), s);
    EXPECT_EQ(5, s.GetAllocLength());
    EXPECT_EQ(1, Refs(s));

    auto const keeper = s;
    s.ConcatCopy(0, nullptr, 0, nullptr);  // nothing to join: the string stays as it is
    EXPECT_EQ(keeper.c_str(), s.c_str());
    s.ConcatCopy(0, nullptr, 1, Text<T>("x"));  // the buffer before is the caller's business
    EXPECT_EQ(Text<T>("x"), s);
    EXPECT_EQ(2, Refs(keeper));
    CQorStringT<T>::Release(keeper.GetData());
}

TYPED_TEST(QorStringPrimitives, ConcatInPlaceAppendsWhereThereIsRoom) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("abc"), 5);
    T const* const buffer = s.c_str();
    s.ConcatInPlace(0, nullptr);
    EXPECT_EQ(Text<T>("abc"), s);
    s.ConcatInPlace(2, Text<T>("\0e"));
    EXPECT_EQ(Text<T>("abc\0e"), s);
    EXPECT_EQ(buffer, s.c_str());
    s.ConcatInPlace(1, Text<T>("f"));
    EXPECT_EQ(Text<T>("abc\0ef"), s);
    EXPECT_NE(buffer, s.c_str());
    EXPECT_EQ(6, s.GetAllocLength());  // exact: no spare room
}

TYPED_TEST(QorStringPrimitives, ConcatInPlaceNeverWritesIntoASharedBuffer) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>("abc"), 10);
    auto s = keeper;
    s.ConcatInPlace(0, Text<T>("x"));
    EXPECT_EQ(keeper.c_str(), s.c_str());
    s.ConcatInPlace(1, Text<T>("x"));
    EXPECT_EQ(Text<T>("abcx"), s);
    EXPECT_EQ(4, s.GetAllocLength());
    EXPECT_EQ(Text<T>("abc"), keeper);
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringPrimitives, ConcatInPlaceKeepsTheLockWhereThereIsRoom) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("abc"), 5);
    T const* const buffer = s.LockBuffer();
    s.ConcatInPlace(1, Text<T>("x"));
    EXPECT_EQ(Text<T>("abcx"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(-1, Refs(s));
}

TYPED_TEST(QorStringPrimitives, SafeStrlenTakesNullForEmpty) {
    using T = TypeParam;
    EXPECT_EQ(0, CQorStringT<T>::SafeStrlen(nullptr));
    EXPECT_EQ(0, CQorStringT<T>::SafeStrlen(Text<T>("")));
    EXPECT_EQ(3, CQorStringT<T>::SafeStrlen(Text<T>("abc\0d")));
}

// --- Access to the buffer ----------------------------------------------------------------------

TYPED_TEST(QorStringBuffer, GetBufferReturnsAPrivateBufferThatIsLargeEnough) {
    using T = TypeParam;
    CQorStringT<T> s(T('x'), 20);
    T const* const buffer = s.c_str();
    for (int minLength : {10, 20, 0}) {
        EXPECT_EQ(buffer, s.GetBuffer(minLength));
        EXPECT_EQ(20, s.GetAllocLength());
        EXPECT_EQ(20, s.GetLength());
    }
}

TYPED_TEST(QorStringBuffer, GetBufferReplacesASharedBufferEvenWhenItIsLargeEnough) {
    using T = TypeParam;
    CQorStringT<T> const keeper(T('x'), 20);
    auto s = keeper;
    T const* const buffer = s.GetBuffer(10);
    EXPECT_NE(keeper.c_str(), buffer);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(20, s.GetAllocLength());
    EXPECT_EQ(keeper, s);
    EXPECT_EQ(1, Refs(keeper));
    EXPECT_EQ(1, Refs(s));
}

TYPED_TEST(QorStringBuffer, GetBufferKeepsTheTextWhenItGrows) {
    using T = TypeParam;
    auto s = String<T>("a\0b");
    s.GetBuffer(100);
    EXPECT_EQ(100, s.GetAllocLength());
    EXPECT_EQ(Text<T>("a\0b"), s);
    auto sharer = s;
    sharer.GetBuffer(2);
    EXPECT_EQ(3, sharer.GetAllocLength());  // the length, not the capacity before
    EXPECT_EQ(Text<T>("a\0b"), sharer);
}

TYPED_TEST(QorStringBuffer, GetBufferOfNothingForASharedEmptyBufferIsTheNilString) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>(""), 10);
    auto s = keeper;
    s.GetBuffer(0);
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
    s.GetBuffer(4);
    EXPECT_EQ(4, s.GetAllocLength());
    EXPECT_EQ(Text<T>(""), s);
}

TYPED_TEST(QorStringBuffer, GetBufferSetLengthSetsLengthAndTerminator) {
    using T = TypeParam;
    auto s = String<T>("abcdef");
    T* const buffer = s.GetBufferSetLength(4);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(Text<T>("abcd"), s);
    EXPECT_EQ(6, s.GetAllocLength());
    s.GetBufferSetLength(9);
    EXPECT_EQ(9, s.GetLength());
    EXPECT_EQ(9, s.GetAllocLength());
    EXPECT_EQ(T(), s[9]);
    EXPECT_EQ(Text<T>("abcd").characters, Content(s).substr(0, 4));
}

TYPED_TEST(QorStringBuffer, ReleaseBufferMeasuresTheText) {
    using T = TypeParam;
    CQorStringT<T> s;
    T* const buffer = s.GetBuffer(10);
    auto const written = Text<T>("abc\0de");
    std::copy(written.c_str(), written.c_str() + 7, buffer);
    s.ReleaseBuffer();
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(10, s.GetAllocLength());
    EXPECT_EQ(buffer, s.c_str());
    s.ReleaseBuffer(6);
    EXPECT_EQ(Text<T>("abc\0de"), s);
    s.ReleaseBuffer(5);
    EXPECT_EQ(Text<T>("abc\0d"), s);
    s.ReleaseBuffer(-1);
    EXPECT_EQ(Text<T>("abc"), s);
    s.ReleaseBuffer(0);
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(10, s.GetAllocLength());
}

TYPED_TEST(QorStringBuffer, ReleaseBufferOfASharedBufferCopiesFirst) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    s.ReleaseBuffer(2);
    EXPECT_EQ(Text<T>("ab"), s);
    EXPECT_EQ(Text<T>("abc"), keeper);
    EXPECT_EQ(1, Refs(keeper));
    EXPECT_EQ(3, s.GetAllocLength());
}

TYPED_TEST(QorStringBuffer, LockedStringIsCopiedInsteadOfShared) {
    using T = TypeParam;
    auto s = String<T>("abc");
    T const* const buffer = s.c_str();
    EXPECT_EQ(buffer, s.LockBuffer());
    EXPECT_EQ(-1, Refs(s));
    CQorStringT<T> const constructed(s);
    CQorStringT<T> assigned;
    assigned = s;
    EXPECT_NE(buffer, constructed.c_str());
    EXPECT_NE(buffer, assigned.c_str());
    EXPECT_EQ(Text<T>("abc"), constructed);
    EXPECT_EQ(Text<T>("abc"), assigned);
    EXPECT_EQ(-1, Refs(s));

    s.UnlockBuffer();
    EXPECT_EQ(1, Refs(s));
    CQorStringT<T> const sharer(s);
    EXPECT_EQ(buffer, sharer.c_str());
    EXPECT_EQ(2, Refs(s));
}

TYPED_TEST(QorStringBuffer, LockingASharedStringTakesAPrivateBuffer) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>("abc"), 10);
    auto s = keeper;
    T const* const buffer = s.LockBuffer();
    EXPECT_NE(keeper.c_str(), buffer);
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_EQ(-1, Refs(s));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringBuffer, CopyConstructionFromALockedStringEndsAtItsFirstZero) {
    using T = TypeParam;
    auto s = String<T>("ab\0cd");
    s.LockBuffer();
    CQorStringT<T> const constructed(s);
    EXPECT_EQ(Text<T>("ab"), constructed);
    EXPECT_EQ(2, constructed.GetAllocLength());
    CQorStringT<T> assigned;
    assigned = s;  // assignment copies the whole length
    EXPECT_EQ(Text<T>("ab\0cd"), assigned);

    s.SetAt(0, T());
    CQorStringT<T> const empty(s);
    EXPECT_TRUE(IsNil(empty));
}

TYPED_TEST(QorStringBuffer, GrowingALockedBufferEndsTheLock) {
    using T = TypeParam;
    auto s = String<T>("abc");
    s.LockBuffer();
    s.GetBuffer(5);
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(Text<T>("abc"), s);
    s.LockBuffer();
    s.ConcatInPlace(3, Text<T>("def"));
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(Text<T>("abcdef"), s);
}

TYPED_TEST(QorStringBuffer, FreeExtraGivesSpareRoomBack) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("a\0c"), 10);
    s.FreeExtra();
    EXPECT_EQ(Text<T>("a\0c"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    T const* const buffer = s.c_str();
    s.FreeExtra();
    EXPECT_EQ(buffer, s.c_str());

    auto empty = WithRoom(Text<T>(""), 10);
    empty.FreeExtra();
    EXPECT_TRUE(IsNil(empty));
}

TYPED_TEST(QorStringBuffer, FreeExtraLeavesTheOtherSharerItsBuffer) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>("abc"), 10);
    auto s = keeper;
    s.FreeExtra();
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(10, keeper.GetAllocLength());
    EXPECT_EQ(Text<T>("abc"), keeper);
    EXPECT_EQ(1, Refs(keeper));

    auto sharer = s;
    sharer.FreeExtra();  // exact already: still shared
    EXPECT_EQ(s.c_str(), sharer.c_str());
    EXPECT_EQ(2, Refs(s));
}

TYPED_TEST(QorStringBuffer, TruncateShortens) {
    using T = TypeParam;
    auto s = String<T>("abcdef");
    T const* const buffer = s.c_str();
    s.Truncate(2);
    EXPECT_EQ(Text<T>("ab"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(6, s.GetAllocLength());
    s.Truncate(0);
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(6, s.GetAllocLength());
}

TYPED_TEST(QorStringBuffer, TruncateBeyondTheLengthTakesWhatTheBufferHolds) {
    using T = TypeParam;
    auto s = String<T>("abcdef");
    s.Truncate(3);
    s.Truncate(5);
    EXPECT_EQ(Text<T>("abc\0e"), s);

    auto grown = String<T>("abc");
    grown.Truncate(5);
    EXPECT_EQ(5, grown.GetLength());
    EXPECT_EQ(5, grown.GetAllocLength());
    EXPECT_EQ(T(), grown[5]);
    EXPECT_EQ(Text<T>("abc").characters, Content(grown).substr(0, 3));
}

TYPED_TEST(QorStringBuffer, TruncateOfASharedStringLeavesTheOtherAlone) {
    using T = TypeParam;
    auto const keeper = String<T>("abcdef");
    auto s = keeper;
    s.Truncate(2);
    EXPECT_EQ(Text<T>("ab"), s);
    EXPECT_EQ(Text<T>("abcdef"), keeper);
    EXPECT_EQ(6, s.GetAllocLength());
}

TYPED_TEST(QorStringBuffer, EmptyGivesTheBufferBack) {
    using T = TypeParam;
    auto s = String<T>("x");
    s.Empty();
    EXPECT_TRUE(IsNil(s));
    s.Empty();
    EXPECT_TRUE(IsNil(s));

    auto const keeper = String<T>("abc");
    auto sharer = keeper;
    sharer.Empty();
    EXPECT_TRUE(IsNil(sharer));
    EXPECT_EQ(1, Refs(keeper));
    EXPECT_EQ(Text<T>("abc"), keeper);
}

TYPED_TEST(QorStringBuffer, EmptyKeepsALockedBuffer) {
    using T = TypeParam;
    auto s = String<T>("abc");
    T const* const buffer = s.LockBuffer();
    s.Empty();
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_EQ(-1, Refs(s));
}

TYPED_TEST(QorStringBuffer, EmptyOfAnEmptyStringKeepsAPrivateBuffer) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>(""), 10);
    T const* const buffer = s.c_str();
    s.Empty();
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(10, s.GetAllocLength());
}

TYPED_TEST(QorStringBuffer, SetAtWritesIntoAPrivateCopy) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    EXPECT_EQ(keeper.c_str(), s.c_str());
    EXPECT_EQ(2, Refs(keeper));
    s.SetAt(1, T('X'));
    EXPECT_EQ(Text<T>("aXc"), s);
    EXPECT_EQ(Text<T>("abc"), keeper);
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(1, Refs(keeper));
    s.SetAt(1, T());
    EXPECT_EQ(Text<T>("a\0c"), s);  // the length stays
}
