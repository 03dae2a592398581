// What the examples share: UTF-8 out, whatever the locale.
#ifndef QORUTILS_EXAMPLES_CONSOLE_H_
#define QORUTILS_EXAMPLES_CONSOLE_H_

#include <qorutils/text/qor_string.h>
#include <qorutils/text/utf8.h>

// A string made from one of the other type is converted as the locale says; this one is UTF-8 in
// every locale, straight into the buffer of the result.
inline qor_text::CQorStringT<char> ToUtf8(qor_text::CQorStringT<wchar_t> const& text) {
    unsigned int const length = do_wcstombs(nullptr, text, 0);
    qor_text::CQorStringT<char> utf8;
    do_wcstombs(utf8.GetBuffer(length), text, length);
    utf8.ReleaseBuffer(length);
    return utf8;
}

#endif  // QORUTILS_EXAMPLES_CONSOLE_H_
