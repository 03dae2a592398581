#include "utf32_decoder.h"

#include <endian.h>

#include <cstring>

namespace qorlog {

std::uint32_t UnitAt(char const* bytes) {
    std::uint32_t unit;
    std::memcpy(&unit, bytes, sizeof unit);
    return le32toh(unit);
}

bool IsCharacter(std::uint32_t unit) {
    return unit < 0xD800 || (unit > 0xDFFF && unit <= 0x10FFFF);
}

namespace {

constexpr std::size_t kUnit = 4;
constexpr std::uint32_t kReplacement = 0xFFFD;

// "00012.345 ;", with which every line begins.
constexpr char kTimeForm[] = "ddddd.ddd ;";
constexpr std::size_t kTimeBytes = (sizeof kTimeForm - 1) * kUnit;
constexpr std::size_t kLookAhead = kTimeBytes + kUnit - 1;

char* Encode(std::uint32_t code, char* to) {
    if (code < 0x80) {
        *to++ = static_cast<char>(code);
        return to;
    }
    if (code < 0x800) {
        *to++ = static_cast<char>(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            *to++ = static_cast<char>(0xE0 | code >> 12);
        } else {
            *to++ = static_cast<char>(0xF0 | code >> 18);
            *to++ = static_cast<char>(0x80 | (code >> 12 & 0x3F));
        }
        *to++ = static_cast<char>(0x80 | (code >> 6 & 0x3F));
    }
    *to++ = static_cast<char>(0x80 | (code & 0x3F));
    return to;
}

// Most of a log is ASCII: four characters at a time, as one number. Returns how many bytes of text
// came of four times as many.
std::size_t CopyAscii(char const* from, char const* end, char* to) {
    char* const begin = to;
    for (; static_cast<std::size_t>(end - from) >= 4 * kUnit; from += 4 * kUnit, to += 4) {
        std::uint32_t const a = UnitAt(from);
        std::uint32_t const b = UnitAt(from + kUnit);
        std::uint32_t const c = UnitAt(from + 2 * kUnit);
        std::uint32_t const d = UnitAt(from + 3 * kUnit);
        if ((a | b | c | d) > 0x7F) break;
        std::uint32_t const four = htole32(a | b << 8 | c << 16 | d << 24);
        std::memcpy(to, &four, sizeof four);
    }
    return static_cast<std::size_t>(to - begin);
}

bool BeginsTime(char const* bytes) {
    for (std::size_t i = 0; i + 1 < sizeof kTimeForm; ++i) {
        std::uint32_t const code = UnitAt(bytes + i * kUnit);
        bool const isDigit = code >= '0' && code <= '9';
        if (kTimeForm[i] == 'd' ? !isDigit : code != static_cast<unsigned char>(kTimeForm[i]))
            return false;
    }
    return true;
}

// How far away a line begins out of step; 0: none does.
std::size_t StepsToLine(char const* bytes, std::size_t size) {
    for (std::size_t steps = 1; steps < kUnit && steps + kTimeBytes <= size; ++steps)
        if (BeginsTime(bytes + steps)) return steps;
    return 0;
}

}  // namespace

// The room suffices: no unit becomes more than four bytes, and where five come from one byte, the
// eleven characters of a time follow.
std::size_t Utf32Decoder::Decode(char const* bytes, std::size_t size, bool areLast,
                                 TextBuffer* text) {
    char* const begin = text->Room(size + kUnit);
    char* to = begin;
    char const* from = bytes;
    char const* const end = bytes + size;
    auto const left = [&] { return static_cast<std::size_t>(end - from); };

    while (left() >= kUnit) {
        std::size_t const copied = CopyAscii(from, end, to);
        from += copied * kUnit;
        to += copied;
        if (left() < kUnit) break;
        std::uint32_t const code = UnitAt(from);
        if (IsCharacter(code)) {
            to = Encode(code, to);
            from += kUnit;
            continue;
        }
        if (left() < kLookAhead && !areLast) break;
        ++invalid_;
        to = Encode(kReplacement, to);
        std::size_t const steps = StepsToLine(from, left());
        if (steps != 0) {
            *to++ = '\r';
            *to++ = '\n';
        }
        from += steps != 0 ? steps : kUnit;
    }
    if (areLast && left() > 0) {
        ++invalid_;
        bytesLeftOver_ = left();
        to = Encode(kReplacement, to);
        from = end;
    }
    text->Grow(static_cast<std::size_t>(to - begin));
    return static_cast<std::size_t>(from - bytes);
}

}  // namespace qorlog
