#include "qorutils/formats/value_lists.h"

#include <algorithm>
#include <climits>
#include <cstdint>

#include "qorutils/text/string_routines.h"
#include "qorutils/text/text_search.h"

using qor_text::CharSet;
using qor_text::CQorStringT;

namespace qor_formats {

namespace {

// The item that a list holds from `begin` to `end`.
CQorStringT<wchar_t> Item(wchar_t const* begin, wchar_t const* end) {
    CQorStringT<wchar_t> item(begin, static_cast<int>(end - begin));
    item.Trim();
    item.Remove(L'\r');
    item.Remove(L'\n');
    return item;
}

}  // namespace

// Here and below: only the characters are looked at, since `text` moves when it is an element of
// `out` that grows.
bool ParseValues(CQorStringT<wchar_t> const& text, StringArray& out, char separator,
                 CQorStringT<wchar_t> const& forbidden) {
    wchar_t const* const begin = text.begin();
    wchar_t const* const end = text.end();
    wchar_t const* const unwanted = forbidden.c_str();
    auto const separatorChar = static_cast<wchar_t>(static_cast<unsigned char>(separator));
    wchar_t const* rest = begin;
    do {
        wchar_t const* const found =
            rest == end ? nullptr : qor_text::FindChar(rest, separatorChar);
        bool const isLast = found == nullptr || found == begin;
        CQorStringT<wchar_t> const item = Item(rest, isLast ? end : found);
        if (item.FindOneOf(unwanted) != -1) return false;
        out.Add(item);
        rest = isLast ? end : found + 1;
    } while (rest < end);
    return true;
}

bool ParseDelimitersValues(CQorStringT<wchar_t> const& text, StringArray& out,
                           CQorStringT<wchar_t> const& delimiters) {
    CharSet<wchar_t> const set(delimiters);
    wchar_t const* rest = text.begin();
    wchar_t const* const end = text.end();
    do {
        wchar_t const* const found = set.SkipOthers(rest);
        bool const isLast = *found == L'\0' || found == rest;
        out.Add(Item(rest, isLast ? end : found));
        rest = isLast ? end : found + 1;
    } while (rest < end);
    return true;
}

CQorStringT<wchar_t> StringArrayToString(StringArray const& array, wchar_t separator) {
    std::int64_t length = array.IsEmpty() ? 0 : array.GetSize() - 1;
    for (auto const& item : array) length += item.GetLength();
    CQorStringT<wchar_t> joined;
    joined.GetBuffer(static_cast<int>(std::min<std::int64_t>(length, INT_MAX)));
    for (int i = 0; i < array.GetSize(); ++i) {
        if (i != 0) joined += separator;
        joined += array[i];
    }
    return joined;
}

bool IsStringInStringArray(StringArray const& array, CQorStringT<wchar_t> const& s) {
    return std::find(array.begin(), array.end(), s) != array.end();
}

bool IsUIntInUIntArray(UIntArray const& array, int v) {
    return std::find(array.begin(), array.end(), static_cast<unsigned int>(v)) != array.end();
}

}  // namespace qor_formats
