// The first byte of an input is a number that some functions take, the second a separator; the rest
// is the text, up to its first zero. All is compared with the rules transcribed over standard
// strings.

#include <qorutils/formats/names.h>
#include <qorutils/formats/value_lists.h>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <string>

#include "require.h"
#include "support/guard_page.h"
#include "support/reference_values.h"

namespace {

using reference_values::Items;
using Wide = qor_text::CQorStringT<wchar_t>;

constexpr std::size_t kLargestText = 4096;

// Bytes from 128 on stand for characters that the locale treats in ways of their own: white space,
// a digit and letters of other scripts, and values that are no characters.
std::wstring TextFrom(std::uint8_t const* bytes, std::size_t n) {
    wchar_t const others[] = {0x2003, 0x0661, 0xE9, 0xA0, 0x4E2D, 0x10FFFF, -1};
    std::wstring text;
    for (; n != 0 && *bytes != 0; ++bytes, --n)
        text += *bytes < 128 ? static_cast<wchar_t>(*bytes) : others[*bytes % 7];
    return text;
}

bool IsSame(std::wstring const& expected, Wide const& found) {
    return expected == std::wstring(found.begin(), found.end());
}

bool IsSame(Items const& expected, qor_formats::StringArray const& found) {
    if (static_cast<int>(expected.size()) != found.GetSize()) return false;
    for (std::size_t i = 0; i < expected.size(); ++i)
        if (!IsSame(expected[i], found[static_cast<int>(i)])) return false;
    return true;
}

// One for the whole run, as memory from the system is slow. Behind the end nothing is accessible.
wchar_t const* PlaceAtEnd(std::wstring const& text) {
    static GuardedArray<wchar_t> memory(kLargestText + 1);
    wchar_t* const start = memory.data() + memory.size() - text.size() - 1;
    text.copy(start, text.size());
    return start;
}

void CheckLists(std::wstring const& text, char separator) {
    Wide const wide(text.c_str());
    auto const wideSeparator = static_cast<wchar_t>(static_cast<unsigned char>(separator));
    std::wstring const delimiters = {wideSeparator, L'-'};

    Items expected;
    qor_formats::StringArray found;
    bool const isGood = reference_values::ParseValues(text, expected, wideSeparator, L"#\u00E9");
    Require(isGood == qor_formats::ParseValues(wide, found, separator, L"#\u00E9"));
    Require(IsSame(expected, found));

    qor_formats::StringArray delimited;
    Require(qor_formats::ParseDelimitersValues(wide, delimited, delimiters.c_str()));
    Require(IsSame(reference_values::ParseDelimitersValues(text, delimiters), delimited));
}

void CheckNames(std::wstring const& text, int number) {
    Wide const wide(text.c_str());
    Require(IsSame(reference_values::CorrectName(text, number),
                   qor_formats::MakeNameCorrect(wide, number)));
    Require(
        IsSame(reference_values::ForDisplay(text), qor_formats::DoubleAmpersandForDisplay(wide)));
}

void CheckKinds(std::wstring const& text) {
    wchar_t const* const placed = PlaceAtEnd(text);
    Require(reference_values::KindOf(text) == qor_formats::getTextValType(placed));
    Require(reference_values::IsDate(text) == qor_formats::ValidateDateOnly(placed));
    Require(reference_values::IsDateAndTime(text) == qor_formats::ValidateDateAndTime(placed));
    for (wchar_t const* mask : {L"9999-99-99", L"9999-99-99 99:99:99", L"9", L""})
        Require(reference_values::FitsMask(text, mask) == qor_formats::CheckFormat(placed, mask));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::setlocale(LC_ALL, "C.UTF-8");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size < 2 || size > kLargestText) return 0;
    std::wstring const text = TextFrom(input + 2, size - 2);
    if (input[1] != 0) CheckLists(text, static_cast<char>(input[1]));
    CheckNames(text, static_cast<signed char>(input[0]));
    CheckKinds(text);
    return 0;
}
