#include <qorutils/text/qor_string.h>

#include <algorithm>

#include <gtest/gtest.h>

#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringBuffer : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringBuffer, CharacterTypes, );

}  // namespace

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
