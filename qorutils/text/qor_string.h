/// @file
/// CQorStringT: the string type of the whole library, over char and over 32-bit wchar_t.
///
/// It keeps the model of MFC's CString. The object is one pointer to the first character; a header
/// of three words (CQorStringData) lies right in front of the characters. Copies share one buffer,
/// counted by reference; whoever writes gets a buffer of its own first (copy-on-write). Every
/// string that holds nothing points at one static buffer, the nil string, and owns nothing.
///
///     qor_text::CQorStringT<char> name("report");
///     name += ".txt";                     // exact growth: no spare room is kept
///     name.Format("%s-%d", "page", 7);    // checked by the compiler
///     printf("%s\n", name.c_str());
///
/// Lengths, positions and counts are ints and count characters (elements of T), not bytes. Indices
/// are trusted unless a function says otherwise. A buffer for a negative length, or for one past
/// 2147483647, is asked of the allocator as an impossible size. A plain char given to a wide string
/// counts as unsigned in assignment, += and +; elsewhere it has the sign of the machine's char.
///
/// Failure: the only exception is std::bad_alloc; the string that was being changed is then as it
/// was. Threads: an object belongs to one thread at a time; objects that share a buffer may be used
/// and destroyed by different threads.

#ifndef QORUTILS_TEXT_QOR_STRING_H_
#define QORUTILS_TEXT_QOR_STRING_H_

#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <new>
#include <type_traits>

#include "qorutils/export.h"

namespace qor_string_internal_data {

// The block of the nil string: a header with its one terminator.
struct NilBlock {
    std::int32_t nRefs;         // always -1
    std::int32_t nDataLength;   // always 0
    std::int32_t nAllocLength;  // always 0; every other buffer has at least 1
    wchar_t terminator;         // always 0, serves both character types
};

// There is one in a process, whatever number of programs and plug-ins use the library.
// It is never freed and never written to.
extern QORUTILS_API NilBlock g_afxInitData;

// The address of the nil string's characters: what a default-constructed string holds.
extern QORUTILS_API void* const g_afxNilStr;

// Empty zero-terminated strings.
extern QORUTILS_API char const afxChNil;
extern QORUTILS_API wchar_t const afxChNilW;

}  // namespace qor_string_internal_data

namespace qor_text {

/// The header of a string buffer. nAllocLength + 1 characters follow it directly; a zero stands at
/// index nDataLength.
template <typename T>
struct CQorStringData {
    std::int32_t nRefs;         ///< strings that share the buffer; -1: locked, or the nil string
    std::int32_t nDataLength;   ///< characters, terminator excluded
    std::int32_t nAllocLength;  ///< capacity in characters, terminator excluded; 0: the nil string

    /// The characters, which follow the header.
    T* data() noexcept { return reinterpret_cast<T*>(this + 1); }
    /// @name What the buffer is
    /// @{

    /// Whether several strings share it.
    bool IsShared() const noexcept { return Refs() >= 2; }
    /// Whether one string has it locked.
    bool IsLocked() const noexcept { return Refs() < 0 && !IsNil(); }
    /// Whether it is that of the nil string.
    bool IsNil() const noexcept {
        return static_cast<void const*>(this) == &qor_string_internal_data::g_afxInitData;
    }

    /// @}
    /// @name Counting, safe where other threads share the buffer
    /// @{

    /// Read or write nRefs; DropRef returns the value before.
    int Refs() const noexcept { return __atomic_load_n(&nRefs, __ATOMIC_ACQUIRE); }
    void AddRef() noexcept { __atomic_fetch_add(&nRefs, 1, __ATOMIC_SEQ_CST); }
    int DropRef() noexcept { return __atomic_fetch_sub(&nRefs, 1, __ATOMIC_SEQ_CST); }
    void SetRefs(int refs) noexcept { __atomic_store_n(&nRefs, refs, __ATOMIC_SEQ_CST); }

