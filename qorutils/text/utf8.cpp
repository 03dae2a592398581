#include "qorutils/text/utf8.h"

#include <errno.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <cstddef>

namespace {

using Byte = unsigned char;
// A character as a number: wchar_t is signed on one machine and unsigned on the other.
using Value = uint32_t;

static_assert(sizeof(wchar_t) == sizeof(Value), "a wide character holds any code point");

// The last values that need one, two, three and four bytes.
constexpr Value kLast1 = 0x7F;
constexpr Value kLast2 = 0x7FF;
constexpr Value kLast3 = 0xFFFF;
constexpr Value kLast4 = 0x10FFFF;
constexpr std::size_t kLongest = 4;

constexpr unsigned int kFailed = static_cast<unsigned int>(-1);

unsigned int IllegalSequence() {
    errno = EILSEQ;
    return kFailed;
}

inline unsigned int AndOneMore(unsigned int count) {
    return count == kFailed ? count : count + 1;
}

inline Byte* Bytes(char* s) {
    return reinterpret_cast<Byte*>(s);
}
inline Byte const* Bytes(char const* s) {
    return reinterpret_cast<Byte const*>(s);
}
inline char const* Chars(Byte const* s) {
    return reinterpret_cast<char const*>(s);
}

inline bool IsSurrogate(Value v) {
    return v - 0xD800 < 0x800;
}

// Long texts are looked at in stretches that end at multiples of this address. A stretch lies
// within one page of memory, so that looking ahead cannot fault where converting does not.
constexpr std::size_t kStretch = 4096;

inline std::size_t BytesInStretch(void const* p) {
    return kStretch - reinterpret_cast<uintptr_t>(p) % kStretch;
}

inline std::size_t WideCharsInStretch(void const* p) {
    return BytesInStretch(p) / sizeof(wchar_t);
}

// ASCII is converted in chunks of so many characters. Loops over a chunk have a fixed count and
// work on local copies, which lets compilers turn them into vector instructions.
constexpr std::size_t kChunk = 16;

// ---- Decoding ----

// The six bits that a trail byte carries; above 0x3F when b is none.
inline Value TrailBits(Byte b) {
    return b ^ 0x80u;
}
inline bool IsTrail(Value bits) {
    return bits < 0x40;
}

// Each of these decodes the sequence of so many bytes that the lead byte at s promises; false when
// it is invalid. No byte is read before the one in front of it proved to belong to the sequence.
inline bool Decode2(Byte const* s, Value& v) {
    Value const second = TrailBits(s[1]);
    if (s[0] < 0xC2 || !IsTrail(second)) return false;
    v = (s[0] & 0x1Fu) << 6 | second;
    return true;
}

inline bool Decode3(Byte const* s, Value& v) {
    Value const second = TrailBits(s[1]);
    if (!IsTrail(second)) return false;
    Value const third = TrailBits(s[2]);
    if (!IsTrail(third)) return false;
    v = (s[0] & 0x0Fu) << 12 | second << 6 | third;
    return v > kLast2 && !IsSurrogate(v);
}

inline bool Decode4(Byte const* s, Value& v) {
    Value const second = TrailBits(s[1]);
    if (!IsTrail(second)) return false;
    Value const third = TrailBits(s[2]);
    if (!IsTrail(third)) return false;
    Value const fourth = TrailBits(s[3]);
    if (!IsTrail(fourth)) return false;
    v = (s[0] & 0x0Fu) << 18 | second << 12 | third << 6 | fourth;
    return v > kLast3 && v <= kLast4;
}

// The number of bytes of the sequence at s, whose first byte may be ASCII too; 0 when it is invalid
// or longer than n, which is not 0.
inline unsigned int DecodeCharacter(Byte const* s, unsigned int n, Value& v) {
    v = s[0];
    if (v <= kLast1) return 1;
    if (v < 0xE0) return n >= 2 && Decode2(s, v) ? 2 : 0;
    if (v < 0xF0) return n >= 3 && Decode3(s, v) ? 3 : 0;
    return n >= 4 && Decode4(s, v) ? 4 : 0;
}

inline uint64_t EightBytes(Byte const* s) {
    uint64_t word;
    memcpy(&word, s, sizeof word);
    return word;
}

inline bool IsAsciiChunk(Byte const* s) {
    return ((EightBytes(s) | EightBytes(s + 8)) & 0x8080808080808080u) == 0;
}

struct WideWriter {
    wchar_t* at;

