/// @file
/// BSTR and COM functions, so that code written for Windows links and runs.
///
/// There is no COM: what would create or name an object refuses. A BSTR has no length in front of
/// it, only a terminator behind it: it is a plain array, and its length is found by counting.
///
/// Every refusal, and on purpose every successful allocation too, is reported as a failed check
/// (logging/checks.h), from "qorutils/qorsys/qor_com" with an empty text and the line stated here.
/// A report is written and flushed to the main log, so that these functions are slow.

#ifndef QORUTILS_QORSYS_QOR_COM_H_
#define QORUTILS_QORSYS_QOR_COM_H_

#include "qorutils/export.h"
#include "qorutils/qorsys/qor_types.h"

/// @name BSTR
/// `CQorStringT::AllocSysString` and `SetSysString` make them from strings.
/// @{

/// A new array of len characters and a terminator, for SysFreeString(). The characters are those at
/// src, zeros among them included; with a null src they have no value yet. Null when the heap is
/// exhausted; throws std::bad_array_new_length for a len above 0x1FBFFFFF.
/// On purpose: reports line 101 for every len up to 0x7FFFFFFE, so for every ordinary call.
QORUTILS_API wchar_t* SysAllocStringLen(wchar_t const* src, unsigned int len);

/// Frees `*pbstr` and puts a new array, as from SysAllocStringLen(), in its place. Returns 1, or 0
/// with `*pbstr` null when the heap is exhausted; where that function throws, `*pbstr` is null as
/// well. Unlike on Windows, src must not point into the old string, which is freed first.
/// On purpose: a null pbstr is reported as line 122 and then used all the same.
QORUTILS_API int SysReAllocStringLen(wchar_t** pbstr, wchar_t const* src, unsigned int len);

/// Frees an array from the two functions above. Does nothing for null.
QORUTILS_API void SysFreeString(wchar_t* bstr);

/// @}
/// @name COM
/// These read none of their arguments and write through none of them: unlike on Windows, a result
/// pointer keeps what it holds.
/// @{

/// Returns E_NOINTERFACE; reports line 55.
QORUTILS_API HRESULT CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context,
                                      REFIID interfaceId, void** object);

/// Returns CO_E_CLASSSTRING; reports line 61.
QORUTILS_API HRESULT CLSIDFromProgID(LPCOLESTR programId, CLSID* classId);
/// Returns CO_E_CLASSSTRING; reports line 67.
QORUTILS_API HRESULT StringFromCLSID(REFCLSID classId, LPOLESTR* text);
/// Returns CO_E_CLASSSTRING; reports line 73.
QORUTILS_API HRESULT CLSIDFromString(LPCOLESTR text, CLSID* classId);
/// Returns CO_E_CLASSSTRING; reports line 79.
QORUTILS_API HRESULT StringFromIID(REFIID interfaceId, LPOLESTR* text);
/// Returns CO_E_CLASSSTRING; reports line 85.
QORUTILS_API HRESULT IIDFromString(LPCOLESTR text, IID* interfaceId);

/// @}

#endif  // QORUTILS_QORSYS_QOR_COM_H_
