/// @file
/// New strings from formats: with numbered placeholders, and as printf.

#ifndef QORUTILS_TEXT_SAFE_FORMAT_H_
#define QORUTILS_TEXT_SAFE_FORMAT_H_

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace qor_text {

namespace detail {

/// fmt with every {N} replaced by the Nth of the count texts that follow, which must be
/// zero-terminated wchar_t const*; a null one stands for no text.
///
///     qor_safefmt_impl(L"{2} of {1}", 2, L"disk", L"12%")    // "12% of disk"
///
/// Each may be used several times or not at all; one that is not used is not read. "{{" stands for
/// "{"; a "}" that closes nothing stands for itself.
/// On purpose: N is read as wcstol reads it, so "{ +1th}" is "{1}"; a "{" inside a placeholder
/// drops what the placeholder held so far and stands for itself: "{1{" gives "{"; and a placeholder
/// that the format does not close is dropped.
/// A placeholder that names no argument ("{}", "{0}", "{-1}", a number above count) makes the whole
/// result empty. So do a null fmt and a count above 100, with which neither fmt nor the arguments
/// are read. Throws std::bad_alloc.
QORUTILS_API CQorStringT<wchar_t> qor_safefmt_impl(wchar_t const* fmt, unsigned int count, ...);

}  // namespace detail

/// What CQorStringT::Format would make of fmt and the arguments, as a new string. It exists for
/// wide formats only.
/// On purpose, as there: a result of 2048 characters or more, or one that cannot be formatted,
/// comes out empty. So does a null fmt. Throws std::bad_alloc.
template <typename T>
CQorStringT<T> qor_printf(T const* fmt, ...);

/// For wide formats, the only one there is.
template <>
QORUTILS_API CQorStringT<wchar_t> qor_printf<wchar_t>(wchar_t const* fmt, ...);

}  // namespace qor_text

#endif  // QORUTILS_TEXT_SAFE_FORMAT_H_
