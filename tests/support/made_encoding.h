// A multibyte encoding made for the test: machines seldom have a locale with one, besides UTF-8.
//
// A program that links made_encoding.cpp stands before the C library: what the library under test
// decodes with mbsrtowcs and encodes with wcsrtombs goes through there first.
#ifndef QORUTILS_TESTS_SUPPORT_MADE_ENCODING_H_
#define QORUTILS_TESTS_SUPPORT_MADE_ENCODING_H_

// While it lives, text is encoded so, whatever the locale:
//
//     bytes          characters
//     81, then 30..  U+4E00 + the second byte, which may be '[', '=' or ']'
//     A0             U+0BB8 U+0BCD, two at once, as a byte of Tamil may be
//     'e', then B3   U+00E9, as Vietnamese joins letters and accents
//     5C             U+00A5 in place of the backslash, unless ASCII is kept
//     any other      the character of that code
//
// One at a time; not for tests that run threads meanwhile.
class MadeEncoding {
  public:
    explicit MadeEncoding(bool keepsAscii);
    ~MadeEncoding();
    MadeEncoding(MadeEncoding const&) = delete;
    MadeEncoding& operator=(MadeEncoding const&) = delete;
};

#endif  // QORUTILS_TESTS_SUPPORT_MADE_ENCODING_H_
