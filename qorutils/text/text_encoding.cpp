#include "qorutils/text/text_encoding.h"

#include <algorithm>
#include <cstdint>

namespace qor {
namespace text_utils {

namespace {

using Byte = unsigned char;

constexpr std::uint32_t kUtf16LE = 3;
constexpr std::uint32_t kUtf7 = 7;

struct Mark {
    std::uint32_t kind;
    std::uint32_t length;
    Byte bytes[4];
};

// In the order in which they are tried: a mark stands before the one that it begins with.
constexpr Mark kMarks[] = {
    {5, 4, {0xFF, 0xFE, 0x00, 0x00}},
    {kUtf16LE, 2, {0xFF, 0xFE}},
    {1, 3, {0xEF, 0xBB, 0xBF}},
    {kUtf7, 4, {0x2B, 0x2F, 0x76}},  // the last byte is one of several
    {2, 2, {0xFE, 0xFF}},
    {4, 4, {0x00, 0x00, 0xFE, 0xFF}},
    {9, 3, {0xFB, 0xEE, 0x28}},
    {6, 3, {0x0E, 0xFE, 0xFF}},
    {8, 4, {0xDD, 0x73, 0x66, 0x73}},
};

bool EndsUtf7Mark(Byte b) {
    return b == 0x2B || b == 0x2F || b == 0x38 || b == 0x39;
}

bool BeginsWith(Byte const* data, std::uint32_t size, Mark const& mark) {
    if (size < mark.length) return false;
    if (mark.kind == kUtf7)
        return std::equal(mark.bytes, mark.bytes + 3, data) && EndsUtf7Mark(data[3]);
    return std::equal(mark.bytes, mark.bytes + mark.length, data);
}

// Four characters of UTF-16LE below 256 that are not all zero.
bool LooksLikeUtf16LE(Byte const* data) {
    bool const highBytesAreZero = (data[1] | data[3] | data[5] | data[7]) == 0;
    bool const lowBytesAreZero = (data[0] | data[2] | data[4] | data[6]) == 0;
    return highBytesAreZero && !lowBytesAreZero;
}

}  // namespace

unsigned int detect_bom_header(unsigned char* data, unsigned int size, unsigned int* markLength) {
    if (data == nullptr) return 0;
    for (Mark const& mark : kMarks) {
        if (!BeginsWith(data, size, mark)) continue;
        if (markLength != nullptr) *markLength = mark.length;
        return mark.kind;
    }
    return 0;
}

unsigned int detect_text_encoding(void* data, unsigned int size, unsigned int* markLength) {
    constexpr unsigned int kLongestUnguessed = 8;
    if (data == nullptr || size <= 1) return eTextEncodingUnknown;

    auto const bytes = static_cast<Byte*>(data);
    unsigned int const kind = detect_bom_header(bytes, size, markLength);
    if (kind != 0) return kind == kUtf16LE ? eTextEncodingUtf16LE : eTextEncodingUnknown;
    if (size <= kLongestUnguessed) return eTextEncodingAnsi;
    return LooksLikeUtf16LE(bytes) ? eTextEncodingUtf16LE : eTextEncodingAnsi;
}

}  // namespace text_utils
}  // namespace qor
