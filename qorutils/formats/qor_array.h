/// @file
/// CQorArray: the growable array in the signatures of qor_formats.

#ifndef QORUTILS_FORMATS_QOR_ARRAY_H_
#define QORUTILS_FORMATS_QOR_ARRAY_H_

#include <cstddef>

#include "qorutils/text/qor_memory.h"

namespace qor_templ {

/// The part of MFC's CArray that the library needs, over a standard vector: elements of T, passed
/// in as ARG. Copies are independent of each other; appending grows as the vector does and throws
/// std::bad_alloc. Indices are trusted and count from 0.
///
///     qor_templ::CQorArray<unsigned int> ids;
///     ids.Add(7);
///     for (unsigned int id : ids) Show(id);
template <typename T, typename ARG = T const&>
class CQorArray {
  public:
    /// @name Types of the standard containers
    /// @{

    /// As in std::vector.
    using value_type = T;
    using iterator = typename qor_vector<T>::iterator;
    using const_iterator = typename qor_vector<T>::const_iterator;

    /// @}

    /// The number of elements.
    int GetSize() const noexcept { return static_cast<int>(items_.size()); }
    /// Whether there are none.
    bool IsEmpty() const noexcept { return items_.empty(); }

    /// @name Elements
    /// @{

    /// The element at index i, which must exist.
    T const& GetAt(int i) const { return items_[static_cast<std::size_t>(i)]; }
    T const& operator[](int i) const { return items_[static_cast<std::size_t>(i)]; }
    T& operator[](int i) { return items_[static_cast<std::size_t>(i)]; }

    /// @}

    /// Appends item, which may be an element of this array, and returns its index.
    int Add(ARG item) {
        items_.push_back(item);
        return GetSize() - 1;
    }

    /// @name Iteration
    /// @{

    /// As in std::vector; appending makes iterators invalid.
    iterator begin() noexcept { return items_.begin(); }
    iterator end() noexcept { return items_.end(); }
    const_iterator begin() const noexcept { return items_.begin(); }
    const_iterator end() const noexcept { return items_.end(); }

    /// @}

  private:
    qor_vector<T> items_;
};

}  // namespace qor_templ

#endif  // QORUTILS_FORMATS_QOR_ARRAY_H_
