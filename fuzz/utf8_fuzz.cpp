// The input: one byte that chooses the direction and how many bytes of a character an earlier text
// ended in, two bytes of limit, then the text: bytes to decode, or wide characters to encode, in
// little-endian groups of four. The text ends at an inaccessible page, as does the room; all is
// compared with the plain conversions.

#include <qorutils/text/utf8.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "require.h"
#include "support/guard_page.h"
#include "support/reference_utf8.h"

namespace {

using reference_utf8::Conversion;
using reference_utf8::IsSame;
using reference_utf8::kFailed;
using reference_utf8::kNullPosition;

constexpr char kByteFill = 'Z';
constexpr wchar_t kWideFill = 0x5A5A5A5A;
constexpr std::size_t kLargestText = 4096;

// One for the whole run, as memory from the system is slow. Behind the end nothing is accessible.
template <typename T>
T* EndOfRoom() {
    constexpr std::size_t kSize = kLargestText * 4 + 16;
    static GuardedArray<T> memory(kSize);
    return memory.data() + kSize;
}

template <typename T>
T* PlaceAtEnd(std::basic_string<T> const& elements) {
    return std::copy_backward(elements.begin(), elements.end(), EndOfRoom<T>());
}

void RequireErrno(bool failed) {
    Require(errno == (failed ? EILSEQ : 0));
    errno = 0;
}

std::size_t Position(std::ptrdiff_t distance, bool isNull) {
    return isNull ? kNullPosition : static_cast<std::size_t>(distance);
}

// ---- Encoding ----

// `elements` are all that may be read.
void RequireEncoded(Conversion<char> const& expected, std::wstring const& elements) {
    std::size_t const n = expected.room.size();
    wchar_t const* const start = PlaceAtEnd(elements);
    char* const room = PlaceAtEnd(std::string(n, kByteFill));
    room[-1] = kByteFill;
    wchar_t const* src = start;
    unsigned int const returned = do_wcsrtombs(room, &src, static_cast<unsigned int>(n), nullptr);
    RequireErrno(returned == kFailed);
    Require(expected == Conversion<char>{returned, Position(src - start, src == nullptr),
                                         std::string(room, n)});
    Require(room[-1] == kByteFill);
}

void EncodeText(std::wstring const& text, std::size_t limit) {
    auto const expected = reference_utf8::ConvertString(text, limit, kByteFill);
    RequireEncoded(expected, text + L'\0');
    if (expected.returned == limit) RequireEncoded(expected, text.substr(0, expected.position));

    // On the heap the address sanitizer watches both ends.
    std::unique_ptr<wchar_t[]> const copy(new wchar_t[text.size() + 1]);
    std::copy_n(text.c_str(), text.size() + 1, copy.get());
    unsigned int const count = do_wcstombs(nullptr, copy.get(), 0);
    Require(count == reference_utf8::CountElements(text));
    RequireErrno(count == kFailed);
}

void EncodeCharacter(wchar_t wc) {
    char bytes[8];
    std::memset(bytes, kByteFill, sizeof bytes);
    std::string const expected = reference_utf8::Encode(static_cast<std::uint32_t>(wc));
    unsigned int const length = do_wcrtomb(bytes, wc, nullptr);
    RequireErrno(expected.empty());
    Require(length == (expected.empty() ? kFailed : expected.size()));
    Require(std::string(bytes, 8) == expected + std::string(8 - expected.size(), kByteFill));
}

// ---- Decoding ----

__mbstate_t StateAfter(std::string const& seen) {
    return seen.empty() ? __mbstate_t() : reference_utf8::StateAfter(seen);
}

// `elements` are all that may be read.
void RequireDecoded(Conversion<wchar_t> const& expected, std::string const& elements,
                    std::string const& seen) {
    std::size_t const n = expected.room.size();
    char const* const start = PlaceAtEnd(elements);
    wchar_t* const room = PlaceAtEnd(std::wstring(n, kWideFill));
    room[-1] = kWideFill;
    char const* src = start;
    __mbstate_t state = StateAfter(seen);
    unsigned int const returned = do_mbsrtowcs(room, &src, static_cast<unsigned int>(n), &state);
    RequireErrno(returned == kFailed);
    Require(expected == Conversion<wchar_t>{returned, Position(src - start, src == nullptr),
                                            std::wstring(room, n)});
    Require(room[-1] == kWideFill);
    Require(IsSame(state, n == 0 ? StateAfter(seen) : __mbstate_t()));
}

void RequireCounted(std::string const& text, std::string const& seen) {
    std::unique_ptr<char[]> const copy(new char[text.size() + 1]);
    std::copy_n(text.c_str(), text.size() + 1, copy.get());
    char const* src = copy.get();
    __mbstate_t state = StateAfter(seen);
    unsigned int const count = do_mbsrtowcs(nullptr, &src, 0, &state);
    Require(count == reference_utf8::CountElements(text, seen));
    RequireErrno(count == kFailed);
    Require(src == copy.get());
    Require(IsSame(state, StateAfter(seen)));
}

void DecodeText(std::string const& text, std::size_t limit, std::string const& seen) {
    auto const expected = reference_utf8::ConvertString(text, limit, kWideFill, seen);
    RequireDecoded(expected, text + '\0', seen);
    if (expected.returned == limit)
        RequireDecoded(expected, text.substr(0, expected.position), seen);
    RequireCounted(text, seen);
}

void DecodeCharacter(std::string const& bytes) {
    auto const expected = reference_utf8::Decode(bytes, 0);
    bool const isValid = !bytes.empty() && expected.length != 0;
    int const length = !isValid ? -1 : expected.value == 0 ? 0 : static_cast<int>(expected.length);
    wchar_t wc = kWideFill;
    int const found = do_mbtowc(&wc, PlaceAtEnd(bytes), static_cast<unsigned int>(bytes.size()));
    RequireErrno(!isValid);
    Require(found == length);
    Require(wc == (isValid ? static_cast<wchar_t>(expected.value) : kWideFill));
}

// ---- The input ----

std::wstring WideText(std::string const& bytes) {
    std::wstring text;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        std::uint32_t value = 0;
        for (std::size_t k = 0; k < 4; ++k)
            value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + k])) << 8 * k;
        text += static_cast<wchar_t>(value);
    }
    return text;
}

