#include "qorutils/text/safe_format.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cwchar>

namespace qor_text {

namespace {

constexpr unsigned int kMaxArguments = 100;

struct Arguments {
    unsigned int count;
    wchar_t const* texts[kMaxArguments];
};

// The argument that a placeholder names, null when it names none. The brace behind the digits ends
// the number. Those that `long` cannot hold, which is not equally wide on all machines, come out as
// its limits and name no argument on any.
wchar_t const* const* FindArgument(Arguments const& arguments, wchar_t const* digits) {
    long const index = std::wcstol(digits, nullptr, 10);
    if (index < 1 || index > static_cast<long>(arguments.count)) return nullptr;
    return &arguments.texts[index - 1];
}

// Hands the pieces of the result to put(text, length), in order. False: a placeholder names no
// argument.
template <typename Put>
bool ForEachPiece(wchar_t const* fmt, Arguments const& arguments, Put put) {
    while (wchar_t const* const open = std::wcschr(fmt, L'{')) {
        put(fmt, static_cast<std::size_t>(open - fmt));
        wchar_t const* const digits = open + 1;
        wchar_t const* const brace = std::wcspbrk(digits, L"{}");
        if (brace == nullptr) return true;
        if (*brace == L'{') {
            put(brace, 1);
        } else {
            wchar_t const* const* const argument = FindArgument(arguments, digits);
            if (argument == nullptr) return false;
            if (*argument != nullptr) put(*argument, std::wcslen(*argument));
        }
        fmt = brace + 1;
    }
    put(fmt, std::wcslen(fmt));
    return true;
}

// Measures first: strings grow exactly, so that appending piece by piece would take a time that is
// quadratic in their number.
CQorStringT<wchar_t> Substitute(wchar_t const* fmt, Arguments const& arguments) {
    std::uint64_t length = 0;
    CQorStringT<wchar_t> result;
    if (!ForEachPiece(fmt, arguments, [&](wchar_t const*, std::size_t n) { length += n; }))
        return result;

    constexpr int kImpossible = -1;
    result.AllocBuffer(length <= INT_MAX ? static_cast<int>(length) : kImpossible);
    wchar_t* end = result.GetBuffer(0);
    ForEachPiece(fmt, arguments,
                 [&](wchar_t const* piece, std::size_t n) { end = std::copy_n(piece, n, end); });
    return result;
}

}  // namespace

namespace detail {

CQorStringT<wchar_t> qor_safefmt_impl(wchar_t const* fmt, unsigned int count, ...) {
    if (fmt == nullptr || count > kMaxArguments) return {};

    Arguments arguments;
    arguments.count = count;
    va_list list;
    va_start(list, count);
    for (unsigned int i = 0; i != count; ++i) arguments.texts[i] = va_arg(list, wchar_t const*);
    va_end(list);
    return Substitute(fmt, arguments);
}

}  // namespace detail

template <>
CQorStringT<wchar_t> qor_printf<wchar_t>(wchar_t const* fmt, ...) {
    CQorStringT<wchar_t> result;
    if (fmt == nullptr) return result;
    va_list arguments;
    va_start(arguments, fmt);
    result.FormatV(fmt, arguments);
    va_end(arguments);
    return result;
}

}  // namespace qor_text
