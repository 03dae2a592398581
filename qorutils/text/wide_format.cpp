#include "qorutils/text/wide_format.h"

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace qor_text {

namespace {

constexpr int kMostWidth = 99;

// What stands behind a percent sign: [0][width][l|ll]conversion. Of any other directive, the first
// character that does not belong there is taken for the conversion, and nobody knows such a one.
struct Directive {
    explicit Directive(wchar_t const* text) : fillsWithZeros(*text == L'0') {
        for (; *text >= L'0' && *text <= L'9' && width <= kMostWidth / 10; ++text)
            width = 10 * width + static_cast<int>(*text - L'0');
        for (; *text == L'l' && longs < 2; ++text) ++longs;
        conversion = text;
    }

    bool const fillsWithZeros;
    int width = 0;
    int longs = 0;
    wchar_t const* conversion;
};

// Ends before `end`; the result is where it begins.
template <unsigned kBase>
wchar_t* PutDigits(wchar_t* end, std::uint64_t number, char const* digits) {
    for (; number > UINT32_MAX; number /= kBase)
        *--end = static_cast<wchar_t>(digits[number % kBase]);
    auto rest = static_cast<std::uint32_t>(number);
    do *--end = static_cast<wchar_t>(digits[rest % kBase]);
    while ((rest /= kBase) != 0);
    return end;
}

// Everything that puts something returns false for what is left to vswprintf: what is rare, fails,
// or does not fit.
class Composer {
  public:
    Composer(wchar_t* to, std::size_t limit, va_list* args)
        : to_(to), last_(to + limit - 1), args_(args) {}

    bool Put(wchar_t const* format) {
        for (; *format != L'\0'; ++format) {
            if (*format == L'%' && *++format != L'%') {
                Directive const directive(format);
                if (!PutArgument(directive)) return false;
                format = directive.conversion;
            } else if (!PutCharacter(*format)) {
                return false;
            }
        }
        *to_ = L'\0';
        return true;
    }

    wchar_t const* End() const { return to_; }

  private:
    bool PutArgument(Directive const& directive) {
        switch (*directive.conversion) {
            case L'd':
            case L'i':
                return PutSigned(directive);
            case L'u':
                return PutNumber<10>(directive, NextUnsigned(directive), "0123456789");
            case L'x':
                return PutNumber<16>(directive, NextUnsigned(directive), "0123456789abcdef");
            case L'X':
                return PutNumber<16>(directive, NextUnsigned(directive), "0123456789ABCDEF");
            case L'c':
            case L's':
                return !directive.fillsWithZeros && directive.width == 0 && PutText(directive);
            default:
                return false;
        }
    }

    template <typename T>
    T Next() {
        return va_arg(*args_, T);  // NOLINT(clang-analyzer-valist.Uninitialized)
    }

    std::uint64_t NextUnsigned(Directive const& directive) {
        if (directive.longs == 0) return Next<unsigned int>();
        if (directive.longs == 1) return Next<unsigned long>();
        return Next<unsigned long long>();
    }

    std::int64_t NextSigned(Directive const& directive) {
        if (directive.longs == 0) return Next<int>();
        if (directive.longs == 1) return Next<long>();
        return Next<long long>();
    }

    bool PutSigned(Directive const& directive) {
        std::int64_t const number = NextSigned(directive);
        auto const bits = static_cast<std::uint64_t>(number);
        return number < 0 ? PutNumber<10>(directive, 0 - bits, "0123456789", L"-")
                          : PutNumber<10>(directive, bits, "0123456789");
    }

    template <unsigned kBase>
    bool PutNumber(Directive const& directive, std::uint64_t magnitude, char const* digits,
                   wchar_t const* sign = L"") {
        wchar_t text[kMostWidth];
        wchar_t* const end = text + kMostWidth;
        wchar_t* const filled = end - directive.width;
        wchar_t* first = PutDigits<kBase>(end, magnitude, digits);
        if (directive.fillsWithZeros)
            while (first > filled + (*sign != L'\0')) *--first = L'0';
        if (*sign != L'\0') *--first = *sign;
        while (first > filled) *--first = L' ';
        return PutCharacters(first, static_cast<std::size_t>(end - first));
    }

    bool PutText(Directive const& directive) {
        if (directive.longs > 1) return false;
        bool const isWide = directive.longs == 1;
        if (*directive.conversion == L'c')
            return isWide ? PutDecoded(Next<std::wint_t>())
                          : PutDecoded(std::btowc(static_cast<unsigned char>(Next<int>())));
        return isWide ? PutWideText(Next<wchar_t const*>()) : PutNarrowText(Next<char const*>());
    }

    bool PutDecoded(std::wint_t character) {
        return character != WEOF && PutCharacter(static_cast<wchar_t>(character));
    }

    bool PutWideText(wchar_t const* text) {
        return text != nullptr && PutCharacters(text, std::wcslen(text));
    }

    // As the locale says. A text left in part is invalid, or has more characters than bytes, which
    // some encodings make.
    bool PutNarrowText(char const* text) {
        if (text == nullptr) return false;
        std::size_t const bytes = std::strlen(text);
        if (bytes > Room()) return false;
        std::mbstate_t state{};
        std::size_t const length = std::mbsrtowcs(to_, &text, bytes + 1, &state);
        if (text != nullptr) return false;
        to_ += length;
        return true;
    }

    bool PutCharacters(wchar_t const* text, std::size_t length) {
        if (length > Room()) return false;
        std::wmemcpy(to_, text, length);
        to_ += length;
        return true;
    }

    bool PutCharacter(wchar_t character) {
        if (to_ == last_) return false;
        *to_++ = character;
        return true;
    }

    std::size_t Room() const { return static_cast<std::size_t>(last_ - to_); }

    wchar_t* to_;
    wchar_t* const last_;  // for the terminator
    va_list* const args_;
};

}  // namespace

int FormatWide(wchar_t* to, std::size_t limit, wchar_t const* format, va_list args) {
    va_list copy;
    va_copy(copy, args);
    Composer composer(to, limit, &copy);
    bool const isDone = format != nullptr && composer.Put(format);
    va_end(copy);
    return isDone ? static_cast<int>(composer.End() - to) : std::vswprintf(to, limit, format, args);
}

}  // namespace qor_text
