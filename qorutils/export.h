/// @file
/// What every other public header needs: the library's version and the mark of an exported name.
#ifndef QORUTILS_EXPORT_H_
#define QORUTILS_EXPORT_H_

/// @name The version of the headers that a program was compiled against
/// The library keeps binary compatibility within one major version, which is also the number in its
/// soname. A text stands beside the three numbers.
/// @{

/// The first number, that of the soname.
#define QORUTILS_VERSION_MAJOR 1
#define QORUTILS_VERSION_MINOR 0         ///< The second number.
#define QORUTILS_VERSION_PATCH 0         ///< The third number.
#define QORUTILS_VERSION_STRING "1.0.0"  ///< "major.minor.patch"
/// @}

/// The library is built with hidden visibility: only what carries this mark can be linked to.
/// It is the same when the library is built and when it is used.
#define QORUTILS_API __attribute__((visibility("default")))

/// Keeps a member of an exported class inside the library.
#define QORUTILS_LOCAL __attribute__((visibility("hidden")))

#endif  // QORUTILS_EXPORT_H_
