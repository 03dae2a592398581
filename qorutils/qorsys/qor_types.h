// The Win32 scalar types of the library's signatures.

#ifndef QORUTILS_QORSYS_QOR_TYPES_H_
#define QORUTILS_QORSYS_QOR_TYPES_H_

// 0 says no or failure; everything else says yes. The library returns 0 and 1 only.
using BOOL = int;

#endif  // QORUTILS_QORSYS_QOR_TYPES_H_
