#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringConstruction : public testing::Test {};
template <typename T>
class QorStringAssignment : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringConstruction, CharacterTypes, );
TYPED_TEST_SUITE(QorStringAssignment, CharacterTypes, );

template <typename T>
T const* ResourceIdentifier(std::uintptr_t value) {
    return reinterpret_cast<T const*>(value);
}

}  // namespace

// --- Construction ------------------------------------------------------------------------------

TYPED_TEST(QorStringConstruction, NothingGivesTheNilString) {
    using T = TypeParam;
    using Other = typename CQorStringT<T>::Other;
    CQorStringT<T> const strings[] = {
        CQorStringT<T>(),
        CQorStringT<T>(nullptr),
        CQorStringT<T>(Text<T>("")),
        CQorStringT<T>(static_cast<T const*>(nullptr)),
        CQorStringT<T>(static_cast<T const*>(nullptr), 0),
        CQorStringT<T>(Text<T>("abc"), 0),
        CQorStringT<T>(T('x'), 0),
        CQorStringT<T>(T('x'), -1),
        CQorStringT<T>(T('x'), -2147483647 - 1),
        CQorStringT<T>(static_cast<unsigned char const*>(nullptr)),
        CQorStringT<T>(reinterpret_cast<unsigned char const*>("")),
        CQorStringT<T>(static_cast<Other const*>(nullptr)),
        CQorStringT<T>(Text<Other>("")),
        CQorStringT<T>(static_cast<Other const*>(nullptr), 0),
        CQorStringT<T>(Text<Other>("abc"), 0),
        CQorStringT<T>(CQorStringT<T>()),
    };
    for (auto const& s : strings) EXPECT_TRUE(IsNil(s)) << "number " << &s - strings;
}

TYPED_TEST(QorStringConstruction, PointerBelow65536IsAResourceIdentifierAndNeverRead) {
    using T = TypeParam;
    for (std::uintptr_t value : {1u, 5u, 0x1000u, 0xFFFFu})
        EXPECT_TRUE(IsNil(CQorStringT<T>(ResourceIdentifier<T>(value)))) << value;
}

TYPED_TEST(QorStringConstruction, OneCharacterIsOneCharacterEvenWhenZero) {
    using T = TypeParam;
    EXPECT_EQ(Text<T>("x"), CQorStringT<T>(T('x')));
    CQorStringT<T> const zero{T()};
    EXPECT_EQ(Text<T>("\0"), zero);
    EXPECT_EQ(1, zero.GetLength());
    EXPECT_EQ(1, zero.GetAllocLength());
    EXPECT_FALSE(zero.IsEmpty());
}

