// Private: searching texts. All are linear in the text, also for patterns made to be slow.

#ifndef QORUTILS_TEXT_TEXT_SEARCH_H_
#define QORUTILS_TEXT_TEXT_SEARCH_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace qor_text {

// The first occurrence in [text, end) of the n characters of sub, none of which is 0, or null. An
// empty sub is found at once.
template <typename T>
T const* FindText(T const* text, T const* end, T const* sub, int n);

extern template char const* FindText(char const*, char const*, char const*, int);
extern template wchar_t const* FindText(wchar_t const*, wchar_t const*, wchar_t const*, int);

// The first ch among n characters, or null.
inline char const* FindChar(char const* text, std::ptrdiff_t n, char ch) {
    return static_cast<char const*>(std::memchr(text, ch, static_cast<std::size_t>(n)));
}
inline wchar_t const* FindChar(wchar_t const* text, std::ptrdiff_t n, wchar_t ch) {
    return std::wmemchr(text, ch, static_cast<std::size_t>(n));
}

// The characters of a zero-terminated text, to be asked many times. It never contains 0.
template <typename T>
class CharSet {
  public:
    explicit CharSet(T const* set) : set_(set) {
        for (T const* p = set; *p != T(); ++p) bits_[Word(*p)] |= Bit(*p);
    }

    bool Contains(T ch) const { return (bits_[Word(ch)] & Bit(ch)) != 0 && IsMember(ch); }

    // The first character from text on that is in the set, or that is not; at the latest the
    // terminator.
    T const* SkipOthers(T const* text) const {
        while (*text != T() && !Contains(*text)) ++text;
        return text;
    }
    T const* SkipMembers(T const* text) const {
        while (Contains(*text)) ++text;
        return text;
    }

  private:
    static unsigned Word(T ch) { return (static_cast<std::uint32_t>(ch) >> 5) & 7; }
    static std::uint32_t Bit(T ch) { return 1u << (static_cast<std::uint32_t>(ch) & 31); }

    // Wide characters that share their low byte share a bit.
    bool IsMember(T ch) const {
        if (sizeof(T) == 1) return true;
        T const* p = set_;
        while (*p != T() && *p != ch) ++p;
        return *p != T();
    }

    std::uint32_t bits_[8] = {};  // one bit for every value of a character's low byte
    T const* set_;
};

}  // namespace qor_text

#endif  // QORUTILS_TEXT_TEXT_SEARCH_H_