    /// @}
};

/// @cond
namespace detail {

// The other of the library's two character types.
template <typename T>
struct OtherChar;
template <>
struct OtherChar<char> {
    using type = wchar_t;
};
template <>
struct OtherChar<wchar_t> {
    using type = char;
};

// A replacement of one text by another.
template <typename T>
struct Substitution;

inline std::size_t TextLength(char const* s) noexcept {
    return std::strlen(s);
}
inline std::size_t TextLength(wchar_t const* s) noexcept {
    return std::wcslen(s);
}

// Order of two zero-terminated texts by code; wide characters count as unsigned on every machine.
inline int CompareText(char const* a, char const* b) noexcept {
    return std::strcmp(a, b);
}
QORUTILS_API int CompareText(wchar_t const* a, wchar_t const* b) noexcept;

}  // namespace detail
/// @endcond

/// A shared, copy-on-write string of char or of wchar_t, in the manner of MFC's CString.
/// text/qor_string.h says what holds for all members: the model, lengths, failure, threads.
template <typename T>
class QORUTILS_API CQorStringT {
  public:
    /// @name Types
    /// @{

    using value_type = T;                               ///< the character
    using const_iterator = T const*;                    ///< a plain pointer
    using Data = CQorStringData<T>;                     ///< the buffer's header
    using Other = typename detail::OtherChar<T>::type;  ///< the other character type

    /// @}
    /// @name Construction
    /// @{

    /// The empty string.
    CQorStringT() noexcept { Init(); }

    /// One character, also when it is 0: the length is 1 then, too.
    CQorStringT(T ch);

    /// n times ch; empty when n is below 1.
    CQorStringT(T ch, int n);

    /// A copy of the zero-terminated s. Empty for null and, as callers ported from Windows pass
    /// resource identifiers here, for every pointer value below 65536: such are never read.
    CQorStringT(T const* s);
    /// The empty string.
    CQorStringT(std::nullptr_t) noexcept { Init(); }

    /// Exactly n characters of s, zeros among them included; s is not read when n is 0.
    CQorStringT(T const* s, int n);

    /// The bytes taken as char; wide strings convert them as from char.
    CQorStringT(unsigned char const* s);

    /// Converts the zero-terminated s as the process locale says. Null gives the empty string.
    /// To char, a text that the locale cannot encode whole gives the empty string. To wchar_t, what
    /// stands before the first invalid sequence is kept.
    CQorStringT(Other const* s);

    /// To wchar_t: converts at most n wide characters (any negative n: the whole text), stops at
    /// the terminator and at an invalid sequence, and reads no byte beyond those.
    /// On purpose: to char, n is only tested for 0 (empty); any other n converts the whole text.
    CQorStringT(Other const* s, int n);

    /// Shares src's buffer. On purpose: a locked string is not shared but copied, up to its first
    /// zero character.
    CQorStringT(CQorStringT const& src) : m_pchData(src.m_pchData) {
        Data* const data = src.GetData();
        if (data->Refs() >= 0)
            data->AddRef();
        else if (!data->IsNil())
            CopyLocked(src);
    }

    /// Takes src's buffer over as it is, a lock included; src becomes empty.
    CQorStringT(CQorStringT&& src) noexcept : m_pchData(src.m_pchData) { src.Init(); }

    /// Gives back the buffer, which is freed with the last string that shares it.
    ~CQorStringT() { Release(GetData()); }

    /// @}
    /// @name Assignment
    /// @{

    /// Shares src's buffer; copies instead when this string or src is locked. This string's lock
    /// survives. Assigning an empty string to one that owns its buffer alone keeps that buffer.
    inline CQorStringT& operator=(CQorStringT const& src);

    /// As assigning a copy of src; takes its buffer over where that would be shared.
    inline CQorStringT& operator=(CQorStringT&& src);

    /// Keeps the own buffer when it is large enough and not shared. s may lie inside this string.
    /// Null counts as the empty text.
    CQorStringT& operator=(T const* s);
    /// As the empty text.
    CQorStringT& operator=(std::nullptr_t);
    /// The bytes taken as char; wide strings convert them as from char.
    CQorStringT& operator=(unsigned char const* s);

    /// Converts as the constructor does.
    CQorStringT& operator=(Other const* s);

    /// One character.
    CQorStringT& operator=(T ch);
    /// One character of the other type, narrowed or widened by value, not converted.
    CQorStringT& operator=(Other ch) { return *this = ByValue(ch); }

    /// @}
    /// @name Exchange
    /// @{