TYPED_TEST(QorStringConstruction, CharacterRepeatedGivesThatMany) {
    using T = TypeParam;
    CQorStringT<T> const s(T('x'), 3);
    EXPECT_EQ(Text<T>("xxx"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_EQ(Text<T>("x"), CQorStringT<T>(T('x'), 1));
    EXPECT_EQ(Text<T>("\0\0"), CQorStringT<T>(T(), 2));
}

TYPED_TEST(QorStringConstruction, ZeroTerminatedTextIsCopiedExactly) {
    using T = TypeParam;
    auto const text = Text<T>("abc\0d");
    CQorStringT<T> const s(text);
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_EQ(1, Refs(s));
    EXPECT_NE(text.c_str(), s.c_str());
}

TYPED_TEST(QorStringConstruction, CountedTextKeepsZeros) {
    using T = TypeParam;
    CQorStringT<T> const s(Text<T>("a\0b\0cd"), 4);
    EXPECT_EQ(Text<T>("a\0b\0"), s);
    EXPECT_EQ(4, s.GetAllocLength());
}

TYPED_TEST(QorStringConstruction, CountedTextIsNotReadBeyondTheCount) {
    using T = TypeParam;
    for (int n = 1; n <= 40; ++n) {
        GuardedArray<T> text(static_cast<std::size_t>(n));
        std::fill_n(text.data(), n, T('x'));
        CQorStringT<T> const s(text.data(), n);
        EXPECT_EQ(CQorStringT<T>(T('x'), n), s);
    }
}

TYPED_TEST(QorStringConstruction, UnsignedCharactersAreTakenAsChar) {
    using T = TypeParam;
    unsigned char const text[] = "abc";
    EXPECT_EQ(Text<T>("abc"), CQorStringT<T>(text));
}

TYPED_TEST(QorStringConstruction, CopySharesTheBuffer) {
    using T = TypeParam;
    auto const s = WithRoom(Text<T>("a\0b"), 10);
    CQorStringT<T> const first(s);
    CQorStringT<T> const second(first);
    EXPECT_EQ(s.c_str(), second.c_str());
    EXPECT_EQ(3, Refs(s));
    EXPECT_EQ(Text<T>("a\0b"), second);
}

TYPED_TEST(QorStringConstruction, CopyOfAnEmptyStringWithRoomSharesItsBuffer) {
    using T = TypeParam;
    auto const s = WithRoom(Text<T>(""), 10);
    CQorStringT<T> const copy(s);
    EXPECT_EQ(s.c_str(), copy.c_str());
    EXPECT_EQ(2, Refs(s));
}

TYPED_TEST(QorStringConstruction, LastSharerFreesTheBuffer) {
    using T = TypeParam;
    auto* first = new CQorStringT<T>(T('x'), 5);
    CQorStringT<T> const second(*first);
    delete first;
    EXPECT_EQ(1, Refs(second));
    EXPECT_EQ(Text<T>("xxxxx"), second);
}

TYPED_TEST(QorStringConstruction, MoveTakesTheBufferOver) {
    using T = TypeParam;
    static_assert(std::is_nothrow_move_constructible<CQorStringT<T>>::value, "");
    auto s = String<T>("abc");
    T const* const buffer = s.c_str();
    CQorStringT<T> moved(std::move(s));
    EXPECT_EQ(buffer, moved.c_str());
    EXPECT_EQ(1, Refs(moved));
    EXPECT_TRUE(IsNil(s));

    moved.LockBuffer();
    CQorStringT<T> const locked(std::move(moved));
    EXPECT_EQ(buffer, locked.c_str());
    EXPECT_EQ(-1, Refs(locked));
    EXPECT_TRUE(IsNil(moved));
    CQorStringT<T> const nothing(std::move(moved));
    EXPECT_TRUE(IsNil(nothing));
}

// --- Assignment --------------------------------------------------------------------------------

TYPED_TEST(QorStringAssignment, OfAStringSharesItsBuffer) {
    using T = TypeParam;
    auto const source = WithRoom(Text<T>("a\0b"), 10);
    auto const keeper = String<T>("keeper");
    auto s = keeper;
    EXPECT_EQ(&s, &(s = source));
    EXPECT_EQ(source.c_str(), s.c_str());
    EXPECT_EQ(2, Refs(source));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringAssignment, OfItselfOrOfASharerChangesNothing) {
    using T = TypeParam;
    auto s = String<T>("abc");
    auto const sharer = s;
    auto const& self = s;
    T const* const buffer = s.c_str();
    s = self;
    s = sharer;
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(2, Refs(s));
    EXPECT_EQ(Text<T>("abc"), s);
}

TYPED_TEST(QorStringAssignment, OfItselfWhileLockedKeepsTheLock) {
    using T = TypeParam;
    auto s = String<T>("abc");
    auto const& self = s;
    T const* const buffer = s.LockBuffer();
    s = self;
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(-1, Refs(s));
    EXPECT_EQ(Text<T>("abc"), s);
}

TYPED_TEST(QorStringAssignment, ToALockedStringCopiesAndTheLockSurvives) {
    using T = TypeParam;
    auto const source = String<T>("a\0b");
    auto const longer = String<T>("longer than before");
    auto s = String<T>("12345");
    T const* const buffer = s.LockBuffer();
    s = source;
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_EQ(-1, Refs(s));
    EXPECT_EQ(1, Refs(source));
    s = longer;
    EXPECT_EQ(Text<T>("longer than before"), s);
    EXPECT_NE(longer.c_str(), s.c_str());
    EXPECT_EQ(-1, Refs(s));
    EXPECT_EQ(1, Refs(longer));
    s = CQorStringT<T>();
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(-1, Refs(s));
    EXPECT_EQ(18, s.GetAllocLength());
}

TYPED_TEST(QorStringAssignment, OfTheNilStringKeepsAPrivateBuffer) {
    using T = TypeParam;
    CQorStringT<T> const nil;
    auto s = String<T>("abc");
    T const* const buffer = s.c_str();
    s = nil;
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(3, s.GetAllocLength());

    auto const keeper = String<T>("abc");
    auto sharer = keeper;
    sharer = nil;
    EXPECT_TRUE(IsNil(sharer));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringAssignment, OfALockedStringCopiesItWhole) {
    using T = TypeParam;
    auto locked = String<T>("a\0b");
    locked.LockBuffer();
    auto s = WithRoom(Text<T>("x"), 10);
    T const* const buffer = s.c_str();
    s = locked;
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(-1, Refs(locked));
}

TYPED_TEST(QorStringAssignment, OfTextKeepsABufferThatIsLargeEnough) {
    using T = TypeParam;
    auto s = String<T>("12345");
    T const* const buffer = s.c_str();
    EXPECT_EQ(&s, &(s = Text<T>("abc\0d")));
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(5, s.GetAllocLength());
    s = Text<T>("abcdef");
    EXPECT_EQ(Text<T>("abcdef"), s);
    EXPECT_EQ(6, s.GetAllocLength());
    s = static_cast<T const*>(nullptr);
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(6, s.GetAllocLength());
    s = Text<T>("x");
    s = nullptr;
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_EQ(6, s.GetAllocLength());
}

TYPED_TEST(QorStringAssignment, OfTextToASharedStringLeavesTheOtherAlone) {
    using T = TypeParam;
    auto const keeper = String<T>("abcdef");
    auto s = keeper;
    s = Text<T>("xy");
    EXPECT_EQ(Text<T>("xy"), s);
    EXPECT_EQ(2, s.GetAllocLength());
    EXPECT_EQ(Text<T>("abcdef"), keeper);
    s = keeper;
    s = Text<T>("");
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringAssignment, OfTextInsideItself) {
    using T = TypeParam;
    auto s = String<T>("abcdef");
    s = s.c_str() + 2;
    EXPECT_EQ(Text<T>("cdef"), s);
    s = s.c_str();
    EXPECT_EQ(Text<T>("cdef"), s);
    s = s.c_str() + 4;
    EXPECT_EQ(Text<T>(""), s);

    auto const keeper = String<T>("abcdef");
    auto sharer = keeper;
    sharer = sharer.c_str() + 3;
    EXPECT_EQ(Text<T>("def"), sharer);
    EXPECT_EQ(Text<T>("abcdef"), keeper);

    auto counted = String<T>("abcdef");
    counted.AssignCopy(3, counted.c_str() + 1);
    EXPECT_EQ(Text<T>("bcd"), counted);
}

TYPED_TEST(QorStringAssignment, OfOneCharacter) {
    using T = TypeParam;
    auto s = String<T>("abc");
    T const* const buffer = s.c_str();
    EXPECT_EQ(&s, &(s = T('x')));
    EXPECT_EQ(Text<T>("x"), s);
    EXPECT_EQ(buffer, s.c_str());
    s = T();
    EXPECT_EQ(Text<T>("\0"), s);
    CQorStringT<T> fresh;
    fresh = T('y');
    EXPECT_EQ(Text<T>("y"), fresh);
    EXPECT_EQ(1, fresh.GetAllocLength());
}

TYPED_TEST(QorStringAssignment, OfACharacterOfTheOtherType) {
    using T = TypeParam;
    using Other = typename CQorStringT<T>::Other;
    auto s = String<T>("abc");
    s = Other('x');
    EXPECT_EQ(Text<T>("x"), s);
    s = Other();
    EXPECT_EQ(Text<T>("\0"), s);
}

TYPED_TEST(QorStringAssignment, OfUnsignedCharacters) {
    using T = TypeParam;
    unsigned char const text[] = "abc";
    auto s = String<T>("12345");
    T const* const buffer = s.c_str();
    EXPECT_EQ(&s, &(s = text));
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(buffer, s.c_str());
    s = static_cast<unsigned char const*>(nullptr);
    EXPECT_EQ(Text<T>(""), s);
}

TYPED_TEST(QorStringAssignment, MoveTakesTheBufferOver) {
    using T = TypeParam;
    auto const keeper = String<T>("keeper");
    auto source = String<T>("a\0b");
    T const* const buffer = source.c_str();
    auto s = keeper;
    EXPECT_EQ(&s, &(s = std::move(source)));
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(1, Refs(keeper));
}

TYPED_TEST(QorStringAssignment, MoveObeysLocks) {
    using T = TypeParam;
    auto target = String<T>("12345");
    T const* const targetBuffer = target.LockBuffer();
    target = String<T>("abc");
    EXPECT_EQ(Text<T>("abc"), target);
    EXPECT_EQ(targetBuffer, target.c_str());
    EXPECT_EQ(-1, Refs(target));

    auto source = String<T>("a\0b");
    T const* const sourceBuffer = source.LockBuffer();
    auto s = String<T>("xyz");
    s = std::move(source);
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_NE(sourceBuffer, s.c_str());
    EXPECT_EQ(1, Refs(s));
}

TYPED_TEST(QorStringAssignment, MoveToItselfChangesNothing) {
    using T = TypeParam;
    auto s = String<T>("abc");
    auto& self = s;
    s = std::move(self);
    EXPECT_EQ(Text<T>("abc"), s);
    EXPECT_EQ(1, Refs(s));
}

TYPED_TEST(QorStringAssignment, SwapExchangesBuffersAndLocks) {
    using T = TypeParam;
    auto a = String<T>("aaa");
    CQorStringT<T> b;
    T const* const buffer = a.LockBuffer();
    swap(a, b);
    EXPECT_TRUE(IsNil(a));
    EXPECT_EQ(buffer, b.c_str());
    EXPECT_EQ(-1, Refs(b));
    b.UnlockBuffer();
    std::swap(a, b);
    EXPECT_EQ(buffer, a.c_str());
    EXPECT_TRUE(IsNil(b));
    auto& self = a;
    swap(a, self);
    EXPECT_EQ(Text<T>("aaa"), a);
}
