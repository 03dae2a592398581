#include <qorutils/formats/qor_array.h>

#include <type_traits>

#include <gtest/gtest.h>

#include <qorutils/text/qor_string.h>

namespace {

using qor_templ::CQorArray;
using Wide = qor_text::CQorStringT<wchar_t>;

static_assert(std::is_same<CQorArray<int>, CQorArray<int, int const&>>::value, "");
static_assert(std::is_same<CQorArray<int>::iterator, qor_vector<int>::iterator>::value, "");

TEST(CQorArray, BeginsEmpty) {
    CQorArray<unsigned int, unsigned int const&> const array;
    EXPECT_EQ(0, array.GetSize());
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_TRUE(array.begin() == array.end());
}

TEST(CQorArray, AppendsAndTellsTheIndex) {
    CQorArray<unsigned int, unsigned int const&> array;
    EXPECT_EQ(0, array.Add(7));
    EXPECT_EQ(1, array.Add(0xFFFFFFFF));
    EXPECT_EQ(2, array.GetSize());
    EXPECT_FALSE(array.IsEmpty());
    EXPECT_EQ(7u, array.GetAt(0));
    EXPECT_EQ(0xFFFFFFFF, array[1]);
}

TEST(CQorArray, GivesElementsToChange) {
    CQorArray<int> array;
    array.Add(1);
    array.Add(2);
    array[0] = 5;
    for (int& item : array) item *= 10;
    CQorArray<int> const& seen = array;
    EXPECT_EQ(50, seen[0]);
    EXPECT_EQ(20, seen.GetAt(1));
}

TEST(CQorArray, IsCopiedWhole) {
    CQorArray<Wide> array;
    array.Add(L"one");
    CQorArray<Wide> copy = array;
    copy[0] = L"other";
    copy.Add(L"two");
    EXPECT_EQ(1, array.GetSize());
    EXPECT_TRUE(array[0] == L"one");
    array = copy;
    EXPECT_EQ(2, array.GetSize());
    EXPECT_TRUE(array[0] == L"other");
}

TEST(CQorArray, TakesAnElementOfItsOwnWhileItGrows) {
    CQorArray<Wide, Wide const&> array;
    array.Add(L"first");
    for (int i = 0; i < 100; ++i) EXPECT_EQ(i + 1, array.Add(array[0]));
    for (Wide const& item : array) EXPECT_TRUE(item == L"first");
}

TEST(CQorArray, TakesElementsByValueWhereAsked) {
    CQorArray<Wide, wchar_t const*> array;
    array.Add(L"text");
    EXPECT_TRUE(array[0] == L"text");
}

TEST(CQorArray, SharesTheTextOfWhatItTakes) {
    CQorArray<Wide> array;
    Wide const text(L"text");
    array.Add(text);
    EXPECT_EQ(text.c_str(), array[0].c_str());
}

}  // namespace
