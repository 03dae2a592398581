// The input is the block of bytes whose encoding is asked for. Both detections are compared with
// their rules, written down again as plainly as they can be said.

#include <qorutils/text/text_encoding.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "require.h"
#include "support/guard_page.h"

namespace {

constexpr unsigned int kUntouched = 0xABCD;

struct Detection {
    unsigned int result;
    unsigned int markLength;
};

void RequireSame(Detection expected, Detection found) {
    Require(expected.result == found.result);
    Require(expected.markLength == found.markLength);
}

Detection PlainBom(unsigned char const* d, std::size_t n) {
    if (n >= 4 && d[0] == 0xFF && d[1] == 0xFE && d[2] == 0 && d[3] == 0) return {5, 4};
    if (n >= 2 && d[0] == 0xFF && d[1] == 0xFE) return {3, 2};
    if (n >= 3 && d[0] == 0xEF && d[1] == 0xBB && d[2] == 0xBF) return {1, 3};
    if (n >= 4 && d[0] == '+' && d[1] == '/' && d[2] == 'v' &&
        (d[3] == '+' || d[3] == '/' || d[3] == '8' || d[3] == '9'))
        return {7, 4};
    if (n >= 2 && d[0] == 0xFE && d[1] == 0xFF) return {2, 2};
    if (n >= 4 && d[0] == 0 && d[1] == 0 && d[2] == 0xFE && d[3] == 0xFF) return {4, 4};
    if (n >= 3 && d[0] == 0xFB && d[1] == 0xEE && d[2] == 0x28) return {9, 3};
    if (n >= 3 && d[0] == 0x0E && d[1] == 0xFE && d[2] == 0xFF) return {6, 3};
    if (n >= 4 && d[0] == 0xDD && d[1] == 0x73 && d[2] == 0x66 && d[3] == 0x73) return {8, 4};
    return {0, kUntouched};
}

Detection PlainEncoding(unsigned char const* d, std::size_t n) {
    if (n <= 1) return {0, kUntouched};
    Detection const mark = PlainBom(d, n);
    if (mark.result == 3) return {2, mark.markLength};
    if (mark.result != 0) return {0, mark.markLength};
    if (n <= 8) return {1, kUntouched};
    for (std::size_t i = 1; i < 8; i += 2)
        if (d[i] != 0) return {1, kUntouched};
    for (std::size_t i = 0; i < 8; i += 2)
        if (d[i] != 0) return {2, kUntouched};
    return {1, kUntouched};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    using namespace qor::text_utils;
    GuardedArray<unsigned char> data(input, size);
    auto const n = static_cast<unsigned int>(size);

    Detection bom = {0, kUntouched};
    bom.result = detect_bom_header(data.data(), n, &bom.markLength);
    RequireSame(PlainBom(input, size), bom);

    Detection encoding = {0, kUntouched};
    encoding.result = detect_text_encoding(data.data(), n, &encoding.markLength);
    RequireSame(PlainEncoding(input, size), encoding);

    Require(detect_bom_header(data.data(), n, nullptr) == bom.result);
    Require(detect_text_encoding(data.data(), n, nullptr) == encoding.result);
    Require(size == 0 || std::memcmp(input, data.data(), size) == 0);
    return 0;
}
