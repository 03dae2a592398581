#include <qorutils/text/qor_memory.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <qorutils/text/qor_string.h>

#include "support/text_literal.h"

using qor_mem::qor_dl_allocator;
using qor_text::CQorStringT;

namespace {

struct Free {
    void operator()(void* block) const { std::free(block); }
};

using Allocator = qor_dl_allocator<int>;
using Traits = std::allocator_traits<Allocator>;

static_assert(std::is_same<decltype(&qor_operator_new), void* (*)(unsigned int)>::value, "");
static_assert(std::is_empty<Allocator>::value, "keeps no state");
static_assert(std::is_same<Traits::value_type, int>::value, "");
static_assert(std::is_same<Traits::pointer, int*>::value, "");
static_assert(std::is_same<Traits::size_type, std::size_t>::value, "");
static_assert(std::is_same<Traits::rebind_alloc<char>, qor_dl_allocator<char>>::value, "");
static_assert(std::is_same<Allocator::rebind<char>::other, qor_dl_allocator<char>>::value, "");
static_assert(std::is_same<qor_vector<unsigned char>,
                           std::vector<unsigned char, qor_dl_allocator<unsigned char>>>::value,
              "");

}  // namespace

TEST(QorOperatorNew, YieldsABlockOfMalloc) {
    for (unsigned int size : {1u, 16u, 100000u}) {
        std::unique_ptr<void, Free> const block(qor_operator_new(size));
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block.get()) % alignof(std::max_align_t));
        std::memset(block.get(), 0xAB, size);
    }
}

TEST(QorDlAllocator, AllInstancesAreEqual) {
    Allocator const ints;
    qor_dl_allocator<char> const chars(ints);
    EXPECT_TRUE(ints == Allocator());
    EXPECT_FALSE(ints != Allocator());
    EXPECT_TRUE(ints == chars);
    EXPECT_FALSE(chars != ints);
}

TEST(QorDlAllocator, OneInstanceGivesBackWhatAnotherTook) {
    Allocator first;
    int* const block = first.allocate(100);
    for (int i = 0; i < 100; ++i) block[i] = i;
    EXPECT_EQ(99, block[99]);
    Allocator second;
    second.deallocate(block, 100);
}

TEST(QorDlAllocator, ImpossibleCountsThrow) {
    Allocator allocator;
    EXPECT_THROW(allocator.allocate(SIZE_MAX), std::bad_alloc);
    EXPECT_THROW(allocator.allocate(SIZE_MAX / sizeof(int) + 2), std::bad_alloc);  // wraps to 4
    EXPECT_THROW(allocator.allocate(allocator.max_size() + 1), std::bad_alloc);
    EXPECT_LE(allocator.max_size(), SIZE_MAX / sizeof(int));
    EXPECT_EQ(allocator.max_size(), Traits::max_size(allocator));
    EXPECT_EQ(4 * allocator.max_size(), qor_dl_allocator<char>().max_size() / 4 * 4);
}

TEST(QorVector, GrowsLikeTheStandardOne) {
    qor_vector<unsigned char> bytes;
    std::vector<unsigned char> standard;
    for (int i = 0; i < 1000; ++i) {
        bytes.push_back(static_cast<unsigned char>(i));
        standard.push_back(static_cast<unsigned char>(i));
        ASSERT_EQ(standard.capacity(), bytes.capacity());
    }
    EXPECT_TRUE(std::equal(standard.begin(), standard.end(), bytes.begin()));
    auto moved = std::move(bytes);
    EXPECT_EQ(1000u, moved.size());
    swap(moved, bytes);
    EXPECT_EQ(1000u, bytes.size());
}

TEST(QorVector, HoldsStrings) {
    qor_vector<CQorStringT<char>> narrow;
    qor_vector<CQorStringT<wchar_t>> wide;
    for (int i = 0; i < 50; ++i) {
        narrow.emplace_back(static_cast<char>('a' + i % 26), i);
        wide.emplace_back(static_cast<wchar_t>('a' + i % 26), i);
    }
    auto const copy = wide;
    EXPECT_EQ(copy[49].c_str(), wide[49].c_str());
    narrow.erase(narrow.begin());
    EXPECT_EQ(Text<char>("bb").characters[0], narrow[0][0]);
    EXPECT_EQ(49u, narrow.size());
    EXPECT_EQ(CQorStringT<wchar_t>(L'x', 49), wide[49]);
}

TEST(QorDlAllocator, ServesOtherContainers) {
    std::list<int, Allocator> list{1, 2, 3};
    list.splice(list.end(), std::list<int, Allocator>{4, 5});
    EXPECT_EQ(5u, list.size());
    EXPECT_EQ(5, list.back());
    using Entry = std::pair<int const, CQorStringT<char>>;
    std::map<int, CQorStringT<char>, std::less<int>, qor_dl_allocator<Entry>> map;
    map[1] = "one";
    EXPECT_STREQ("one", map[1]);
    auto const shared = std::allocate_shared<int>(Allocator(), 7);
    EXPECT_EQ(7, *shared);
}