// Whether some bytes make these a character.
bool BeginsCharacter(std::string const& bytes) {
    if (bytes.empty()) return false;
    std::size_t const length =
        reference_utf8::AnnouncedLength(static_cast<unsigned char>(bytes[0]));
    if (bytes.size() >= length) return false;
    std::size_t const missing = length - bytes.size();
    for (char const filler : {'\x80', '\xBF'}) {
        std::string const whole = bytes + std::string(missing, filler);
        if (reference_utf8::Decode(whole, 0).length == length) return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size < 3 || size > kLargestText) return 0;
    std::size_t const choice = input[0];
    std::size_t const limit = (input[1] | static_cast<std::size_t>(input[2]) << 8) % kLargestText;
    std::string const text(reinterpret_cast<char const*>(input) + 3, size - 3);
    errno = 0;

    if (choice & 1) {
        std::wstring const wide = WideText(text);
        EncodeText(wide, limit);
        EncodeCharacter(reference_utf8::ElementAt(wide, 0));
        // Characters that are rare among random numbers.
        EncodeText(reference_utf8::ConvertString(text, text.size() + 1, kWideFill).room, limit);
        return 0;
    }
    std::string const seen = text.substr(0, choice >> 1 & 3);
    if (BeginsCharacter(seen))
        DecodeText(text.substr(seen.size()), limit, seen);
    else
        DecodeText(text, limit, "");
    DecodeCharacter(text.substr(0, choice >> 3));
    return 0;
}
