/// @file
/// What kind of text a block of bytes holds: byte-order marks, and a guess where there is none.

#ifndef QORUTILS_TEXT_TEXT_ENCODING_H_
#define QORUTILS_TEXT_TEXT_ENCODING_H_

#include "qorutils/export.h"

namespace qor {
namespace text_utils {

/// The encodings that files are read and written in.
enum EQorTextEncoding : unsigned int {
    eTextEncodingUnknown = 0,  ///< no data, or marked as an encoding that the library does not read
    eTextEncodingAnsi = 1,     ///< 8-bit text in the encoding of the process locale
    eTextEncodingUtf16LE = 2,  ///< UTF-16, low byte first
};

/// The kind of byte-order mark that data begins with, 0 when there is none:
///
///     kind  mark                               encoding
///        1  EF BB BF                           UTF-8
///        2  FE FF                              UTF-16, high byte first
///        3  FF FE                              UTF-16, low byte first
///        4  00 00 FE FF                        UTF-32, high byte first
///        5  FF FE 00 00                        UTF-32, low byte first
///        6  0E FE FF                           SCSU
///        7  2B 2F 76, then 2B, 2F, 38 or 39    UTF-7
///        8  DD 73 66 73                        UTF-EBCDIC
///        9  FB EE 28                           BOCU-1
///
/// Stores the mark's length in bytes (2 to 4; UTF-7's is 4) at markLength, which may be null;
/// leaves it alone when there is no mark. Reads at most the first 4 of the size bytes at data; null
/// data has no mark. A mark that is cut off by the end of the data is none.
/// On purpose: kind 5 is tried before kind 3, so UTF-16 text that is marked and begins with a zero
/// character counts as UTF-32.
QORUTILS_API unsigned int detect_bom_header(unsigned char* data, unsigned int size,
                                            unsigned int* markLength);

/// An EQorTextEncoding for the size bytes at data. A mark decides; markLength then receives its
/// length, also when the encoding is unknown. Without one, data of 9 bytes or more is UTF-16 when
/// each of its first four characters is below 256 and one of them is not zero; all else is 8-bit
/// text. Reads at most the first 8 bytes. Null data and less than 2 bytes are unknown.
/// On purpose: UTF-8 with its mark is unknown, while UTF-8 without a mark passes as 8-bit text; and
/// 8 bytes are too few to be taken for UTF-16.
/// Unlike Windows' IsTextUnicode this is no statistical test: one character of another script among
/// the first four makes it 8-bit text.
QORUTILS_API unsigned int detect_text_encoding(void* data, unsigned int size,
                                               unsigned int* markLength);

}  // namespace text_utils
}  // namespace qor

#endif  // QORUTILS_TEXT_TEXT_ENCODING_H_
