// Private: wide text formatted as vswprintf does it, but most of it without the stream that
// vswprintf sets up for each text, which takes longer than the text itself.

#ifndef QORUTILS_TEXT_WIDE_FORMAT_H_
#define QORUTILS_TEXT_WIDE_FORMAT_H_

#include <cstdarg>
#include <cstddef>

namespace qor_text {

// What vswprintf would return, put into `to` and into errno. After a failure `to` holds anything.
// limit is at least 1; no argument lies in `to`; args may be used up or not.
int FormatWide(wchar_t* to, std::size_t limit, wchar_t const* format, va_list args);

}  // namespace qor_text

#endif  // QORUTILS_TEXT_WIDE_FORMAT_H_
