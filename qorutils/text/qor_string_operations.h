// Private: the text operations of CQorStringT. Included by qor_string.cpp only.

#ifndef QORUTILS_TEXT_QOR_STRING_OPERATIONS_H_
#define QORUTILS_TEXT_QOR_STRING_OPERATIONS_H_

#include <algorithm>

#include "qorutils/text/case_folding.h"
#include "qorutils/text/qor_string.h"
#include "qorutils/text/string_routines.h"
#include "qorutils/text/text_search.h"

namespace qor_text {

template <typename T>
void CQorStringT<T>::SetAt(int i, T ch) {
    CopyBeforeWrite();
    m_pchData[i] = ch;
}

// --- Search -------------------------------------------------------------------------------------

// An index in a string, or -1 for null.
template <typename T>
int IndexOf(T const* found, T const* text) {
    return found == nullptr ? -1 : static_cast<int>(found - text);
}

template <typename T>
int CQorStringT<T>::Find(T ch, int start) const {
    if (start < 0 || start >= GetLength()) return -1;
    return IndexOf(FindChar(m_pchData + start, ch), m_pchData);
}

template <typename T>
int CQorStringT<T>::FindFirst(T const* sub, int n, int start) const {
    if (sub == nullptr || n < 0 || start < 0 || start > GetLength()) return -1;
    T const* const text = m_pchData + start;
    T const* const found = FindText<T>(text, end(), sub, n);
    bool const behindZero = found != nullptr && FindChar(text, found - text, T()) != nullptr;
    return behindZero ? -1 : IndexOf(found, m_pchData);
}

template <typename T>
int CQorStringT<T>::ReverseFind(T ch) const {
    return IndexOf(FindLastChar(m_pchData, ch), m_pchData);
}

template <typename T>
int CQorStringT<T>::FindOneOf(T const* set) const {
    return set == nullptr ? -1 : IndexOf(FindAnyOf(m_pchData, set), m_pchData);
}

// --- Extraction ---------------------------------------------------------------------------------

template <typename T>
CQorStringT<T> CQorStringT<T>::Mid(int first, int count) const {
    int const length = GetLength();
    first = std::max(first, 0);
    count = std::min(std::max(count, 0), std::max(length - first, 0));
    if (first == 0 && count == length) return *this;
    CQorStringT part;
    AllocCopy(part, count, first, 0);
    return part;
}

template <typename T>
CQorStringT<T> CQorStringT<T>::Mid(int first) const {
    return Mid(first, GetLength());
}

template <typename T>
CQorStringT<T> CQorStringT<T>::Left(int count) const {
    return Mid(0, count);
}

template <typename T>
CQorStringT<T> CQorStringT<T>::Right(int count) const {
    return Mid(GetLength() - std::min(std::max(count, 0), GetLength()), count);
}

template <typename T>
CQorStringT<T> CQorStringT<T>::SpanIncluding(T const* set) const {
    return set == nullptr ? CQorStringT()
                          : Left(IndexOf(CharSet<T>(set).SkipMembers(m_pchData), m_pchData));
}

template <typename T>
CQorStringT<T> CQorStringT<T>::SpanExcluding(T const* set) const {
    return set == nullptr ? *this : Left(IndexOf(CharSet<T>(set).SkipOthers(m_pchData), m_pchData));
}

template <typename T>
CQorStringT<T> CQorStringT<T>::Tokenize(T const* delims, int& start) const {
    if (start < 0) return CQorStringT();
    if (start < GetLength()) {
        if (delims == nullptr || *delims == T()) return Right(GetLength() - start);
        CharSet<T> const set(delims);
        T const* const token = set.SkipMembers(m_pchData + start);
        if (token < end()) {
            T const* const tokenEnd = set.SkipOthers(token);
            start = IndexOf(tokenEnd, m_pchData) + 1;
            return Mid(IndexOf(token, m_pchData), static_cast<int>(tokenEnd - token));
        }
    }
    start = -1;
    return CQorStringT();
}

// --- Case, order --------------------------------------------------------------------------------

template <typename T>
CQorStringT<T>& CQorStringT<T>::MakeUpper() {
    CopyBeforeWrite();
    UpperCase(m_pchData);
    return *this;
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::MakeLower() {
    CopyBeforeWrite();
    LowerCase(m_pchData);
    return *this;
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::MakeReverse() {
    CopyBeforeWrite();
    Reverse(m_pchData);
    return *this;
}

inline int CompareTextNoCase(char const* a, char const* b) {
    return strcasecmp(a, b);
}

inline int CompareTextNoCase(wchar_t const* a, wchar_t const* b) {
    CaseFolder const fold(CaseFolder::kLower);
    for (; *a != L'\0'; ++a, ++b)
        if (int const order = fold.Compare(*a, *b)) return order;
    return static_cast<int>(0u - static_cast<unsigned>(*b));
}

template <typename T>
int CQorStringT<T>::CompareNoCase(T const* s) const {
    return CompareTextNoCase(m_pchData, s == nullptr ? get_afxChNil() : s);
}

// --- Trimming -----------------------------------------------------------------------------------

// Makes the string its own characters [first, end), in a buffer of its own. A shared buffer is
// replaced by one of exactly the present length.
template <typename T>
CQorStringT<T>& CQorStringT<T>::Keep(int first, int end) {
    if (!GetData()->IsShared()) {
        if (first > 0) Move(m_pchData, m_pchData + first, end - first);
    } else {
        Data* const kept = NewBlock(GetLength());
        Copy(kept->data(), m_pchData + first, end - first);
        ReplaceBlock(kept);
    }
    SetLength(end - first);
    return *this;
}

// Where a string ends without the trailing run of the zero-terminated text in it.
template <typename T, typename Drop>
int TrimmedEnd(CQorStringT<T> const& s, Drop drop) {
    int const textEnd = BoundedLength(s.c_str(), s.GetLength());
    int newEnd = textEnd;
    while (newEnd > 0 && drop(s[newEnd - 1])) --newEnd;
    return newEnd < textEnd ? newEnd : s.GetLength();
}

// Where the first `end` characters of a string begin without their leading run.
template <typename T, typename Drop>
int TrimmedStart(CQorStringT<T> const& s, int end, Drop drop) {
    int first = 0;
    while (first < end && drop(s[first])) ++first;
    return first;
}

// Predicates: what trimming drops.
template <typename T>
struct IsCharacter {
    T ch;
    bool operator()(T c) const { return c == ch; }
};

template <typename T>
struct IsIn {
    CharSet<T> set;
    bool operator()(T c) const { return set.Contains(c); }
};

template <typename T>
CQorStringT<T>& CQorStringT<T>::TrimRight() {
    return Keep(0, TrimmedEnd(*this, IsSpace<T>));
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::TrimLeft() {
    return Keep(TrimmedStart(*this, GetLength(), IsSpace<T>), GetLength());
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::Trim() {
    int const end = TrimmedEnd(*this, IsSpace<T>);
    return Keep(TrimmedStart(*this, end, IsSpace<T>), end);
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::TrimRight(T ch) {
    return Keep(0, TrimmedEnd(*this, IsCharacter<T>{ch}));
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::TrimLeft(T ch) {
    return Keep(TrimmedStart(*this, GetLength(), IsCharacter<T>{ch}), GetLength());
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::Trim(T ch) {
    int const end = TrimmedEnd(*this, IsCharacter<T>{ch});
    return Keep(TrimmedStart(*this, end, IsCharacter<T>{ch}), end);
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::TrimRight(T const* set) {
    if (set == nullptr) return *this;
    return Keep(0, TrimmedEnd(*this, IsIn<T>{CharSet<T>(set)}));
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::TrimLeft(T const* set) {
    if (set == nullptr || *set == T()) return *this;
    return Keep(TrimmedStart(*this, GetLength(), IsIn<T>{CharSet<T>(set)}), GetLength());
}

template <typename T>
CQorStringT<T>& CQorStringT<T>::Trim(T const* set) {
    if (set == nullptr) return *this;
    IsIn<T> const dropped{CharSet<T>(set)};
    int const end = TrimmedEnd(*this, dropped);
    return Keep(TrimmedStart(*this, end, dropped), end);
}

// --- Single characters --------------------------------------------------------------------------

template <typename T>
int CQorStringT<T>::Replace(T oldChar, T newChar) {
    if (oldChar == newChar) return 0;
    CopyBeforeWrite();
    int count = 0;
    for (int i = 0, length = GetLength(); i < length; ++i) {
        if (m_pchData[i] != oldChar) continue;
        m_pchData[i] = newChar;
        ++count;
    }
    return count;
}

template <typename T>
int CQorStringT<T>::Remove(T ch) {
    CopyBeforeWrite();
    int const length = GetLength();
    int kept = 0;
    for (int i = 0; i < length; ++i) {
        m_pchData[kept] = m_pchData[i];
        kept += m_pchData[i] != ch;
    }
    SetLength(kept);
    return length - kept;
}

// --- Insertion and deletion ---------------------------------------------------------------------

// Whether s points into this string's buffer.
template <typename T>
bool CQorStringT<T>::Holds(T const* s) const noexcept {
    return !std::less<T const*>()(s, m_pchData) &&
           !std::less<T const*>()(m_pchData + GetAllocLength(), s);
}

template <typename T>
int CQorStringT<T>::InsertCopy(int index, int n, T const* s) {
    int const length = GetLength();
    int const newLength = AddLengths(length, n);
    index = std::min(std::max(index, 0), length);
    if (CanHold(newLength)) {
        Move(m_pchData + index + n, m_pchData + index, length - index);
        Copy(m_pchData + index, s, n);
    } else {
        Data* const grown = NewBlock(newLength);
        Copy(grown->data(), m_pchData, index);
        Copy(grown->data() + index, s, n);
        Copy(grown->data() + index + n, m_pchData + index, length - index);
        ReplaceBlock(grown);
    }
    SetLength(newLength);
    return newLength;
}

template <typename T>
int CQorStringT<T>::Insert(int index, T ch) {
    return InsertCopy(index, 1, &ch);
}

template <typename T>
int CQorStringT<T>::Insert(int index, T const* s) {
    int const n = SafeStrlen(s);
    if (n == 0) return GetLength();
    if (Holds(s)) return InsertCopy(index, n, CQorStringT(s, n));
    return InsertCopy(index, n, s);
}

template <typename T>
int CQorStringT<T>::Delete(int index, int count) {
    int const length = GetLength();
    index = std::max(index, 0);
    if (index >= length || count <= 0) return length;
    count = std::min(count, length - index);
    CopyBeforeWrite();
    Move(m_pchData + index, m_pchData + index + count, length - index - count);
    SetLength(length - count);
    return length;
}

// --- Replacement of texts -----------------------------------------------------------------------

namespace detail {

template <typename T>
struct Substitution {
    T const* oldText;
    int oldLength;
    T const* newText;
    int newLength;

    std::int64_t Growth() const { return std::int64_t{newLength} - oldLength; }

    T const* FindNext(T const* from, T const* end) const {
        return FindText(from, end, oldText, oldLength);
    }
};

}  // namespace detail

template <typename T>
int CountMatches(T const* from, T const* end, detail::Substitution<T> const& change) {
    int count = 0;
    for (; (from = change.FindNext(from, end)) != nullptr; from += change.oldLength) ++count;
    return count;
}

// The matches in those zero-terminated runs that begin before the old end while the text grows.
template <typename T>
int CountReachedMatches(T const* begin, T const* end, detail::Substitution<T> const& change) {
    int count = 0;
    for (T const* run = begin; run < end && run - begin + count * change.Growth() < end - begin;) {
        T const* const runEnd = run + detail::TextLength(run);
        count += CountMatches(run, runEnd, change);
        run = runEnd + 1;
    }
    return count;
}

// Copies [from, end) to `to`, replacing the first `most` matches, and returns how many there were.
// `match` is the first of them. `to` may overlap the text as long as it does not overtake it.
template <typename T>
int Substitute(T* to, T const* from, T const* match, T const* end, int most,
               detail::Substitution<T> const& change) {
    int count = 0;
    for (; count < most && match != nullptr; ++count) {
        int const between = static_cast<int>(match - from);
        if (to != from) Move(to, from, between);
        Copy(to + between, change.newText, change.newLength);
        to += between + change.newLength;
        from = match + change.oldLength;
        match = change.FindNext(from, end);
    }
    if (to != from) Move(to, from, static_cast<int>(end - from));
    return count;
}

template <typename T>
int CQorStringT<T>::Replace(T const* oldText, T const* newText) {
    detail::Substitution<T> change{oldText, SafeStrlen(oldText), newText, SafeStrlen(newText)};
    if (change.oldLength < 1) return 0;
    T const* const first = change.FindNext(m_pchData, end());
    if (first == nullptr) return 0;
    if (change.newLength < 0) NewBlock(change.newLength);

    CQorStringT const ownOldText(Holds(oldText) ? oldText : nullptr);
    CQorStringT const ownNewText(Holds(newText) ? newText : nullptr);
    if (Holds(oldText)) change.oldText = ownOldText;
    if (Holds(newText)) change.newText = ownNewText;
    return change.Growth() > 0 ? ReplaceGrowing(change, first) : ReplaceShrinking(change, first);
}

// In place, or from a shared buffer into one of exactly the present length.
template <typename T>
int CQorStringT<T>::ReplaceShrinking(detail::Substitution<T> const& change, T const* first) {
    int const length = GetLength();
    bool const shared = GetData()->IsShared();
    Data* const target = shared ? NewBlock(length) : GetData();
    int const count = Substitute<T>(target->data(), m_pchData, first, end(), length, change);
    if (shared) ReplaceBlock(target);
    SetLength(static_cast<int>(length + count * change.Growth()));
    return count;
}

template <typename T>
int CQorStringT<T>::ReplaceGrowing(detail::Substitution<T> const& change, T const* first) {
    int const length = GetLength();
    int const count = CountMatches<T>(first, end(), change);
    int const newLength =
        CheckedLength(static_cast<std::uint64_t>(length + count * change.Growth()));
    if (CanHold(newLength)) {
        int const reached = CountReachedMatches<T>(m_pchData, end(), change);
        T* const moved = m_pchData + reached * change.Growth();
        Move(moved, m_pchData, length + 1);
        Substitute<T>(m_pchData, moved, moved + (first - m_pchData), moved + length, reached,
                      change);
    } else {
        Data* const grown = NewBlock(newLength);
        Substitute<T>(grown->data(), m_pchData, first, end(), count, change);
        ReplaceBlock(grown);
    }
    SetLength(newLength);
    return count;
}

// --- Formatting ---------------------------------------------------------------------------------

template <typename T>
void CQorStringT<T>::FormatText(T const* format, va_list args) {
    constexpr int kProbeLength = 2048;
    T probe[kProbeLength];
    int const length = FormatInto(probe, kProbeLength, format, args);
    if (length < 0) {
        ReleaseBuffer();
    } else if (length < kProbeLength) {
        Copy(GetBuffer(length + 1), probe, length + 1);
        ReleaseBuffer(length);
    } else {
        FormatLongText(length, format, args);
    }
}

// Into a buffer apart, since arguments may point into this one.
template <typename T>
void CQorStringT<T>::FormatLongText(int length, T const* format, va_list args) {
    int const size = AddLengths(length, 1);
    CQorStringT text;
    text.AllocBuffer(size < 0 ? size : std::max(size, GetLength()));
    Copy(text.m_pchData, m_pchData, GetLength() + 1);
    FormatInto(text.m_pchData, static_cast<std::size_t>(size), format, args);
    if (CanHold(size))
        Copy(m_pchData, text.m_pchData, size);
    else
        swap(*this, text);
    SetLength(length);
}

template <>
void CQorStringT<char>::FormatV(char const* format, va_list args) {
    FormatText(format, args);
}

template <typename T>
void CQorStringT<T>::FormatV(T const* format, va_list args) {
    FormatText(format, args);
}

template <>
void CQorStringT<char>::Format(char const* format, ...) {
    va_list args;
    va_start(args, format);
    FormatText(format, args);
    va_end(args);
}

template <typename T>
void CQorStringT<T>::Format(T const* format, ...) {
    va_list args;
    va_start(args, format);
    FormatText(format, args);
    va_end(args);
}

}  // namespace qor_text

#endif  // QORUTILS_TEXT_QOR_STRING_OPERATIONS_H_