    /// Exchanges the two buffers, locks included.
    friend void swap(CQorStringT& a, CQorStringT& b) noexcept {
        T* const characters = a.m_pchData;
        a.m_pchData = b.m_pchData;
        b.m_pchData = characters;
    }

    /// @}
    /// @name Length
    /// @{

    /// The length in characters, terminator excluded.
    int GetLength() const noexcept { return GetData()->nDataLength; }
    int size() const noexcept { return GetLength(); }
    int length() const noexcept { return GetLength(); }

    /// @}
    /// @name Emptiness
    /// @{

    /// Whether the length is 0.
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    bool empty() const noexcept { return IsEmpty(); }

    /// @}
    /// @name The characters
    /// @{

    /// The capacity in characters, terminator excluded.
    int GetAllocLength() const noexcept { return GetData()->nAllocLength; }

    /// The zero-terminated characters; never null.
    operator T const*() const noexcept { return m_pchData; }
    /// The zero-terminated characters; never null.
    T const* c_str() const noexcept { return m_pchData; }
    /// The first character.
    T const* begin() const noexcept { return m_pchData; }
    /// Behind the last character: at the terminator.
    T const* end() const noexcept { return m_pchData + GetLength(); }

    /// The character at index i. No range test, here and in SetAt.
    T GetAt(int i) const noexcept { return m_pchData[i]; }
    /// The character at index i. No range test.
    T operator[](int i) const noexcept { return m_pchData[i]; }

    /// Any other integer: without this one, the pointer that a string converts to could be meant.
    template <typename Index>
    typename std::enable_if<std::is_integral<Index>::value, T>::type operator[](
        Index i) const noexcept {
        return m_pchData[i];
    }

    /// Stores ch at index i, in a buffer of this string's own. Storing 0 shortens the text that is
    /// seen, not the length.
    void SetAt(int i, T ch);

    /// @}
    /// @name Direct access to the buffer
    /// @{

    /// A writable buffer, not shared, for at least minLen characters, with the present text. A
    /// buffer that is shared or too small is replaced by one of max(minLen, length) characters.
    /// Call ReleaseBuffer() after writing and before any other member.
    T* GetBuffer(int minLen);

    /// GetBuffer(n), with the length set to n and a terminator at n.
    T* GetBufferSetLength(int n);

    /// Sets the length to n, or measures the text in the buffer when n is negative. n is not
    /// compared with the capacity.
    void ReleaseBuffer(int n = -1);

    /// Makes the buffer private to this string until UnlockBuffer: copies get their own. An
    /// operation that has to replace the buffer ends the lock, assigning another string excepted.
    T* LockBuffer();
    /// Ends the lock. Only for a string that is locked: of a buffer that is shared, it forgets the
    /// other strings.
    void UnlockBuffer();

    /// Gives back capacity beyond the length.
    void FreeExtra();

    /// Sets the length to n.
    /// On purpose: an n beyond the length lengthens the string by whatever the buffer holds there;
    /// a negative one measures the text.
    void Truncate(int n);

    /// Becomes empty. Gives the buffer back; a locked one is kept, with length 0.
    void Empty();

    /// @}
    /// @name Search
    /// Results are indices, or -1. All searches see the zero-terminated text, so they end at a zero
    /// among the characters. A negative start, or a null text or set, finds nothing.
    /// @{

    /// The first ch at or after start.
    /// On purpose: start = length finds nothing here, while it may find a text (an empty one).
    /// Searching for 0 finds the terminator.
    int Find(T ch, int start = 0) const;
    /// The first place at or after start where sub begins.
    int Find(T const* sub, int start = 0) const { return FindFirst(sub, SafeStrlen(sub), start); }
    /// The last ch.
    int ReverseFind(T ch) const;
    /// The first character that is in set.
    int FindOneOf(T const* set) const;

    /// @}
    /// @name Extraction
    /// Counts and positions are clamped to the string. A result that is the whole string shares its
    /// buffer.
    /// @{

    /// count characters from first.
    CQorStringT Mid(int first, int count) const;
    /// All characters from first.
    CQorStringT Mid(int first) const;
    /// The first count characters.
    CQorStringT Left(int count) const;
    /// The last count characters.
    CQorStringT Right(int count) const;

    /// The leading run of characters that are in set. A null set contains none.
    CQorStringT SpanIncluding(T const* set) const;
    /// The leading run of characters that are not in set. A null set contains none.
    CQorStringT SpanExcluding(T const* set) const;