    void Put(Value v) { *at++ = static_cast<wchar_t>(v); }
    void PutAsciiChunk(Byte const* s) {
        Byte chunk[kChunk];
        memcpy(chunk, s, kChunk);
        for (std::size_t i = 0; i != kChunk; ++i) at[i] = chunk[i];
        at += kChunk;
    }
};

struct WideCounter {
    std::size_t count;

    void Put(Value) { ++count; }
    void PutAsciiChunk(Byte const*) { count += kChunk; }
};

// Decodes all characters that start in [s, end), which holds no zero. Returns where it stopped:
// before `end` when there is an invalid sequence.
template <typename Out>
inline Byte const* DecodeStretch(Byte const* s, Byte const* end, Out& result) {
    Out out = result;
    Value v;
    while (s < end) {
        for (; end - s >= std::ptrdiff_t{kChunk} && IsAsciiChunk(s); s += kChunk)
            out.PutAsciiChunk(s);
        for (;;) {
            Byte const* const stop = s + std::min<std::ptrdiff_t>(end - s, kChunk);
            for (; s < stop && *s < 0x80; ++s) out.Put(*s);
            if (s >= stop) break;
            do {
                if (*s < 0xE0) {
                    if (!Decode2(s, v)) return s;
                    out.Put(v);
                    s += 2;
                } else if (*s < 0xF0) {
                    if (!Decode3(s, v)) return s;
                    out.Put(v);
                    s += 3;
                } else {
                    if (!Decode4(s, v)) return s;
                    out.Put(v);
                    s += 4;
                }
            } while (s < end && *s >= 0x80);
        }
    }
    result = out;
    return s;
}

unsigned int CountCharacters(Byte const* s) {
    WideCounter out = {0};
    while (*s != 0) {
        Byte const* const end = s + strnlen(Chars(s), BytesInStretch(s));
        s = DecodeStretch(s, end, out);
        if (s < end) return IllegalSequence();
    }
    return static_cast<unsigned int>(out.count);
}

unsigned int ConvertCharacters(wchar_t* dst, char const** src, std::size_t n) {
    Byte const* s = Bytes(*src);
    WideWriter out = {dst};
    for (std::size_t room = n; room != 0; room = n - static_cast<std::size_t>(out.at - dst)) {
        if (*s == 0) {
            *out.at = L'\0';
            *src = nullptr;
            break;
        }
        // A character takes a byte at least, so there is room for all that these bytes hold.
        Byte const* const end = s + strnlen(Chars(s), std::min(room, BytesInStretch(s)));
        s = DecodeStretch(s, end, out);
        *src = Chars(s);
        if (s < end) return IllegalSequence();
    }
    return static_cast<unsigned int>(out.at - dst);
}

// ---- A character that began in an earlier string ----

// What __mbstate_t holds of it; the header describes the layout.
struct Partial {
    unsigned int missing;
    unsigned int length;
    Value payload;
};

inline bool HasPartial(__mbstate_t const* st) {
    return st != nullptr && st->__count != 0;
}

inline Partial PartialIn(__mbstate_t const& st) {
    Value const marks = static_cast<Value>(st.__count);
    return {marks >> 30, (marks >> 28 & 3) + 1, marks & 0x1FFFFF};
}

// Completes the character at s, storing it in v. Returns the byte after it, or null if it is
// invalid.
Byte const* Complete(Partial const& partial, Byte const* s, Value& v) {
    static constexpr Value kLastOfShorter[kLongest + 1] = {0, 0, kLast1, kLast2, kLast3};
    if (partial.missing == 0 || partial.missing >= partial.length) return nullptr;
    v = partial.payload;
    for (unsigned int i = 0; i != partial.missing; ++i, ++s) {
        Value const bits = TrailBits(*s);
        if (!IsTrail(bits)) return nullptr;
        v = v << 6 | bits;
    }
    bool const shortest = v > kLastOfShorter[partial.length];
    return shortest && v <= kLast4 && !IsSurrogate(v) ? s : nullptr;
}

// ---- Encoding ----

inline bool IsAscii(wchar_t c) {
    return static_cast<Value>(c) <= kLast1;
}

inline bool IsTextAscii(wchar_t c) {
    return static_cast<Value>(c) - 1 < kLast1;
}
inline bool IsAsciiChunk(wchar_t const* s) {
    Value all = 0;
    for (std::size_t i = 0; i != kChunk; ++i) all |= static_cast<Value>(s[i]);
    return all <= kLast1;
}

struct ByteWriter {
    Byte* at;
    Byte* end;

