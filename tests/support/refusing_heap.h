// Replaces the global operator new of a program: counts the blocks that live, and refuses on
// demand. For one source of a test program that runs one thread.
#ifndef QORUTILS_TESTS_SUPPORT_REFUSING_HEAP_H_
#define QORUTILS_TESTS_SUPPORT_REFUSING_HEAP_H_

#include <cstddef>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "support/descriptors.h"

namespace {

struct RefusingHeap {
    int untilRefusal = -1;  // so many more allocations succeed; -1: all do
    int blocks = 0;         // that live
    int taken = 0;          // so far
} refusingHeap;

void* TakeOrRefuse(std::size_t size) {
    if (refusingHeap.untilRefusal == 0) throw std::bad_alloc();
    if (refusingHeap.untilRefusal > 0) --refusingHeap.untilRefusal;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    ++refusingHeap.blocks;
    ++refusingHeap.taken;
    return block;
}

// Not inlined: the compiler would take free() for a mistake of the caller.
__attribute__((noinline)) void GiveBack(void* block) noexcept {
    if (block == nullptr) return;
    --refusingHeap.blocks;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return TakeOrRefuse(size);
}
void* operator new[](std::size_t size) {
    return TakeOrRefuse(size);
}
void operator delete(void* block) noexcept {
    GiveBack(block);
}
void operator delete(void* block, std::size_t) noexcept {
    GiveBack(block);
}
void operator delete[](void* block) noexcept {
    GiveBack(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    GiveBack(block);
}

namespace {

// Runs action with memory for no allocation, for one, for two, ... until it throws no
// std::bad_alloc; each time, blocks and descriptors must be as many as before, and afterEach() is
// called. Returns how many allocations action needs.
template <typename Action, typename AfterEach>
int RefuseOneAfterTheOther(Action action, AfterEach afterEach) {
    int const descriptors = CountDescriptors();
    for (int allowed = 0;; ++allowed) {
        int const blocks = refusingHeap.blocks;
        bool isRefused = false;
        refusingHeap.untilRefusal = allowed;
        try {
            action();
        } catch (std::bad_alloc const&) {
            isRefused = true;
        }
        refusingHeap.untilRefusal = -1;
        EXPECT_EQ(blocks, refusingHeap.blocks) << "after " << allowed << " allocations";
        EXPECT_EQ(descriptors, CountDescriptors()) << "after " << allowed << " allocations";
        afterEach();
        if (!isRefused) return allowed;
    }
}

template <typename Action>
int RefuseOneAfterTheOther(Action action) {
    return RefuseOneAfterTheOther(action, [] {});
}

}  // namespace

#endif  // QORUTILS_TESTS_SUPPORT_REFUSING_HEAP_H_