    /// The next token at or after start, which moves to one past the delimiter behind it. When
    /// there is none left: start becomes -1 and the result is empty. Runs of delimiters give no
    /// empty tokens. A negative start gives the empty string and stays.
    /// On purpose: with an empty or null delims the rest from start is returned and start stays.
    CQorStringT Tokenize(T const* delims, int& start) const;

    /// @}
    /// @name Case and order
    /// They make the buffer private even when nothing changes in it, and end at a zero among the
    /// characters.
    /// @{

    /// To upper case, as the process locale says.
    CQorStringT& MakeUpper();
    /// To lower case, as the process locale says.
    CQorStringT& MakeLower();
    /// Reverses the order of the characters.
    CQorStringT& MakeReverse();

    /// @}
    /// @name Trimming
    /// They make the buffer private even when nothing changes in it, unless stated. The trailing
    /// run is the one before the first zero among the characters.
    /// @{

    /// Removes trailing white space (iswspace).
    /// On purpose: char strings test each byte by itself with iswspace, whatever multibyte
    /// character it belongs to; so do TrimLeft() and Trim().
    CQorStringT& TrimRight();
    /// Removes leading white space.
    CQorStringT& TrimLeft();
    /// Removes white space at both ends.
    CQorStringT& Trim();
    /// Removes each trailing ch.
    CQorStringT& TrimRight(T ch);
    /// Removes each leading ch.
    CQorStringT& TrimLeft(T ch);
    /// Removes ch at both ends.
    CQorStringT& Trim(T ch);
    /// Removes trailing characters that are in set. With a null set, changes and copies nothing.
    CQorStringT& TrimRight(T const* set);
    /// Removes leading characters that are in set. With a null or empty set, changes and copies
    /// nothing.
    CQorStringT& TrimLeft(T const* set);
    /// Removes characters that are in set at both ends. With a null set, changes and copies
    /// nothing.
    CQorStringT& Trim(T const* set);

    /// @}
    /// @name Replacement, insertion, deletion
    /// They make the buffer private even when nothing changes in it, unless stated.
    /// @{

    /// Replaces every oldChar, beyond zeros too; returns how many. Equal ones copy nothing.
    int Replace(T oldChar, T newChar);

    /// Replaces oldText from left to right, never overlapping; returns how often. A null or empty
    /// oldText, or one that does not occur, copies nothing; a null newText removes.
    /// On purpose: when the text grows inside the buffer that it has, only the zero-terminated runs
    /// that begin before the old length are changed, though all are counted in result and length.
    int Replace(T const* oldText, T const* newText);

    /// Removes every ch; returns how many.
    int Remove(T ch);

    /// Puts ch at index, which is clamped to the string; growth is exact. Returns the new length.
    int Insert(int index, T ch);
    /// The same for a text. A null or empty s copies nothing; s may lie inside this string.
    int Insert(int index, T const* s);
    /// Insert at the end.
    int push_back(T ch) { return Insert(GetLength(), ch); }

    /// Removes count characters from index, as far as there are. A negative index counts as 0.
    /// On purpose: returns the length before the deletion, as in MFC.
    int Delete(int index, int count = 1);

    /// @}
    /// @name Formatting
    /// @{

    /// As sprintf and vsprintf into this string. On purpose: a wide text of 2048 characters or
    /// more, or one that cannot be formatted, leaves the text as it is, up to its first zero
    /// character; a char text may have any length. Arguments may point into this string.
    void Format(T const* format, ...);
    void FormatV(T const* format, va_list args);

    /// @}
    /// @name Appending
    /// @{

    /// Appends a text or a character; growth is exact. s may lie inside this string. A character of
    /// the other type is narrowed or widened by value, not converted.
    CQorStringT& operator+=(CQorStringT const& s) { return Append(s.GetLength(), s.m_pchData); }
    CQorStringT& operator+=(T const* s) { return Append(SafeStrlen(s), s); }
    inline CQorStringT& operator+=(T ch);
    CQorStringT& operator+=(Other ch) { return *this += ByValue(ch); }

    /// @}
    /// @name Concatenation
    /// @{

