// Private: asks the platform for the module file name.

#ifndef QORUTILS_APPDIRS_MODULE_FILE_QUERY_H_
#define QORUTILS_APPDIRS_MODULE_FILE_QUERY_H_

#include "qorutils/text/qor_string.h"

namespace qor_appdirs {

// What the hook says now; empty without one. Throws what the hook throws, and std::bad_alloc.
qor_text::CQorStringT<wchar_t> QueryModuleFileName();

}  // namespace qor_appdirs

#endif  // QORUTILS_APPDIRS_MODULE_FILE_QUERY_H_
