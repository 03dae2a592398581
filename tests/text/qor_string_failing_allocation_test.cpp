// What becomes of strings when there is no memory at the nth request.
// A program of its own: it replaces the global operator new[], and operator new.

#include <algorithm>
#include <cstddef>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <qorutils/text/qor_string.h>

#include "support/string_allocation.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class FailingAllocation : public AllocationTest {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(FailingAllocation, CharacterTypes, );

template <typename T>
T const* OneString();
template <>
char const* OneString() {
    return "<<<%s>>>";
}
template <>
wchar_t const* OneString() {
    return L"<<<%ls>>>";
}

template <typename T>
struct Operation {
    char const* name;
    std::function<void(CQorStringT<T>&)> run;
};

// All that take blocks when applied to Subject().
template <typename T>
std::vector<Operation<T>> AllocatingOperations() {
    using S = CQorStringT<T>;
    using Other = typename S::Other;
    static auto const longText = Text<T>("a text that is longer than the subject of these tests");
    static auto const otherText = Text<Other>("a text that is longer than the subject of these");
    static unsigned char const bytes[] = "a text that is longer than the subject of these tests";
    return {
        {"= text", [](S& s) { s = longText; }},
        {"= other text", [](S& s) { s = otherText; }},
        {"= bytes", [](S& s) { s = bytes; }},
        {"= locked",
         [](S& s) {
             S locked(longText);
             locked.LockBuffer();
             s = locked;
         }},
        {"= converted", [](S& s) { s = S(otherText); }},
        {"= converted counted", [](S& s) { s = S(otherText, 20); }},
        {"= counted", [](S& s) { s = S(longText, 20); }},
        {"= repeated", [](S& s) { s = S(T('x'), 20); }},
        {"= one", [](S& s) { s = S(T('x')); }},
        {"= copy of locked",
         [](S& s) {
             S locked(longText);
             locked.LockBuffer();
             s = S(locked);
         }},
        {"+= character", [](S& s) { s += T('x'); }},
        {"+= other character", [](S& s) { s += Other('x'); }},
        {"+= text", [](S& s) { s += longText; }},
        {"+= string", [](S& s) { s += S(longText); }},
        {"+= itself", [](S& s) { s += s; }},
        {"= a + b", [](S& s) { s = s + s; }},
        {"= a + b + c", [](S& s) { s = T('x') + s + longText.c_str() + s + T('y'); }},
        {"Insert character", [](S& s) { s.Insert(1, T('x')); }},
        {"Insert text", [](S& s) { s.Insert(1, longText); }},
        {"Insert itself", [](S& s) { s.Insert(1, s); }},
        {"push_back", [](S& s) { s.push_back(T('x')); }},
        {"Replace growing", [](S& s) { s.Replace(Text<T>("a"), longText); }},
        {"Replace by itself", [](S& s) { s.Replace(Text<T>("a"), s); }},
        {"Replace itself", [](S& s) { s.Replace(s, longText); }},
        {"Format", [](S& s) { Format<T>(s, Text<T>("%100d"), 1); }},
        {"Format itself", [](S& s) { Format<T>(s, OneString<T>(), s.c_str()); }},
        {"GetBuffer", [](S& s) { s.GetBuffer(100); }},
        {"GetBufferSetLength", [](S& s) { s.GetBufferSetLength(100); }},
        {"Truncate", [](S& s) { s.Truncate(100); }},
        {"AllocBeforeWrite", [](S& s) { s.AllocBeforeWrite(100); }},
        {"AssignCopy", [](S& s) { s.AssignCopy(20, longText); }},
        {"ConcatInPlace", [](S& s) { s.ConcatInPlace(20, longText); }},
        {"Mid", [](S& s) { s = s.Mid(1, 3); }},
        {"Left", [](S& s) { s = s.Left(3); }},
        {"Right", [](S& s) { s = s.Right(3); }},
        {"SpanIncluding", [](S& s) { s = s.SpanIncluding(Text<T>("ab")); }},
        {"SpanExcluding", [](S& s) { s = s.SpanExcluding(Text<T>("n")); }},
        {"Tokenize",
         [](S& s) {
             int start = 0;
             s = s.Tokenize(Text<T>("n"), start);
         }},
    };
}

// Those that take a block only to leave a shared one alone.
template <typename T>
std::vector<Operation<T>> CopyingOperations() {
    using S = CQorStringT<T>;
    return {
        {"CopyBeforeWrite", [](S& s) { s.CopyBeforeWrite(); }},
        {"SetAt", [](S& s) { s.SetAt(0, T('x')); }},
        {"MakeUpper", [](S& s) { s.MakeUpper(); }},
        {"MakeLower", [](S& s) { s.MakeLower(); }},
        {"MakeReverse", [](S& s) { s.MakeReverse(); }},
        {"Trim", [](S& s) { s.Trim(); }},
        {"TrimLeft", [](S& s) { s.TrimLeft(); }},
        {"TrimRight", [](S& s) { s.TrimRight(); }},
        {"Trim character", [](S& s) { s.Trim(T('b')); }},
        {"TrimLeft character", [](S& s) { s.TrimLeft(T('b')); }},
        {"TrimRight character", [](S& s) { s.TrimRight(T('b')); }},
        {"Trim set", [](S& s) { s.Trim(Text<T>("ab")); }},
        {"TrimLeft set", [](S& s) { s.TrimLeft(Text<T>("ab")); }},
        {"TrimRight set", [](S& s) { s.TrimRight(Text<T>("ab")); }},
        {"Replace character", [](S& s) { s.Replace(T('a'), T('x')); }},
        {"Replace same size", [](S& s) { s.Replace(Text<T>("a"), Text<T>("x")); }},
        {"Replace shrinking", [](S& s) { s.Replace(Text<T>("an"), Text<T>("")); }},
        {"Remove", [](S& s) { s.Remove(T('a')); }},
        {"Delete", [](S& s) { s.Delete(1, 2); }},
        {"GetBuffer 0", [](S& s) { s.GetBuffer(0); }},
        {"GetBufferSetLength 1", [](S& s) { s.GetBufferSetLength(1); }},
        {"ReleaseBuffer", [](S& s) { s.ReleaseBuffer(2); }},
        {"LockBuffer", [](S& s) { s.LockBuffer(); }},
        {"Truncate 1", [](S& s) { s.Truncate(1); }},
        {"AllocBeforeWrite 1", [](S& s) { s.AllocBeforeWrite(1); }},
        {"= character", [](S& s) { s = T('x'); }},
        {"= short text", [](S& s) { s = Text<T>("x"); }},
        {"= inside", [](S& s) { s = s.c_str() + 2; }},
        {"Format short", [](S& s) { Format<T>(s, Text<T>("%d"), 1); }},
    };
}