    /// A new string of both texts, null being an empty one. A character of the other type is
    /// narrowed or widened by value, not converted.
    friend CQorStringT operator+(CQorStringT const& a, CQorStringT const& b) {
        return Concat(a.GetLength(), a.m_pchData, b.GetLength(), b.m_pchData);
    }
    friend CQorStringT operator+(CQorStringT const& a, T const* b) {
        return Concat(a.GetLength(), a.m_pchData, SafeStrlen(b), b);
    }
    friend CQorStringT operator+(T const* a, CQorStringT const& b) {
        return Concat(SafeStrlen(a), a, b.GetLength(), b.m_pchData);
    }
    friend CQorStringT operator+(CQorStringT const& a, T b) {
        return Concat(a.GetLength(), a.m_pchData, 1, &b);
    }
    friend CQorStringT operator+(T a, CQorStringT const& b) {
        return Concat(1, &a, b.GetLength(), b.m_pchData);
    }

    friend CQorStringT operator+(CQorStringT const& a, Other b) { return a + ByValue(b); }
    friend CQorStringT operator+(Other a, CQorStringT const& b) { return ByValue(a) + b; }

    /// @}
    /// @name BSTR
    /// See qorsys/qor_com.h; the caller frees the array with SysFreeString(). Unlike everything
    /// else here, they report a failed check, on purpose also when they succeed.
    /// @{

    /// A new BSTR of the length. Wide strings copy their text, zeros among it included. On purpose:
    /// char strings convert nothing, so that the characters have no value yet.
    wchar_t* AllocSysString() const;

    /// Frees `*pbstr`, puts such a BSTR in its place, and returns it; `*pbstr` is null when that
    /// throws.
    wchar_t* SetSysString(wchar_t** pbstr) const;

    /// @}
    /// @name Comparison
    /// @{

    /// Compares the zero-terminated texts by code; the result is below, equal to or above 0. Null
    /// counts as empty.
    int Compare(T const* s) const {
        return detail::CompareText(m_pchData, s == nullptr ? get_afxChNil() : s);
    }

    /// The same, but ignores case as the process locale says. On purpose: wide strings return the
    /// difference of the two folded characters, but, when this string is the shorter, minus the
    /// other's character as it stands: "abc" against "ABCD" gives -'D'.
    int CompareNoCase(T const* s) const;

    /// @}
    /// @name Comparison by operators
    /// @{

    /// As Compare().
    friend bool operator==(CQorStringT const& a, CQorStringT const& b) {
        return a.m_pchData == b.m_pchData || a.Compare(b.m_pchData) == 0;
    }
    friend bool operator==(CQorStringT const& a, T const* b) { return a.Compare(b) == 0; }
    friend bool operator==(T const* a, CQorStringT const& b) { return b.Compare(a) == 0; }
    friend bool operator!=(CQorStringT const& a, CQorStringT const& b) { return !(a == b); }
    friend bool operator!=(CQorStringT const& a, T const* b) { return !(a == b); }
    friend bool operator!=(T const* a, CQorStringT const& b) { return !(a == b); }
    friend bool operator<(CQorStringT const& a, CQorStringT const& b) {
        return a.Compare(b.m_pchData) < 0;
    }
    friend bool operator<(CQorStringT const& a, T const* b) { return a.Compare(b) < 0; }
    friend bool operator<(T const* a, CQorStringT const& b) { return b.Compare(a) > 0; }
    friend bool operator>(CQorStringT const& a, CQorStringT const& b) { return b < a; }
    friend bool operator>(CQorStringT const& a, T const* b) { return b < a; }
    friend bool operator>(T const* a, CQorStringT const& b) { return b < a; }
    friend bool operator<=(CQorStringT const& a, CQorStringT const& b) { return !(b < a); }
    friend bool operator<=(CQorStringT const& a, T const* b) { return !(b < a); }
    friend bool operator<=(T const* a, CQorStringT const& b) { return !(b < a); }
    friend bool operator>=(CQorStringT const& a, CQorStringT const& b) { return !(a < b); }
    friend bool operator>=(CQorStringT const& a, T const* b) { return !(a < b); }
    friend bool operator>=(T const* a, CQorStringT const& b) { return !(a < b); }

    /// @}
    /// @name The nil string
    /// @{

