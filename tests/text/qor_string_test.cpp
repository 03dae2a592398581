#include <qorutils/text/qor_string.h>

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

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringLayout, CharacterTypes, );

bool NilBlockIsIntact() {
    auto const& nil = qor_string_internal_data::g_afxInitData;
    return nil.nRefs == -1 && nil.nDataLength == 0 && nil.nAllocLength == 0 && nil.terminator == 0;
}

}  // namespace

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
