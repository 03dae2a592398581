/// @file
/// The Win32 scalar types and COM identifiers of the library's signatures.

#ifndef QORUTILS_QORSYS_QOR_TYPES_H_
#define QORUTILS_QORSYS_QOR_TYPES_H_

#include <cstdint>

/// 0 says no or failure; everything else says yes. The library returns 0 and 1 only.
using BOOL = int;

/// 32 bits, without sign.
using DWORD = std::uint32_t;

/// The outcome of a COM call: negative for a failure. 32 bits on every machine.
using HRESULT = std::int32_t;

/// There is no such interface: what CoCreateInstance() returns.
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
/// No such class: what the functions that turn identifiers to text and back return.
constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3);

/// @name Texts of COM
/// @{

/// Characters have 32 bits here. A BSTR is a plain zero-terminated array, without the length in
/// front of it that it has on Windows.
using OLECHAR = wchar_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = OLECHAR const*;
using BSTR = OLECHAR*;

/// @}
/// @name Identifiers of COM
/// @{

/// 128 bits in the layout of Windows.
struct GUID {
    std::uint32_t Data1;    ///< the first 8 hexadecimal digits of its text
    std::uint16_t Data2;    ///< the next 4
    std::uint16_t Data3;    ///< the next 4
    std::uint8_t Data4[8];  ///< the last 16, two in each byte
};

/// Names a class or an interface.
using CLSID = GUID;
using IID = GUID;
using REFGUID = GUID const&;
using REFCLSID = CLSID const&;
using REFIID = IID const&;

/// @}

struct IUnknown;
/// An object of COM. Only the pointer is passed on: no object has this type.
using LPUNKNOWN = IUnknown*;

#endif  // QORUTILS_QORSYS_QOR_TYPES_H_
