// Private: case mappings of the current locale, without a call for every ASCII character.

#ifndef QORUTILS_TEXT_CASE_FOLDING_H_
#define QORUTILS_TEXT_CASE_FOLDING_H_

#include <cstdint>
#include <cwctype>

namespace qor_text {

// Maps wide characters as towlower or towupper does in the locale in which it was made. Cheap to
// make; not to be kept over a change of the locale.
class CaseFolder {
  public:
    enum Case { kLower, kUpper };

    explicit CaseFolder(Case direction);

    wchar_t operator()(wchar_t c) const {
        return static_cast<std::uint32_t>(c) < kAscii ? ascii_[c] : Map(c);
    }

    // Below, at or above 0 as a folds to less than, the same as or more than b; their difference.
    int Compare(wchar_t a, wchar_t b) const {
        bool const ascii = (static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b)) < kAscii;
        if (ascii) return Difference(ascii_[a], ascii_[b]);
        return a == b ? 0 : Difference((*this)(a), (*this)(b));
    }

  private:
    friend struct AsciiTable;
    using Mapping = std::wint_t (*)(std::wint_t);
    static constexpr std::uint32_t kAscii = 128;

    static int Difference(wchar_t a, wchar_t b) {
        return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
    }

    wchar_t Map(wchar_t c) const {
        return static_cast<wchar_t>(mapping_(static_cast<std::wint_t>(c)));
    }

    Mapping mapping_;
    wchar_t const* ascii_;
};

}  // namespace qor_text

#endif  // QORUTILS_TEXT_CASE_FOLDING_H_
