#include "qorutils/text/utf8.h"

#include <errno.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

using Byte = unsigned char;
// A character as a number: wchar_t is signed on one machine and unsigned on the other.
using Value = uint32_t;

static_assert(sizeof(wchar_t) == sizeof(Value), "a wide character holds any code point");
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "Encode4 stores the lowest byte first");

// The last values that need one, two, three and four bytes.
constexpr Value kLast1 = 0x7F;
constexpr Value kLast2 = 0x7FF;
constexpr Value kLast3 = 0xFFFF;
constexpr Value kLast4 = 0x10FFFF;
constexpr unsigned int kLongest = 4;

constexpr unsigned int kFailed = static_cast<unsigned int>(-1);

unsigned int IllegalSequence() {
    errno = EILSEQ;
    return kFailed;
}

inline unsigned int AndOneMore(unsigned int count) {
    return count == kFailed ? count : count + 1;
}

inline bool IsSurrogate(Value v) {
    return v - 0xD800 < 0x800;
}

inline bool IsCodePoint(Value v) {
    return v <= kLast4 && !IsSurrogate(v);
}

inline Value ValueOf(wchar_t c) {
    return static_cast<Value>(c);
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

// ---- How texts are walked through ----
//
// Two loops take turns, in either direction. One converts ASCII by chunks: loops of a fixed count,
// which compilers turn into vector instructions. To know how many whole chunks may be read, it
// looks ahead for the terminator. The other one takes any text, character by character, and reads
// nothing that it does not convert.

constexpr std::size_t kChunk = 16;

// Looking ahead ends at multiples of this address, hence within one page of memory: it cannot fault
// where converting would not.
constexpr std::size_t kStretch = 4096;

inline std::size_t BytesInStretch(void const* p) {
    return kStretch - reinterpret_cast<uintptr_t>(p) % kStretch;
}

inline std::size_t WideCharsInStretch(void const* p) {
    return BytesInStretch(p) / sizeof(wchar_t);
}

template <typename T>
inline bool IsAsciiText(T c) {
    return static_cast<Value>(c) - 1 < kLast1;
}

// Whether looking ahead is worth its price.
template <typename T>
inline bool StartsWithAscii(T const* s) {
    return IsAsciiText(s[0]) && IsAsciiText(s[1]) && IsAsciiText(s[2]) && IsAsciiText(s[3]);
}

// The end of n elements at s; n may be as good as no limit, and lead past the address space.
template <typename T>
inline T* EndOf(T* s, std::size_t n) {
    return s + std::min(n, (UINTPTR_MAX - reinterpret_cast<uintptr_t>(s)) / sizeof(T));
}

// How many characters are taken one by one before chunks are tried again: few in a text that is
// ASCII but for single characters, ever more in one that is not.
class MixedLength {
  public:
    void FoundChunk() { next_ = kFirst; }
    std::size_t Next() {
        std::size_t const length = next_;
        next_ = std::min(8 * next_, kMost);
        return length;
    }

  private:
    static constexpr std::size_t kFirst = 4 * kChunk;
    static constexpr std::size_t kMost = 32 * kFirst;

    std::size_t next_ = kFirst;
};

constexpr std::size_t MixedLength::kFirst;
constexpr std::size_t MixedLength::kMost;

// ---- Decoding ----

// The six bits that a trail byte carries; above 0x3F when b is none.
inline Value TrailBits(Byte b) {
    return b ^ 0x80u;
}
inline bool IsTrail(Value bits) {
    return bits < 0x40;
}

// DecodeN decodes the sequence of N bytes that the lead byte at s promises; false when it is
// invalid. No byte is read before the one in front of it proved to belong to the sequence.
inline bool Decode2(Byte const* s, Value& v) {
    if (s[0] < 0xC2) return false;
    Value const second = TrailBits(s[1]);
    if (!IsTrail(second)) return false;
    v = (s[0] & 0x1Fu) << 6 | second;
    return true;
}

inline bool Decode3(Byte const* s, Value& v) {
    Value const second = TrailBits(s[1]);
    v = (s[0] & 0x0Fu) << 12 | second << 6;
    if (!IsTrail(second) || v <= kLast2 || IsSurrogate(v)) return false;
    Value const third = TrailBits(s[2]);
    v |= third;
    return IsTrail(third);
}

inline bool Decode4(Byte const* s, Value& v) {
    if (s[0] > 0xF4) return false;
    Value const second = TrailBits(s[1]);
    v = (s[0] & 0x0Fu) << 18 | second << 12;
    if (!IsTrail(second) || v <= kLast3 || v > kLast4) return false;
    Value const third = TrailBits(s[2]);
    if (!IsTrail(third)) return false;
    Value const fourth = TrailBits(s[3]);
    v |= third << 6 | fourth;
    return IsTrail(fourth);
}

// Decodes one character, ASCII too. Returns its number of bytes; 0 when it is invalid or
// longer than n, which is not 0.
inline unsigned int DecodeCharacter(Byte const* s, unsigned int n, Value& v) {
    v = s[0];
    if (v <= kLast1) return 1;
    if (v < 0xE0) return n >= 2 && Decode2(s, v) ? 2 : 0;
    if (v < 0xF0) return n >= 3 && Decode3(s, v) ? 3 : 0;
    return n >= 4 && Decode4(s, v) ? 4 : 0;
}

// Characters are written, or only counted: the place they go to is a pointer or a number.
inline void Store(wchar_t* to, Value v) {
    *to = static_cast<wchar_t>(v);
}
inline void Store(std::size_t, Value) {}

inline void StoreChunk(wchar_t* to, Byte const* s) {
    Byte chunk[kChunk];
    memcpy(chunk, s, kChunk);
    for (std::size_t i = 0; i != kChunk; ++i) to[i] = chunk[i];
}
inline void StoreChunk(std::size_t, Byte const*) {}

inline uint64_t EightBytes(Byte const* s) {
    uint64_t word;
    memcpy(&word, s, sizeof word);
    return word;
}

inline bool IsAsciiChunk(Byte const* s) {
    return ((EightBytes(s) | EightBytes(s + 8)) & 0x8080808080808080u) == 0;
}

// Where a conversion has got to.
template <typename To>
struct Decoding {
    Byte const* from;
    To to;
};

// Decodes whole chunks of ASCII, if there are any.
template <typename To>
inline Decoding<To> DecodeAsciiChunks(Byte const* s, To to, To end) {
    std::size_t const room = static_cast<std::size_t>(end - to);
    if (room < kChunk || !StartsWithAscii(s)) return {s, to};
    std::size_t chunks = strnlen(Chars(s), std::min(room, BytesInStretch(s))) / kChunk;
    for (; chunks != 0 && IsAsciiChunk(s); --chunks) {
        StoreChunk(to, s);
        s += kChunk;
        to += kChunk;
    }
    return {s, to};
}

// Decodes until `to` gets to `end`, to the terminator, or to an invalid sequence.
// Not inline: compilers lay out its loop better when it is a function of its own.
template <typename To>
[[gnu::noinline]] Decoding<To> DecodeMixed(Byte const* s, To to, To end) {
    Value v;
    while (to != end) {
        Byte const lead = *s;
        if (IsAsciiText(lead)) {
            Store(to, lead);
            s += 1;
        } else if (lead < 0xE0) {
            if (!Decode2(s, v)) break;
            Store(to, v);
            s += 2;
        } else if (lead < 0xF0) {
            if (!Decode3(s, v)) break;
            Store(to, v);
            s += 3;
        } else {
            if (!Decode4(s, v)) break;
            Store(to, v);
            s += 4;
        }
        ++to;
    }
    return {s, to};
}

// Decodes until `to` gets to `end`, to the terminator, or to an invalid sequence.
template <typename To>
inline Decoding<To> DecodeText(Byte const* s, To to, To end) {
    Decoding<To> at = {s, to};
    MixedLength mixed;
    while (at.to != end && *at.from != 0) {
        To const first = at.to;
        at = DecodeAsciiChunks(at.from, at.to, end);
        if (at.to != first) {
            mixed.FoundChunk();
            continue;
        }
        std::size_t const room = static_cast<std::size_t>(end - at.to);
        To const pause = at.to + std::min(room, mixed.Next());
        at = DecodeMixed(at.from, at.to, pause);
        if (at.to != pause) break;
    }
    return at;
}

unsigned int CountCharacters(Byte const* s) {
    Decoding<std::size_t> const at = DecodeText(s, std::size_t{0}, SIZE_MAX);
    return *at.from == 0 ? static_cast<unsigned int>(at.to) : IllegalSequence();
}

unsigned int ConvertCharacters(wchar_t* dst, char const** src, std::size_t n) {
    wchar_t* const end = EndOf(dst, n);
    Decoding<wchar_t*> const at = DecodeText(Bytes(*src), dst, end);
    *src = Chars(at.from);
    if (at.to != end) {
        if (*at.from != 0) return IllegalSequence();
        *at.to = L'\0';
        *src = nullptr;
    }
    return static_cast<unsigned int>(at.to - dst);
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

// Completes the character at s, storing it in v. Returns the byte after it, or null when it is
// invalid.
Byte const* Complete(Partial const& partial, Byte const* s, Value& v) {
    static constexpr Value kLastOfShorter[kLongest + 1] = {0, 0, kLast1, kLast2, kLast3};
    if (partial.missing == 0 || partial.missing >= partial.length) return nullptr;
    uint64_t value = partial.payload;
    for (unsigned int i = 0; i != partial.missing; ++i, ++s) {
        Value const bits = TrailBits(*s);
        if (!IsTrail(bits)) return nullptr;
        value = value << 6 | bits;
    }
    if (value > kLast4) return nullptr;
    v = static_cast<Value>(value);
    return v > kLastOfShorter[partial.length] && IsCodePoint(v) ? s : nullptr;
}

// ---- Encoding ----

// EncodeN writes the N bytes of a character that needs as many, and returns where they end.
inline Byte* Encode2(Value v, Byte* to) {
    to[0] = static_cast<Byte>(0xC0 | v >> 6);
    to[1] = static_cast<Byte>(0x80 | (v & 0x3F));
    return to + 2;
}

inline Byte* Encode3(Value v, Byte* to) {
    to[0] = static_cast<Byte>(0xE0 | v >> 12);
    to[1] = static_cast<Byte>(0x80 | (v >> 6 & 0x3F));
    to[2] = static_cast<Byte>(0x80 | (v & 0x3F));
    return to + 3;
}

inline Byte* Encode4(Value v, Byte* to) {
    // All at once, which is faster; the first byte is the lowest.
    uint32_t const bytes =
        0x808080F0 | v >> 18 | (v >> 4 & 0x3F00) | (v << 10 & 0x3F0000) | (v << 24 & 0x3F000000);
    memcpy(to, &bytes, sizeof bytes);
    return to + sizeof bytes;
}

// The number of bytes that v needs; 0 when it cannot be encoded.
inline unsigned int EncodedLength(Value v) {
    if (v <= kLast1) return 1;
    if (v <= kLast2) return 2;
    if (v <= kLast3) return IsSurrogate(v) ? 0 : 3;
    return v <= kLast4 ? 4 : 0;
}

inline Byte* EncodeCharacter(Value v, Byte* to) {
    if (v > kLast3) return Encode4(v, to);
    if (v > kLast2) return Encode3(v, to);
    if (v > kLast1) return Encode2(v, to);
    *to = static_cast<Byte>(v);
    return to + 1;
}

#ifdef __SSE2__

inline __m128i FourCharacters(wchar_t const* s) {
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(s));
}

// Saturated to signed 16 bits, what is not ASCII stays so.
inline __m128i EightCharacters(wchar_t const* s) {
    return _mm_packs_epi32(FourCharacters(s), FourCharacters(s + 4));
}

inline bool IsAsciiChunk(wchar_t const* s) {
    __m128i const all = _mm_or_si128(EightCharacters(s), EightCharacters(s + 8));
    __m128i const beyond = _mm_andnot_si128(_mm_set1_epi16(kLast1), all);
    return _mm_movemask_epi8(_mm_cmpeq_epi8(beyond, _mm_setzero_si128())) == 0xFFFF;
}

inline void StoreChunk(Byte* to, wchar_t const* s) {
    __m128i const bytes = _mm_packus_epi16(EightCharacters(s), EightCharacters(s + 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
}

#else

inline bool IsAsciiChunk(wchar_t const* s) {
    Value all = 0;
    for (std::size_t i = 0; i != kChunk; ++i) all |= ValueOf(s[i]);
    return all <= kLast1;
}

inline void StoreChunk(Byte* to, wchar_t const* s) {
    for (std::size_t i = 0; i != kChunk; ++i) to[i] = static_cast<Byte>(s[i]);
}

#endif

struct Encoding {
    wchar_t const* from;
    Byte* to;
};

// Encodes whole chunks of ASCII, if there are any.
inline Encoding EncodeAsciiChunks(wchar_t const* s, Byte* to, Byte* end) {
    std::size_t const room = static_cast<std::size_t>(end - to);
    if (room < kChunk || !StartsWithAscii(s)) return {s, to};
    std::size_t chunks = wcsnlen(s, std::min(room, WideCharsInStretch(s))) / kChunk;
    for (; chunks != 0 && IsAsciiChunk(s); --chunks) {
        StoreChunk(to, s);
        s += kChunk;
        to += kChunk;
    }
    return {s, to};
}

// Characters of three bytes that come in long runs: all but the few above the surrogates.
inline bool IsBelowSurrogates3(Value v) {
    return v - (kLast2 + 1) < 0xD800 - (kLast2 + 1);
}

// Encodes until `to` passes `last`, to the terminator, or to a character that cannot be encoded.
// Not inline: see DecodeMixed.
[[gnu::noinline]] Encoding EncodeMixed(wchar_t const* s, Byte* to, Byte* last) {
    while (to <= last) {
        Value const v = ValueOf(*s);
        if (v <= kLast1) {
            if (v == 0) break;
            *to++ = static_cast<Byte>(v);
        } else if (v <= kLast2) {
            to = Encode2(v, to);
        } else if (v <= kLast3) {
            if (IsSurrogate(v)) break;
            to = Encode3(v, to);
            for (; IsBelowSurrogates3(ValueOf(s[1])) && to <= last; ++s)
                to = Encode3(ValueOf(s[1]), to);
        } else {
            if (v > kLast4) break;
            to = Encode4(v, to);
        }
        ++s;
    }
    return {s, to};
}

// Encodes until there is no room for the longest sequence, to the terminator, or to a character
// that cannot be encoded.
inline Encoding EncodeText(wchar_t const* s, Byte* to, Byte* end) {
    Encoding at = {s, to};
    MixedLength mixed;
    while (static_cast<std::size_t>(end - at.to) >= kLongest && *at.from != 0) {
        Byte* const first = at.to;
        at = EncodeAsciiChunks(at.from, at.to, end);
        std::size_t const room = static_cast<std::size_t>(end - at.to);
        if (at.to != first) {
            mixed.FoundChunk();
            continue;
        }
        Byte* const last = at.to + std::min(room - kLongest, mixed.Next());
        at = EncodeMixed(at.from, at.to, last);
        if (at.to <= last) break;
    }
    return at;
}

// Encodes while there is room, until the terminator or a character that cannot be encoded.
inline Encoding EncodeWhatFits(Encoding at, Byte* end) {
    while (at.to != end && *at.from != 0) {
        Value const v = ValueOf(*at.from);
        unsigned int const length = EncodedLength(v);
        if (length == 0 || length > static_cast<std::size_t>(end - at.to)) break;
        at.to = EncodeCharacter(v, at.to);
        ++at.from;
    }
    return at;
}

unsigned int ConvertBytes(char* dst, wchar_t const** src, std::size_t n) {
    Byte* const end = EndOf(Bytes(dst), n);
    Encoding const at = EncodeWhatFits(EncodeText(*src, Bytes(dst), end), end);
    *src = at.from;
    if (at.to != end) {
        if (EncodedLength(ValueOf(*at.from)) == 0) return IllegalSequence();
        if (*at.from == 0) {
            *at.to = 0;
            *src = nullptr;
        }
    }
    return static_cast<unsigned int>(at.to - Bytes(dst));
}

constexpr std::size_t kCountChunk = 2 * kChunk;

// Adds the bytes that a chunk of characters needs to count; false when one cannot be encoded.
// Signed numbers, since those are what vector instructions compare.
inline bool CountChunk(wchar_t const* s, std::size_t& count) {
    int32_t further = 0;
    int32_t bad = 0;
    for (std::size_t i = 0; i != kCountChunk; ++i) {
        int32_t const v = static_cast<int32_t>(s[i]);
        further += (v > int32_t{kLast1}) + (v > int32_t{kLast2}) + (v > int32_t{kLast3});
        bad += (v < 0) + (v > int32_t{kLast4}) + ((v & ~0x7FF) == 0xD800);
    }
    count += kCountChunk + static_cast<std::size_t>(further);
    return bad == 0;
}

unsigned int CountBytes(wchar_t const* s) {
    std::size_t count = 0;
    while (*s != 0) {
        wchar_t const* const end = s + wcsnlen(s, WideCharsInStretch(s));
        for (; end - s >= std::ptrdiff_t{kCountChunk}; s += kCountChunk)
            if (!CountChunk(s, count)) return IllegalSequence();
        for (; s != end; ++s) {
            unsigned int const length = EncodedLength(ValueOf(*s));
            if (length == 0) return IllegalSequence();
            count += length;
        }
    }
    return static_cast<unsigned int>(count);
}

}  // namespace

unsigned int do_wcrtomb(char* s, wchar_t wc, __mbstate_t*) {
    if (s == nullptr) return 1;
    unsigned int const length = EncodedLength(ValueOf(wc));
    if (length == 0) return IllegalSequence();
    EncodeCharacter(ValueOf(wc), Bytes(s));
    return length;
}

unsigned int do_wcsrtombs(char* dst, wchar_t const** src, unsigned int n, __mbstate_t*) {
    return dst == nullptr ? CountBytes(*src) : ConvertBytes(dst, src, n);
}

unsigned int do_wcstombs(char* dst, wchar_t const* src, unsigned int n) {
    return dst == nullptr ? CountBytes(src) : ConvertBytes(dst, &src, n);
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
    return dst == nullptr ? CountCharacters(Bytes(src)) : ConvertCharacters(dst, &src, n);
}
