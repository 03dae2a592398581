#include "qorutils/qorsys/qor_com.h"

#include <cwchar>
#include <new>

#include "qorutils/logging/checks.h"
#include "qorutils/text/qor_string.h"

using qor_text::CQorStringT;

namespace {

void Report(int line) {
    qor_logging::qor_err_log("qorutils/qorsys/qor_com", line, "");
}

HRESULT Refuse(int line, HRESULT result) {
    Report(line);
    return result;
}

}  // namespace

wchar_t* SysAllocStringLen(wchar_t const* src, unsigned int len) {
    constexpr unsigned int kMostCharacters = 0x1FC00000 - 1;
    if (len <= 0x7FFFFFFE) Report(101);
    if (len > kMostCharacters) throw std::bad_array_new_length();
    wchar_t* const bstr = new (std::nothrow) wchar_t[len + 1];
    if (bstr == nullptr) return nullptr;
    if (src != nullptr) std::wmemcpy(bstr, src, len);
    bstr[len] = L'\0';
    return bstr;
}

int SysReAllocStringLen(wchar_t** pbstr, wchar_t const* src, unsigned int len) {
    if (pbstr == nullptr) Report(122);
    SysFreeString(*pbstr);  // NOLINT(clang-analyzer-core.NullDereference)
    *pbstr = nullptr;
    *pbstr = SysAllocStringLen(src, len);
    return *pbstr != nullptr ? 1 : 0;
}

void SysFreeString(wchar_t* bstr) {
    delete[] bstr;
}

HRESULT CoCreateInstance(REFCLSID, LPUNKNOWN, DWORD, REFIID, void**) {
    return Refuse(55, E_NOINTERFACE);
}

HRESULT CLSIDFromProgID(LPCOLESTR, CLSID*) {
    return Refuse(61, CO_E_CLASSSTRING);
}

HRESULT StringFromCLSID(REFCLSID, LPOLESTR*) {
    return Refuse(67, CO_E_CLASSSTRING);
}

HRESULT CLSIDFromString(LPCOLESTR, CLSID*) {
    return Refuse(73, CO_E_CLASSSTRING);
}

HRESULT StringFromIID(REFIID, LPOLESTR*) {
    return Refuse(79, CO_E_CLASSSTRING);
}

HRESULT IIDFromString(LPCOLESTR, IID*) {
    return Refuse(85, CO_E_CLASSSTRING);
}

// --- The string's members that make a BSTR ------------------------------------------------------

namespace qor_text {

namespace {

// On purpose: a char string fills nothing in.
wchar_t const* BstrSource(CQorStringT<char> const&) {
    return nullptr;
}
wchar_t const* BstrSource(CQorStringT<wchar_t> const& text) {
    return text.c_str();
}

// Not in the members: a static of an exported template is one for the whole process, which could
// then not unload the library.
[[noreturn]] void ThrowNoMemory() {
    static std::bad_alloc const failure;
    throw std::bad_alloc(failure);
}

}  // namespace

template <typename T>
wchar_t* CQorStringT<T>::AllocSysString() const {
    wchar_t* const bstr =
        SysAllocStringLen(BstrSource(*this), static_cast<unsigned int>(GetLength()));
    if (bstr == nullptr) ThrowNoMemory();
    return bstr;
}

template <typename T>
wchar_t* CQorStringT<T>::SetSysString(wchar_t** pbstr) const {
    auto const length = static_cast<unsigned int>(GetLength());
    if (SysReAllocStringLen(pbstr, BstrSource(*this), length) == 0) ThrowNoMemory();
    return *pbstr;
}

template wchar_t* CQorStringT<char>::AllocSysString() const;
template wchar_t* CQorStringT<char>::SetSysString(wchar_t** pbstr) const;
template wchar_t* CQorStringT<wchar_t>::AllocSysString() const;
template wchar_t* CQorStringT<wchar_t>::SetSysString(wchar_t** pbstr) const;

}  // namespace qor_text