    std::size_t Room() const { return static_cast<std::size_t>(end - at); }
    void Put(Value byte) { *at++ = static_cast<Byte>(byte); }
    void PutAsciiChunk(wchar_t const* s) {
        Byte chunk[kChunk];
        for (std::size_t i = 0; i != kChunk; ++i) chunk[i] = static_cast<Byte>(s[i]);
        memcpy(at, chunk, kChunk);
        at += kChunk;
    }
};

struct ByteCounter {
    std::size_t count;

    static constexpr std::size_t Room() { return SIZE_MAX; }
    void Put(Value) { ++count; }
    void PutAsciiChunk(wchar_t const*) { count += kChunk; }
};

// Encodes v, which is not ASCII; false when it cannot be encoded.
template <typename Out>
inline bool EncodeSequence(Value v, Out& out) {
    if (v <= kLast2) {
        out.Put(0xC0 | v >> 6);
        out.Put(0x80 | (v & 0x3F));
        return true;
    }
    if (v <= kLast3) {
        if (IsSurrogate(v)) return false;
        out.Put(0xE0 | v >> 12);
        out.Put(0x80 | (v >> 6 & 0x3F));
        out.Put(0x80 | (v & 0x3F));
        return true;
    }
    if (v > kLast4) return false;
    out.Put(0xF0 | v >> 18);
    out.Put(0x80 | (v >> 12 & 0x3F));
    out.Put(0x80 | (v >> 6 & 0x3F));
    out.Put(0x80 | (v & 0x3F));
    return true;
}

// Encodes whole chunks of ASCII.
template <typename Out>
inline wchar_t const* EncodeAsciiChunks(wchar_t const* s, Out& out) {
    wchar_t const* const end = s + wcsnlen(s, std::min(out.Room(), WideCharsInStretch(s)));
    for (; end - s >= std::ptrdiff_t{kChunk} && IsAsciiChunk(s); s += kChunk) out.PutAsciiChunk(s);
    return s;
}

// Encodes the characters at s, as long as there is room for the longest sequence. Returns where it
// stopped: at zero, or at a character that cannot be encoded, or there is less room than kLongest
template <typename Out>
inline wchar_t const* EncodeText(wchar_t const* s, Out& result) {
    Out out = result;
    while (out.Room() >= kLongest) {
        if (IsTextAscii(*s)) s = EncodeAsciiChunks(s, out);
        for (;;) {
            wchar_t const* const stop = s + std::min(out.Room(), kChunk);
            for (; s < stop && IsTextAscii(*s); ++s) out.Put(static_cast<Value>(*s));
            if (s == stop) break;
            while (!IsAscii(*s)) {
                if (out.Room() < kLongest || !EncodeSequence(static_cast<Value>(*s), out)) {
                    result = out;
                    return s;
                }
                ++s;
            }
            if (*s == 0) {
                result = out;
                return s;
            }
        }
    }
    result = out;
    return s;
}

// Encodes v at s, writing only what it returns: the number of bytes, 0 when it cannot be encoded.
inline unsigned int EncodeCharacter(Value v, Byte* s) {
    ByteWriter out = {s, s + kLongest};
    if (v <= kLast1)
        out.Put(v);
    else if (!EncodeSequence(v, out))
        return 0;
    return static_cast<unsigned int>(out.at - s);
}

unsigned int CountBytes(wchar_t const* s) {
    ByteCounter out = {0};
    s = EncodeText(s, out);
    return *s == 0 ? static_cast<unsigned int>(out.count) : IllegalSequence();
}

// The end of n bytes at s; of the address space when n, as good as no limit, passes it.
inline Byte* EndOf(Byte* s, std::size_t n) {
    return s + std::min(n, UINTPTR_MAX - reinterpret_cast<uintptr_t>(s));
}

}  // namespace

