#include "qorutils/text/qor_string.h"

#include "qorutils/text/qor_string_operations.h"
#include "qorutils/text/qor_string_storage.h"

namespace qor_string_internal_data {

static_assert(sizeof(NilBlock) == 16 && offsetof(NilBlock, terminator) == 12,
              "the nil string has the layout of any other buffer");

NilBlock g_afxInitData = {-1, 0, 0, L'\0'};
void* const g_afxNilStr = &g_afxInitData.terminator;
char const afxChNil = '\0';
wchar_t const afxChNilW = L'\0';

}  // namespace qor_string_internal_data

namespace qor_text {

static_assert(sizeof(CQorStringData<char>) == 12 && sizeof(CQorStringData<wchar_t>) == 12,
              "the characters start 12 bytes behind the start of a block");
static_assert(sizeof(CQorStringT<char>) == sizeof(char*), "a string is one pointer");

namespace detail {

int CompareText(wchar_t const* a, wchar_t const* b) noexcept {
    while (*a == *b && *a != L'\0') ++a, ++b;
    using Code = std::make_unsigned<wchar_t>::type;
    auto const left = static_cast<Code>(*a);
    auto const right = static_cast<Code>(*b);
    return left < right ? -1 : left > right;
}

}  // namespace detail

template class CQorStringT<char>;
template class CQorStringT<wchar_t>;

}  // namespace qor_text
