// Replaces the global operator new[], and operator new, of a program: counts what is taken and
// given back, and refuses on demand. For one source of a test program that runs one thread.
#ifndef QORUTILS_TESTS_SUPPORT_COUNTED_HEAP_H_
#define QORUTILS_TESTS_SUPPORT_COUNTED_HEAP_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

// A sanitizer's malloc refuses, as the machine's does, instead of ending the program.
extern "C" __attribute__((visibility("default"))) char const* __asan_default_options() {
    return "allocator_may_return_null=1:max_allocation_size_mb=1024";
}
extern "C" __attribute__((visibility("default"))) char const* __tsan_default_options() {
    return "allocator_may_return_null=1:max_allocation_size_mb=1024";
}

namespace {

// What passes through operator new[] and operator delete[].
struct ArrayHeap {
    int blocks = 0;            // that live
    int taken = 0;             // so far
    int damaged = 0;           // given back with another mark than ours, or twice
    std::size_t lastSize = 0;  // asked for, refused or not
    int untilRefusal = -1;     // so many more succeed; -1: all do
} arrayHeap;

struct PlainHeap {
    int taken = 0;
    int given = 0;
} plainHeap;

// No test asks for so much honestly; a request above it is refused as the machine would.
constexpr std::size_t kLargestBlock = std::size_t{1} << 28;
constexpr std::uint64_t kLive = 0x6C6976652D6C6976u;
constexpr std::uint64_t kDead = 0x646561642D646561u;

// In front of each block, as large as the strictest alignment.
union Mark {
    std::uint64_t value;
    std::max_align_t alignment;
};

void* TakeArray(std::size_t size) noexcept {
    arrayHeap.lastSize = size;
    if (size > kLargestBlock || arrayHeap.untilRefusal == 0) return nullptr;
    if (arrayHeap.untilRefusal > 0) --arrayHeap.untilRefusal;
    auto* const mark = static_cast<Mark*>(std::malloc(sizeof(Mark) + size));
    if (mark == nullptr) return nullptr;
    mark->value = kLive;
    ++arrayHeap.blocks;
    ++arrayHeap.taken;
    return mark + 1;
}

// Not inlined, here and below: the compiler would take free() for a mistake of the caller.
__attribute__((noinline)) void GiveArray(void* block) noexcept {
    if (block == nullptr) return;
    Mark* const mark = static_cast<Mark*>(block) - 1;
    if (mark->value != kLive) {
        ++arrayHeap.damaged;
        return;
    }
    mark->value = kDead;
    --arrayHeap.blocks;
    std::free(mark);
}

void* OrThrow(void* block) {
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void* TakePlain(std::size_t size) noexcept {
    ++plainHeap.taken;
    return std::malloc(size == 0 ? 1 : size);
}

__attribute__((noinline)) void GivePlain(void* block) noexcept {
    if (block == nullptr) return;
    ++plainHeap.given;
    std::free(block);
}

}  // namespace

void* operator new[](std::size_t size) {
    return OrThrow(TakeArray(size));
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return TakeArray(size);
}
void operator delete[](void* block) noexcept {
    GiveArray(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    GiveArray(block);
}
void operator delete[](void* block, std::nothrow_t const&) noexcept {
    GiveArray(block);
}
void* operator new(std::size_t size) {
    return OrThrow(TakePlain(size));
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return TakePlain(size);
}
void operator delete(void* block) noexcept {
    GivePlain(block);
}
void operator delete(void* block, std::size_t) noexcept {
    GivePlain(block);
}
void operator delete(void* block, std::nothrow_t const&) noexcept {
    GivePlain(block);
}

#endif  // QORUTILS_TESTS_SUPPORT_COUNTED_HEAP_H_
