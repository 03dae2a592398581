// Private: the members of CQorStringT that keep its buffer. Included by qor_string.cpp only.

#ifndef QORUTILS_TEXT_QOR_STRING_STORAGE_H_
#define QORUTILS_TEXT_QOR_STRING_STORAGE_H_

#include <algorithm>

#include "qorutils/text/locale_conversion.h"
#include "qorutils/text/qor_string.h"
#include "qorutils/text/string_routines.h"

namespace qor_text {

// --- Blocks -------------------------------------------------------------------------------------

// The bytes of a block for n characters. Where no block can be that large it is a size that every
// allocator refuses, so that it never wraps into a small one.
template <typename T>
std::size_t BlockSize(int n) {
    constexpr std::size_t kMostCharacters = (SIZE_MAX - sizeof(CQorStringData<T>)) / sizeof(T) - 1;
    if (n < 0 || static_cast<std::size_t>(n) > kMostCharacters) return SIZE_MAX;
    return sizeof(CQorStringData<T>) + (static_cast<std::size_t>(n) + 1) * sizeof(T);
}

template <typename T>
CQorStringData<T>* CQorStringT<T>::NewBlock(int n) {
    if (n == 0) return get_afxDataNil();
    Data* const block = new (::operator new[](BlockSize<T>(n))) Data{1, n, n};
    block->data()[n] = T();
    return block;
}

template <typename T>
int CQorStringT<T>::AddLengths(int a, int b) noexcept {
    return a < 0 || b < 0 ? -1 : CheckedLength(static_cast<std::uint64_t>(a) + b);
}

template <typename T>
void CQorStringT<T>::AllocBuffer(int n) {
    m_pchData = NewBlock(n)->data();
}

// Whether n characters can be written without taking a new buffer.
template <typename T>
bool CQorStringT<T>::CanHold(int n) const noexcept {
    return n >= 0 && n <= GetAllocLength() && !GetData()->IsShared();
}

// The nil block stays as it is, so that threads may share it.
template <typename T>
void CQorStringT<T>::SetLength(int n) noexcept {
    if (GetData()->IsNil()) return;
    GetData()->nDataLength = n;
    m_pchData[n] = T();
}

template <typename T>
CQorStringT<T> const& CQorStringT<T>::AfxGetEmptyString() noexcept {
    return *static_cast<CQorStringT const*>(
        static_cast<void const*>(&qor_string_internal_data::g_afxNilStr));
}

// --- Primitives ---------------------------------------------------------------------------------

template <typename T>
void CQorStringT<T>::CopyBeforeWrite() {
    if (!GetData()->IsShared()) return;
    Data* const copy = NewBlock(GetLength());
    if (!copy->IsNil()) Copy(copy->data(), m_pchData, GetLength() + 1);
    ReplaceBlock(copy);
}

template <typename T>
void CQorStringT<T>::AllocBeforeWrite(int n) {
    if (!CanHold(n)) ReplaceBlock(NewBlock(n));
}

template <typename T>
void CQorStringT<T>::AllocCopy(CQorStringT& dest, int copyLen, int copyIndex, int extraLen) const {
    dest.AllocBuffer(AddLengths(copyLen, extraLen));
    Copy(dest.m_pchData, m_pchData + copyIndex, copyLen);
}

template <typename T>
void CQorStringT<T>::AssignCopy(int n, T const* src) {
    if (CanHold(n)) {
        Move(m_pchData, src, n);
    } else {
        Data* const fresh = NewBlock(n);
        Copy(fresh->data(), src, n);
        ReplaceBlock(fresh);
    }
    SetLength(n);
}

template <typename T>
void CQorStringT<T>::ConcatCopy(int len1, T const* s1, int len2, T const* s2) {
    Data* const joined = NewBlock(AddLengths(len1, len2));
    if (joined->IsNil()) return;
    Copy(joined->data(), s1, len1);
    Copy(joined->data() + len1, s2, len2);
    m_pchData = joined->data();
}

template <typename T>
void CQorStringT<T>::ConcatInPlace(int n, T const* s) {
    if (n == 0) return;
    int const length = GetLength();
    int const newLength = AddLengths(length, n);
    if (CanHold(newLength)) {
        Copy(m_pchData + length, s, n);
        SetLength(newLength);
    } else {
        Data* const old = GetData();
        ConcatCopy(length, m_pchData, n, s);
        Release(old);
    }
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::AppendGrowing(T ch) {
    int const length = GetLength();
    Data* const grown = NewBlock(AddLengths(length, 1));
    Copy(grown->data(), m_pchData, length);
    grown->data()[length] = ch;
    ReplaceBlock(grown);
    return *this;
}

template <typename T>
CQorStringT<T> CQorStringT<T>::Concat(int len1, T const* s1, int len2, T const* s2) {
    CQorStringT result;
    result.ConcatCopy(len1, s1, len2, s2);
    return result;
}

// --- Construction and assignment ----------------------------------------------------------------

template <typename T>
CQorStringT<T>::CQorStringT(T ch) : CQorStringT(&ch, 1) {}

template <typename T>
CQorStringT<T>::CQorStringT(T ch, int n) : CQorStringT() {
    if (n < 1) return;
    AllocBuffer(n);
    Fill(m_pchData, ch, n);
}

template <typename T>
CQorStringT<T>::CQorStringT(T const* s) : CQorStringT() {
    constexpr std::uintptr_t kFirstRealAddress = 0x10000;
    if (reinterpret_cast<std::uintptr_t>(s) >= kFirstRealAddress) AssignCopy(SafeStrlen(s), s);
}

template <typename T>
CQorStringT<T>::CQorStringT(T const* s, int n) : CQorStringT() {
    AllocBuffer(n);
    Copy(m_pchData, s, n);
}

template <typename T>
CQorStringT<T>::CQorStringT(unsigned char const* s) : CQorStringT() {
    *this = s;
}

template <typename T>
CQorStringT<T>::CQorStringT(Other const* s) : CQorStringT() {
    AssignConverted(s);
}

template <>
CQorStringT<char>::CQorStringT(wchar_t const* s, int n) : CQorStringT() {
    if (n != 0) AssignConverted(s);
}

template <>
CQorStringT<wchar_t>::CQorStringT(char const* s, int n) : CQorStringT() {
    if (s == nullptr) return;
    std::size_t const limit = n == -1 ? kConversionFailed : static_cast<std::size_t>(n);
    AllocBuffer(CheckedLength(LocaleDecodeBytewise(nullptr, s, limit)));
    SetLength(static_cast<int>(
        LocaleDecodeBytewise(m_pchData, s, static_cast<std::size_t>(GetAllocLength()))));
}

template <typename T>
void CQorStringT<T>::CopyLocked(CQorStringT const& src) {
    Init();
    *this = src.m_pchData;
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::operator=(T const* s) {
    AssignCopy(SafeStrlen(s), s);
    return *this;
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::operator=(std::nullptr_t) {
    return *this = static_cast<T const*>(nullptr);
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::operator=(unsigned char const* s) {
    return *this = reinterpret_cast<char const*>(s);
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::operator=(Other const* s) {
    AssignConverted(s);
    return *this;
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::operator=(T ch) {
    AssignCopy(1, &ch);
    return *this;
}

// A short text is converted once, into a local array.
template <typename T>
void CQorStringT<T>::AssignConverted(Other const* s) {
    constexpr std::size_t kLocalLength = 256;
    T local[kLocalLength];
    std::size_t const length = s == nullptr ? 0 : LocaleConvert(local, s, kLocalLength);
    // With less room left than the longest multibyte character takes, some may be missing.
    if (length <= kLocalLength - MB_LEN_MAX)
        AssignCopy(static_cast<int>(length), local);
    else
        AssignLongConverted(s);
}

// Counts first.
template <typename T>
void CQorStringT<T>::AssignLongConverted(Other const* s) {
    std::size_t const needed = LocaleLength(s);
    AllocBeforeWrite(needed == kConversionFailed ? 0 : CheckedLength(needed));
    std::size_t const length =
        needed == kConversionFailed ? 0 : LocaleConvert(m_pchData, s, needed);
    SetLength(length == kConversionFailed ? 0 : static_cast<int>(length));
}

// --- Direct access to the buffer ----------------------------------------------------------------

template <typename T>
T* CQorStringT<T>::GetBuffer(int minLen) {
    if (!GetData()->IsShared() && minLen <= GetAllocLength()) return m_pchData;
    int const length = GetLength();
    Data* const fresh = NewBlock(std::max(minLen, length));
    if (!fresh->IsNil()) {
        Copy(fresh->data(), m_pchData, length + 1);
        fresh->nDataLength = length;
    }
    ReplaceBlock(fresh);
    return m_pchData;
}

template <typename T>
T* CQorStringT<T>::GetBufferSetLength(int n) {
    if (n < 0) NewBlock(n);
    GetBuffer(n);
    SetLength(n);
    return m_pchData;
}

template <typename T>
void CQorStringT<T>::ReleaseBuffer(int n) {
    CopyBeforeWrite();
    SetLength(n < 0 ? BoundedLength(m_pchData, GetAllocLength()) : n);
}

template <typename T>
T* CQorStringT<T>::LockBuffer() {
    GetBuffer(0);
    if (!GetData()->IsNil()) GetData()->SetRefs(-1);
    return m_pchData;
}

template <typename T>
void CQorStringT<T>::UnlockBuffer() {
    if (!GetData()->IsNil()) GetData()->SetRefs(1);
}

template <typename T>
void CQorStringT<T>::FreeExtra() {
    int const length = GetLength();
    if (length == GetAllocLength()) return;
    Data* const exact = NewBlock(length);
    Copy(exact->data(), m_pchData, length);
    ReplaceBlock(exact);
}

template <typename T>
void CQorStringT<T>::Truncate(int n) {
    GetBuffer(n);
    ReleaseBuffer(n);
}

template <typename T>
void CQorStringT<T>::Empty() {
    if (GetLength() == 0) return;
    if (GetData()->Refs() < 0)
        AssignCopy(0, get_afxChNil());
    else
        Release();
}

}  // namespace qor_text

#endif  // QORUTILS_TEXT_QOR_STRING_STORAGE_H_
