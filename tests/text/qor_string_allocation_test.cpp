// What strings ask of the global operator new[]: how many bytes, and that no length wraps.
// A program of its own: it replaces that operator, and operator new, for the whole process.

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <new>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <qorutils/text/qor_memory.h>
#include <qorutils/text/qor_string.h>

#include "support/scoped_locale.h"
#include "support/string_allocation.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class StringBlocks : public AllocationTest {};
template <typename T>
class ImpossibleLengths : public AllocationTest {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(StringBlocks, CharacterTypes, );
TYPED_TEST_SUITE(ImpossibleLengths, CharacterTypes, );

template <typename T>
std::size_t BytesFor(int n);
template <>
std::size_t BytesFor<char>(int n) {
    return static_cast<std::size_t>(n) + 13;
}
template <>
std::size_t BytesFor<wchar_t>(int n) {
    return (static_cast<std::size_t>(n) + 1) * 4 + 12;
}

// `action` takes exactly one block, for n characters.
template <typename T, typename Action>
void ExpectOneBlock(int n, Action action) {
    int const takenBefore = arrayHeap.taken;
    action();
    EXPECT_EQ(takenBefore + 1, arrayHeap.taken);
    EXPECT_EQ(BytesFor<T>(n), arrayHeap.lastSize);
}

template <typename Action>
void ExpectNoBlock(Action action) {
    int const takenBefore = arrayHeap.taken;
    action();
    EXPECT_EQ(takenBefore, arrayHeap.taken);
}

rlim_t AddressSpaceInUse() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

// --- Bytes and blocks --------------------------------------------------------------------------

TYPED_TEST(StringBlocks, HoldHeaderCharactersAndTerminatorWithoutRounding) {
    using T = TypeParam;
    for (int n : {1, 2, 3, 4, 7, 8, 9, 15, 16, 17, 100, 1000, 65535}) {
        CQorStringT<T> s;
        ExpectOneBlock<T>(n, [&] { s.AllocBuffer(n); });
        CQorStringT<T> repeated;
        ExpectOneBlock<T>(n, [&] { repeated = CQorStringT<T>(T('x'), n); });
        CQorStringT<T> reserved;
        ExpectOneBlock<T>(n, [&] { reserved.GetBuffer(n); });
        CQorStringT<T> text;
        ExpectOneBlock<T>(n, [&] { text = repeated.c_str(); });
        ExpectOneBlock<T>(n + 1, [&] { text += T('y'); });
    }
}

TYPED_TEST(StringBlocks, NothingTakesNone) {
    using T = TypeParam;
    using Other = typename CQorStringT<T>::Other;
    ExpectNoBlock([] {
        CQorStringT<T> s;
        CQorStringT<T> const copy(s);
        CQorStringT<T> const null(static_cast<T const*>(nullptr));
        CQorStringT<T> const converted(static_cast<Other const*>(nullptr));
        CQorStringT<T> const repeated(T('x'), -1);
        s = copy;
        s += copy;
        s.Empty();
        s.LockBuffer();
        s.UnlockBuffer();
        s.Trim();
        s.GetBuffer(0);
        s.ReleaseBuffer();
        EXPECT_TRUE(IsNil(s + copy));
        EXPECT_TRUE(IsNil(s.Mid(1, 2)));
    });
}

TYPED_TEST(StringBlocks, SharingAndMovingTakeNone) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    ExpectNoBlock([&s] {
        CQorStringT<T> copy(s);
        CQorStringT<T> moved(std::move(copy));
        CQorStringT<T> assigned;
        assigned = moved;
        assigned = std::move(moved);
        EXPECT_EQ(s.c_str(), s.Left(9).c_str());
        EXPECT_EQ(s.c_str(), assigned.c_str());
    });
}

TYPED_TEST(StringBlocks, WritingTakesOneForASharerAndNoneForTheOwner) {
    using T = TypeParam;
    auto const keeper = String<T>("abc");
    auto s = keeper;
    ExpectOneBlock<T>(3, [&s] { s.SetAt(0, T('x')); });
    ExpectNoBlock([&s] {
        s.SetAt(0, T('y'));
        s.MakeUpper();
        s.Replace(T('b'), T('c'));
        s.Trim();
        s.Delete(1);
        s.Remove(T('c'));
        s = T('x');
    });
}

