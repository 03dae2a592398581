/// @file
/// Allocation facilities of the library that ported code uses by name.

#ifndef QORUTILS_TEXT_QOR_MEMORY_H_
#define QORUTILS_TEXT_QOR_MEMORY_H_

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

#include "qorutils/export.h"

/// Takes `size` bytes from malloc. The caller gives them back with free().
/// Throws std::bad_alloc when malloc has none. The library itself does not call it.
QORUTILS_API void* qor_operator_new(unsigned int size);

namespace qor_mem {

/// A stateless standard allocator over the plain global operator new and operator delete, so that
/// containers keep the same allocator type wherever they were compiled. All instances are equal.
/// allocate() throws std::bad_alloc, also for a count whose bytes exceed the address space.
template <typename T>
class qor_dl_allocator {
  public:
    /// @name What the standard library asks of an allocator
    /// @{

    /// As in std::allocator.
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using propagate_on_container_move_assignment = std::true_type;
    using is_always_equal = std::true_type;

    /// The same allocator for elements of another type.
    template <typename U>
    struct rebind {
        using other = qor_dl_allocator<U>;  ///< its type
    };

    /// @}
    /// @name Construction
    /// @{

    /// Without state: one made from another is like any.
    qor_dl_allocator() noexcept = default;
    template <typename U>
    qor_dl_allocator(qor_dl_allocator<U> const&) noexcept {}

    /// @}
    /// @name Memory
    /// @{

    /// Room for count elements, which are not constructed. Throws std::bad_alloc.
    T* allocate(std::size_t count) {
        if (count > max_size()) throw std::bad_alloc();
        return static_cast<T*>(::operator new(count * sizeof(T)));
    }

    /// Gives back what allocate() gave; the count is not looked at.
    void deallocate(T* block, std::size_t) noexcept { ::operator delete(block); }

    /// The largest count that allocate() can be asked for.
    std::size_t max_size() const noexcept { return PTRDIFF_MAX / sizeof(T); }

    /// @}
};

/// True: what one allocator gave, any other may take back.
template <typename T, typename U>
bool operator==(qor_dl_allocator<T> const&, qor_dl_allocator<U> const&) noexcept {
    return true;
}

/// False, as all are equal.
template <typename T, typename U>
bool operator!=(qor_dl_allocator<T> const&, qor_dl_allocator<U> const&) noexcept {
    return false;
}

}  // namespace qor_mem

/// The standard vector over the library's allocator.
template <typename T>
using qor_vector = std::vector<T, qor_mem::qor_dl_allocator<T>>;

#endif  // QORUTILS_TEXT_QOR_MEMORY_H_
