// For test programs that watch what strings take from the global operator new[]: the fixture, and
// all that can be seen of a string.
#ifndef QORUTILS_TESTS_SUPPORT_STRING_ALLOCATION_H_
#define QORUTILS_TESTS_SUPPORT_STRING_ALLOCATION_H_

#include <vector>

#include <gtest/gtest.h>

#include <qorutils/text/qor_string.h>

#include "support/counted_heap.h"

namespace {

// Every test leaves as many blocks as it found, all of them intact.
class AllocationTest : public testing::Test {
  protected:
    void SetUp() override { blocksBefore_ = arrayHeap.blocks; }
    void TearDown() override {
        EXPECT_EQ(blocksBefore_, arrayHeap.blocks);
        EXPECT_EQ(0, arrayHeap.damaged);
    }

  private:
    int blocksBefore_ = 0;
};

template <typename T>
struct Snapshot {
    explicit Snapshot(qor_text::CQorStringT<T> const& s)
        : characters(s.c_str()), header(*s.GetData()), content(s.begin(), s.end() + 1) {}

    bool operator==(Snapshot const& other) const {
        return characters == other.characters && header.nRefs == other.header.nRefs &&
               header.nDataLength == other.header.nDataLength &&
               header.nAllocLength == other.header.nAllocLength && content == other.content;
    }

    T const* characters;
    qor_text::CQorStringData<T> header;
    std::vector<T> content;
};

// Also for a format that the compiler cannot check.
template <typename T, typename... Arguments>
void Format(qor_text::CQorStringT<T>& s, T const* format, Arguments... arguments) {
    using S = qor_text::CQorStringT<T>;
    void (S::*const member)(T const*, ...) = &S::Format;
    (s.*member)(format, arguments...);
}

}  // namespace

#endif  // QORUTILS_TESTS_SUPPORT_STRING_ALLOCATION_H_