TYPED_TEST(StringBlocks, EveryGrowthTakesOne) {
    using T = TypeParam;
    auto s = String<T>("abc");
    ExpectOneBlock<T>(4, [&s] { s.Insert(1, T('x')); });
    ExpectOneBlock<T>(6, [&s] { s.Insert(1, Text<T>("yz")); });
    ExpectOneBlock<T>(8, [&s] { s += Text<T>("cb"); });
    ExpectOneBlock<T>(10, [&s] { s.Replace(Text<T>("b"), Text<T>("BB")); });
    ExpectOneBlock<T>(9, [&s] { EXPECT_EQ(9, s.Mid(1).GetLength()); });
    CQorStringT<T> joined;
    ExpectOneBlock<T>(20, [&] { joined = s + s; });
    ExpectOneBlock<T>(12, [&s] { s.GetBuffer(12); });
    ExpectOneBlock<T>(10, [&s] { s.FreeExtra(); });
}

TYPED_TEST(StringBlocks, FormattingTakesOneForTheResultAndATerminatorMore) {
    using T = TypeParam;
    CQorStringT<T> s;
    ExpectOneBlock<T>(4, [&s] { Format<T>(s, Text<T>("%d"), 123); });
    ExpectNoBlock([&s] { Format<T>(s, Text<T>("%d"), 456); });
    CQorStringT<char> narrow;
    ExpectOneBlock<char>(5001, [&narrow] { narrow.Format("%5000d", 1); });
}

TYPED_TEST(StringBlocks, ConversionTakesOneOfTheExactSize) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<char> narrow;
    CQorStringT<wchar_t> wide;
    ExpectOneBlock<char>(4, [&narrow] { narrow = CQorStringT<char>(L"a\u20ac"); });
    ExpectOneBlock<wchar_t>(2, [&wide] { wide = CQorStringT<wchar_t>("a\xE2\x82\xAC"); });
    ExpectOneBlock<char>(7, [&narrow] { narrow = L"\u20ac\u20acb"; });
    ExpectOneBlock<wchar_t>(3, [&wide] {
        wide =
            "\xE2\x82\xAC\xE2\x82\xAC"
            "b";
    });
    CQorStringT<wchar_t> limited;
    ExpectOneBlock<wchar_t>(1, [&] {
        limited = CQorStringT<wchar_t>(
            "\xE2\x82\xAC"
            "bcd",
            1);
    });
}

TYPED_TEST(StringBlocks, LastOwnerGivesTheBlockBack) {
    using T = TypeParam;
    int const before = arrayHeap.blocks;
    {
        auto const s = String<T>("abc");
        auto copy = s;
        auto locked = String<T>("abc");
        locked.LockBuffer();
        EXPECT_EQ(before + 2, arrayHeap.blocks);
        copy.Empty();
        EXPECT_EQ(before + 2, arrayHeap.blocks);
        locked.Empty();  // keeps its buffer
        EXPECT_EQ(before + 2, arrayHeap.blocks);
    }
    EXPECT_EQ(before, arrayHeap.blocks);
    auto s = String<T>("abc");
    s.Release();
    EXPECT_EQ(before, arrayHeap.blocks);
    s = Text<T>("abc");
    auto* const header = s.GetData();
    s.Init();
    EXPECT_EQ(before + 1, arrayHeap.blocks);
    CQorStringT<T>::FreeData(header);
    EXPECT_EQ(before, arrayHeap.blocks);
}

TYPED_TEST(StringBlocks, HeaderWithoutCapacityIsNeverFreed) {
    using T = TypeParam;
    auto s = String<T>("abc");
    int const before = arrayHeap.blocks;
    s.GetData()->nAllocLength = 0;
    CQorStringT<T>::FreeData(s.GetData());
    CQorStringT<T>::Release(s.GetData());
    EXPECT_EQ(before, arrayHeap.blocks);
    s.GetData()->nAllocLength = 3;
    s.GetData()->nRefs = 1;
}