    /// The empty zero-terminated string.
    static T const* get_afxChNil() noexcept;
    /// The header of the nil string.
    static Data* get_afxDataNil() noexcept {
        return static_cast<Data*>(static_cast<void*>(&qor_string_internal_data::g_afxInitData));
    }
    /// An empty string object, which is never destroyed.
    static CQorStringT const& AfxGetEmptyString() noexcept;

    /// Does nothing; ported code calls it.
    static void mfcString() noexcept {}

    /// @}
    /// @name Primitives of the buffer
    /// Public because code ported from MFC derives from the string and calls them.
    /// @{

    /// The buffer's header.
    Data* GetData() const noexcept { return static_cast<Data*>(static_cast<void*>(m_pchData)) - 1; }

    /// Points at the nil string, releasing nothing.
    void Init() noexcept { m_pchData = static_cast<T*>(qor_string_internal_data::g_afxNilStr); }

    /// Points at a new buffer of n characters (the nil string for 0), releasing nothing. The
    /// characters have no value yet.
    void AllocBuffer(int n);

    /// Frees a block, unless it is the nil string's or has, like that one, a capacity of 0.
    static void FreeData(Data* data) noexcept {
        if (!data->IsNil() && data->nAllocLength != 0) ::operator delete[](data);
    }

    /// Drops this string's reference, freeing the buffer with the last one, and becomes empty.
    void Release() noexcept {
        Release(GetData());
        Init();
    }

    /// The same for a header, touching no string. A buffer that nobody shares, a locked one
    /// included, is freed without touching its count.
    static void Release(Data* data) noexcept {
        if (!data->IsShared() || data->DropRef() < 2) FreeData(data);
    }

    /// Replaces a shared buffer by a copy of exactly the length.
    void CopyBeforeWrite();

    /// Makes the buffer private and at least n characters large; the text is lost if that takes a
    /// new buffer.
    void AllocBeforeWrite(int n);

    /// Gives dest, which must own nothing, copyLen characters from copyIndex and room for extraLen.
    void AllocCopy(CQorStringT& dest, int copyLen, int copyIndex, int extraLen) const;

    /// Becomes the n characters of src, which may lie inside this string.
    void AssignCopy(int n, T const* src);

    /// Points at a new buffer with both texts, releasing nothing; does nothing when both are empty.
    void ConcatCopy(int len1, T const* s1, int len2, T const* s2);

    /// Appends n characters; grows to exactly the new length when there is no room.
    void ConcatInPlace(int n, T const* s);

    /// The length of a zero-terminated text; 0 for null.
    static int SafeStrlen(T const* s) noexcept {
        return s == nullptr ? 0 : CheckedLength(detail::TextLength(s));
    }

    /// @}

  private:
    // A char counts as unsigned on every machine.
    static T ByValue(Other ch) noexcept {
        return static_cast<T>(static_cast<typename std::make_unsigned<Other>::type>(ch));
    }

    // Lengths that no int holds become -1, which no buffer can have.
    static int CheckedLength(std::uint64_t length) noexcept {
        return length <= INT_MAX ? static_cast<int>(length) : -1;
    }

    inline void ReplaceBlock(Data* fresh) noexcept;
    inline CQorStringT& Append(int n, T const* s);
    CQorStringT& AppendGrowing(T ch);
    void CopyLocked(CQorStringT const& src);
    int FindFirst(T const* sub, int n, int start) const;
    static CQorStringT Concat(int len1, T const* s1, int len2, T const* s2);

    // The following are called from inside the library only.
    QORUTILS_LOCAL static int AddLengths(int a, int b) noexcept;
    QORUTILS_LOCAL static Data* NewBlock(int n);
    QORUTILS_LOCAL bool CanHold(int n) const noexcept;
    QORUTILS_LOCAL bool Holds(T const* s) const noexcept;
    QORUTILS_LOCAL void SetLength(int n) noexcept;
    QORUTILS_LOCAL void AssignConverted(Other const* s);
    QORUTILS_LOCAL void AssignLongConverted(Other const* s);
    QORUTILS_LOCAL CQorStringT& Keep(int first, int end);
    QORUTILS_LOCAL int InsertCopy(int index, int n, T const* s);
    QORUTILS_LOCAL int ReplaceShrinking(detail::Substitution<T> const& change, T const* first);
    QORUTILS_LOCAL int ReplaceGrowing(detail::Substitution<T> const& change, T const* first);
    QORUTILS_LOCAL void FormatText(T const* format, va_list args);
    QORUTILS_LOCAL void FormatLongText(int length, T const* format, va_list args);