unsigned int do_wcrtomb(char* s, wchar_t wc, __mbstate_t*) {
    if (s == nullptr) return 1;
    unsigned int const length = EncodeCharacter(static_cast<Value>(wc), Bytes(s));
    return length != 0 ? length : IllegalSequence();
}

unsigned int do_wcsrtombs(char* dst, wchar_t const** src, unsigned int n, __mbstate_t*) {
    wchar_t const* s = *src;
    if (dst == nullptr) return CountBytes(s);
    ByteWriter out = {Bytes(dst), EndOf(Bytes(dst), n)};
    s = EncodeText(s, out);
    while (out.Room() != 0) {
        *src = s;
        if (*s == 0) {
            *out.at = 0;
            *src = nullptr;
            break;
        }
        Byte scratch[kLongest];
        unsigned int const length = EncodeCharacter(static_cast<Value>(*s), scratch);
        if (length == 0) return IllegalSequence();
        if (length > out.Room()) break;
        memcpy(out.at, scratch, length);
        out.at += length;
        *src = ++s;
    }
    return static_cast<unsigned int>(out.at - Bytes(dst));
}

unsigned int do_wcstombs(char* dst, wchar_t const* src, unsigned int n) {
    return do_wcsrtombs(dst, &src, n, nullptr);
}

int do_mbtowc(wchar_t* pwc, char const* s, unsigned int n) {
    if (s == nullptr) return 0;
    Value v = 0;
    unsigned int const length = n == 0 ? 0 : DecodeCharacter(Bytes(s), n, v);
    if (length == 0) return static_cast<int>(IllegalSequence());
    if (pwc != nullptr) *pwc = static_cast<wchar_t>(v);
    return v == 0 ? 0 : static_cast<int>(length);
}

unsigned int do_mbsrtowcs(wchar_t* dst, char const** src, unsigned int n, __mbstate_t* st) {
    if (!HasPartial(st))
        return dst == nullptr ? CountCharacters(Bytes(*src)) : ConvertCharacters(dst, src, n);
    if (dst != nullptr && n == 0) return 0;
    Value v;
    Byte const* const rest = Complete(PartialIn(*st), Bytes(*src), v);
    if (dst != nullptr) *st = __mbstate_t();
    if (rest == nullptr) return IllegalSequence();
    if (dst == nullptr) return AndOneMore(CountCharacters(rest));
    *dst = static_cast<wchar_t>(v);
    *src = Chars(rest);
    return AndOneMore(ConvertCharacters(dst + 1, src, n - 1));
}

unsigned int do_mbstowcs(wchar_t* dst, char const* src, unsigned int n) {
    return do_mbsrtowcs(dst, &src, n, nullptr);
}