TEST(QorVectorBlocks, ComeFromThePlainOperatorNew) {
    int const arraysBefore = arrayHeap.taken;
    int const takenBefore = plainHeap.taken;
    int const givenBefore = plainHeap.given;
    {
        qor_vector<int> const numbers(100);
        EXPECT_EQ(takenBefore + 1, plainHeap.taken);
        EXPECT_EQ(100u, numbers.size());
    }
    EXPECT_EQ(givenBefore + 1, plainHeap.given);
    EXPECT_EQ(arraysBefore, arrayHeap.taken);
}

TEST(QorOperatorNewBlock, ComesFromMallocAndNotFromTheOperators) {
    int const arraysBefore = arrayHeap.taken;
    int const takenBefore = plainHeap.taken;
    std::free(qor_operator_new(100));
    EXPECT_EQ(arraysBefore, arrayHeap.taken);
    EXPECT_EQ(takenBefore, plainHeap.taken);
}

TEST(QorOperatorNewBlock, ThatMallocDoesNotHaveThrows) {
    rlimit before{};
    ASSERT_EQ(0, getrlimit(RLIMIT_AS, &before));
    rlimit oneGibMore = before;
    oneGibMore.rlim_cur = AddressSpaceInUse() + (rlim_t{1} << 30);
    ASSERT_EQ(0, setrlimit(RLIMIT_AS, &oneGibMore));
    int thrown = 0;
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            std::free(qor_operator_new(UINT_MAX));
        } catch (std::bad_alloc const&) {
            ++thrown;
        }
    }
    ASSERT_EQ(0, setrlimit(RLIMIT_AS, &before));
    EXPECT_EQ(2, thrown);
}

// --- Lengths that no machine has ---------------------------------------------------------------

// `action` throws bad_alloc on an owned, a shared and a nil string, which stay as they were.
template <typename T, typename Action>
void ExpectRefused(Action action) {
    auto owned = WithRoom(Text<T>("abc"), 5);
    auto const keeper = String<T>("shared");
    auto shared = keeper;
    CQorStringT<T> nil;
    for (CQorStringT<T>* s : {&owned, &shared, &nil}) {
        Snapshot<T> const before(*s);
        int const blocksBefore = arrayHeap.blocks;
        EXPECT_THROW(action(*s), std::bad_alloc);
        EXPECT_TRUE(before == Snapshot<T>(*s));
        EXPECT_EQ(blocksBefore, arrayHeap.blocks);
    }
}

TYPED_TEST(ImpossibleLengths, OfABuffer) {
    using T = TypeParam;
    // The last ones are those whose bytes wrap to a small number where sizes have 32 bits.
    for (int n : {-1, -2, INT_MIN, INT_MAX, INT_MAX - 1, 0x3FFFFFFF, 0x3FFFFFFC, 0x3FFFFFFE}) {
        SCOPED_TRACE(n);
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.AllocBuffer(n); });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.AllocBeforeWrite(n); });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.AssignCopy(n, Text<T>("x")); });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.GetBufferSetLength(n); });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s = CQorStringT<T>(Text<T>("x"), n); });
        ExpectRefused<T>([n](CQorStringT<T>& s) {
            CQorStringT<T> const source;
            source.AllocCopy(s, n, 0, 0);
        });
        ExpectRefused<T>([n](CQorStringT<T>& s) {
            CQorStringT<T> const source;
            source.AllocCopy(s, 0, 0, n);
        });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.ConcatInPlace(n, Text<T>("x")); });
        ExpectRefused<T>(
            [n](CQorStringT<T>& s) { s.ConcatCopy(n, Text<T>("x"), 1, Text<T>("x")); });
        ExpectRefused<T>(
            [n](CQorStringT<T>& s) { s.ConcatCopy(1, Text<T>("x"), n, Text<T>("x")); });
    }
}

TYPED_TEST(ImpossibleLengths, OfReservedRoomAndRepeatedCharacters) {
    using T = TypeParam;
    for (int n : {INT_MAX, INT_MAX - 1, 0x3FFFFFFF, 0x3FFFFFFC, 0x3FFFFFFE}) {
        SCOPED_TRACE(n);
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.GetBuffer(n); });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s.Truncate(n); });
        ExpectRefused<T>([n](CQorStringT<T>& s) { s = CQorStringT<T>(T('x'), n); });
    }
}

