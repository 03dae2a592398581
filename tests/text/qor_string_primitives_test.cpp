#include <qorutils/text/qor_string.h>

#include <gtest/gtest.h>

#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringPrimitives : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringPrimitives, CharacterTypes, );

}  // namespace

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