template <typename T>
CQorStringT<T> Subject() {
    return String<T>("ban\0ana");
}

// Lets the 1st, 2nd, ... request fail until the operation has all that it wants. Each failure
// leaves `s`, and every other sharer, as it was, and no block behind.
template <typename T>
void ExpectUnharmed(Operation<T> const& operation, CQorStringT<T>& s) {
    SCOPED_TRACE(operation.name);
    int failures = 0;
    for (bool done = false; !done;) {
        Snapshot<T> const before(s);
        int const blocksBefore = arrayHeap.blocks;
        arrayHeap.untilRefusal = failures;
        try {
            operation.run(s);
            done = true;
        } catch (std::bad_alloc const&) {
            ++failures;
        }
        arrayHeap.untilRefusal = -1;
        if (!done) {
            ASSERT_TRUE(before == Snapshot<T>(s));
            ASSERT_EQ(blocksBefore, arrayHeap.blocks);
        }
    }
    EXPECT_GT(failures, 0);
    EXPECT_TRUE(IsTerminated(s));
    EXPECT_LE(s.GetLength(), s.GetAllocLength());
}

}  // namespace

TYPED_TEST(FailingAllocation, LeavesAnOwnedStringAsItWas) {
    using T = TypeParam;
    for (auto const& operation : AllocatingOperations<T>()) {
        auto s = Subject<T>();
        ExpectUnharmed(operation, s);
    }
}

TYPED_TEST(FailingAllocation, LeavesALockedStringAsItWas) {
    using T = TypeParam;
    for (auto const& operation : AllocatingOperations<T>()) {
        auto s = Subject<T>();
        s.LockBuffer();
        ExpectUnharmed(operation, s);
    }
    auto s = Subject<T>();
    s.LockBuffer();
    ExpectUnharmed<T>({"copy", [](CQorStringT<T>& locked) { CQorStringT<T> const copy(locked); }},
                      s);
}

TYPED_TEST(FailingAllocation, LeavesAllSharersAsTheyWere) {
    using T = TypeParam;
    auto operations = AllocatingOperations<T>();
    for (auto const& operation : CopyingOperations<T>()) operations.push_back(operation);
    for (auto const& operation : operations) {
        auto const keeper = Subject<T>();
        auto s = keeper;
        ExpectUnharmed(operation, s);
        EXPECT_EQ(Text<T>("ban\0ana"), keeper) << operation.name;
        EXPECT_EQ(s.c_str() == keeper.c_str() ? 2 : 1, Refs(keeper)) << operation.name;
    }
}

TYPED_TEST(FailingAllocation, LeavesANilStringAsItWas) {
    using T = TypeParam;
    std::vector<std::string> const taking = {
        "= text",     "= other text",  "= bytes",         "= locked",  "+= character",
        "+= text",    "+= string",     "Insert text",     "push_back", "Insert character",
        "Format",     "Format itself", "GetBuffer",       "Truncate",  "GetBufferSetLength",
        "AssignCopy", "ConcatInPlace", "AllocBeforeWrite"};
    std::size_t tried = 0;
    for (auto const& operation : AllocatingOperations<T>()) {
        if (std::find(taking.begin(), taking.end(), operation.name) == taking.end()) continue;
        ++tried;
        CQorStringT<T> s;
        ExpectUnharmed(operation, s);
    }
    EXPECT_EQ(taking.size(), tried);
}

TYPED_TEST(FailingAllocation, OfSpareRoomGivenBackLeavesTheString) {
    using T = TypeParam;
    Operation<T> const freeExtra = {"FreeExtra", [](CQorStringT<T>& s) { s.FreeExtra(); }};
    auto s = WithRoom(Text<T>("a\0b"), 10);
    ExpectUnharmed(freeExtra, s);
    EXPECT_EQ(3, s.GetAllocLength());
    auto const keeper = WithRoom(Text<T>("a\0b"), 10);
    auto sharer = keeper;
    ExpectUnharmed(freeExtra, sharer);
    EXPECT_EQ(10, keeper.GetAllocLength());
}

TEST_F(AllocationTest, LongFormatFailsWithoutHarm) {
    std::string const text(5000, 'x');
    Operation<char> const format = {
        "Format", [&text](CQorStringT<char>& s) { s.Format("%s%s", s.c_str(), text.c_str()); }};
    CQorStringT<char> owned("abc");
    ExpectUnharmed(format, owned);
    EXPECT_EQ("abc" + text, Content(owned));
    CQorStringT<char> const keeper("abc");
    CQorStringT<char> sharer(keeper);
    ExpectUnharmed(format, sharer);
    EXPECT_EQ("abc" + text, Content(sharer));
    EXPECT_EQ(1, Refs(keeper));
}