TYPED_TEST(ImpossibleLengths, NegativeMinimumOfGetBufferIsSatisfiedByAnyBuffer) {
    using T = TypeParam;
    auto s = String<T>("abc");
    ExpectNoBlock([&s] { EXPECT_EQ(s.c_str(), s.GetBuffer(-1)); });
    auto sharer = s;
    ExpectOneBlock<T>(3, [&sharer] { sharer.GetBuffer(INT_MIN); });
    EXPECT_EQ(s, sharer);
}

TYPED_TEST(ImpossibleLengths, SumsThatNoIntHoldsDoNotWrap) {
    using T = TypeParam;
    auto const text = Text<T>("x");
    auto s = String<T>("abc");
    Snapshot<T> const before(s);
    EXPECT_THROW(s.ConcatInPlace(INT_MAX, text), std::bad_alloc);
    EXPECT_THROW(s.ConcatInPlace(INT_MAX - 2, text), std::bad_alloc);
    EXPECT_THROW(s.ConcatCopy(INT_MAX, text, INT_MAX, text), std::bad_alloc);
    EXPECT_THROW(s.ConcatCopy(INT_MAX, text, 1, text), std::bad_alloc);
    EXPECT_THROW(s.ConcatCopy(-1, text, 1, text), std::bad_alloc);  // even if the sum is 0
    EXPECT_THROW(s.ConcatCopy(-5, text, 10, text), std::bad_alloc);
    CQorStringT<T> dest;
    EXPECT_THROW(s.AllocCopy(dest, INT_MAX, 0, INT_MAX), std::bad_alloc);
    EXPECT_THROW(s.AllocCopy(dest, -1, 0, 1), std::bad_alloc);
    EXPECT_THROW(s.AllocCopy(dest, 1, 0, -1), std::bad_alloc);
    EXPECT_TRUE(before == Snapshot<T>(s));
    EXPECT_TRUE(IsNil(dest));
}

TYPED_TEST(ImpossibleLengths, GrowthBeyondTheLongestStringIsRefused) {
    using T = TypeParam;
    // A string that says it is as long as can be; nobody may read or move its characters.
    auto s = String<T>("abc");
    s.GetData()->nDataLength = INT_MAX;
    s.GetData()->nAllocLength = INT_MAX;
    EXPECT_THROW(s += T('x'), std::bad_alloc);
    EXPECT_THROW(s += Text<T>("x"), std::bad_alloc);
    EXPECT_THROW(s += s, std::bad_alloc);
    EXPECT_THROW(s + s, std::bad_alloc);
    EXPECT_THROW(s + T('x'), std::bad_alloc);
    EXPECT_THROW(s.Insert(0, T('x')), std::bad_alloc);
    EXPECT_THROW(s.Insert(0, Text<T>("x")), std::bad_alloc);
    EXPECT_THROW(s.push_back(T('x')), std::bad_alloc);
    EXPECT_EQ(INT_MAX, s.GetLength());
    s.GetData()->nDataLength = 3;
    s.GetData()->nAllocLength = 3;
    EXPECT_EQ(Text<T>("abc"), s);
}

TYPED_TEST(ImpossibleLengths, ReplaceBeyondTheLongestStringIsRefused) {
    using T = TypeParam;
    // 60000 matches, each growing by 60000, pass 2147483647.
    CQorStringT<T> s(T('a'), 60000);
    CQorStringT<T> const replacement(T('b'), 60001);
    CQorStringT<T> const before(s);
    EXPECT_THROW(s.Replace(Text<T>("a"), replacement), std::bad_alloc);
    EXPECT_EQ(before.c_str(), s.c_str());
    // And so often that the sum would wrap into a small positive one: 65536 * 65536 + 65536.
    CQorStringT<T> wrapping(T('a'), 65536);
    CQorStringT<T> const longer(T('b'), 65537);
    EXPECT_THROW(wrapping.Replace(Text<T>("a"), longer), std::bad_alloc);
    EXPECT_EQ(CQorStringT<T>(T('a'), 65536), wrapping);
}