    T* m_pchData;
};

/// @cond
// To char and to wchar_t, n means different things.
template <>
QORUTILS_API CQorStringT<char>::CQorStringT(wchar_t const* s, int n);
template <>
QORUTILS_API CQorStringT<wchar_t>::CQorStringT(char const* s, int n);

// The compiler checks the arguments of the narrow ones: an attribute that only a specialization can
// carry.
template <>
QORUTILS_API __attribute__((format(printf, 2, 3))) void CQorStringT<char>::Format(
    char const* format, ...);
template <>
QORUTILS_API __attribute__((format(printf, 2, 0))) void CQorStringT<char>::FormatV(
    char const* format, va_list args);

template <>
inline char const* CQorStringT<char>::get_afxChNil() noexcept {
    return &qor_string_internal_data::afxChNil;
}

template <>
inline wchar_t const* CQorStringT<wchar_t>::get_afxChNil() noexcept {
    return &qor_string_internal_data::afxChNilW;
}

template <typename T>
inline CQorStringT<T>& CQorStringT<T>::operator=(CQorStringT const& src) {
    if (m_pchData == src.m_pchData) return *this;
    bool const locked = GetData()->IsLocked();
    if (locked || src.GetData()->Refs() < 0) {
        AssignCopy(src.GetLength(), src.m_pchData);
        if (locked && !GetData()->IsNil()) GetData()->SetRefs(-1);
    } else {
        src.GetData()->AddRef();
        ReplaceBlock(src.GetData());
    }
    return *this;
}

template <typename T>
inline CQorStringT<T>& CQorStringT<T>::operator=(CQorStringT&& src) {
    bool const locked = GetData()->IsLocked();
    if (this == &src || locked || src.GetData()->Refs() < 0)
        return *this = static_cast<CQorStringT const&>(src);
    ReplaceBlock(src.GetData());
    src.Init();
    return *this;
}

template <typename T>
inline CQorStringT<T>& CQorStringT<T>::operator+=(T ch) {
    T* const text = m_pchData;
    Data* const data = GetData();
    int const length = data->nDataLength;
    if (length == data->nAllocLength || data->IsShared()) return AppendGrowing(ch);
    text[length] = ch;
    text[length + 1] = T();
    data->nDataLength = length + 1;
    return *this;
}

// gcc takes the header, which lies in front of the text, for an access outside of s where s is the
// string's own text.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
template <typename T>
inline CQorStringT<T>& CQorStringT<T>::Append(int n, T const* s) {
    T* const text = m_pchData;
    Data* const data = GetData();
    int const length = data->nDataLength;
    if (n < 1 || n > data->nAllocLength - length || data->IsShared()) {
        ConcatInPlace(n, s);
    } else {
        std::memcpy(text + length, s, static_cast<std::size_t>(n) * sizeof(T));
        text[length + n] = T();
        data->nDataLength = length + n;
    }
    return *this;
}
#pragma GCC diagnostic pop

template <typename T>
inline void CQorStringT<T>::ReplaceBlock(Data* fresh) noexcept {
    Data* const old = GetData();
    m_pchData = fresh->data();
    Release(old);
}

extern template class CQorStringT<char>;
extern template class CQorStringT<wchar_t>;
/// @endcond

}  // namespace qor_text

namespace std {

/// The hash of a string, for the unordered containers.
template <typename T>
struct hash<qor_text::CQorStringT<T>> {
    /// Of the zero-terminated text, as `==` compares it. The value is as wide as size_t.
    size_t operator()(qor_text::CQorStringT<T> const& s) const noexcept {
        uint64_t code = 14695981039346656037u;  // FNV-1a, over characters
        for (T const* p = s.c_str(); *p != T(); ++p)
            code = (code ^ static_cast<typename make_unsigned<T>::type>(*p)) * 1099511628211u;
        return static_cast<size_t>(code ^ (code >> 32));
    }
};

}  // namespace std

#endif  // QORUTILS_TEXT_QOR_STRING_H_
