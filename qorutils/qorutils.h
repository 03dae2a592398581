// Everything that the library offers.

#ifndef QORUTILS_QORUTILS_H_
#define QORUTILS_QORUTILS_H_

#include "qorutils/export.h"
#include "qorutils/fs/file_names.h"
#include "qorutils/fs/platform_file.h"
#include "qorutils/logging/checks.h"
#include "qorutils/qorsys/file_time.h"
#include "qorutils/qorsys/qor_types.h"
#include "qorutils/qorsys/win_time.h"
#include "qorutils/text/c_string.h"
#include "qorutils/text/qor_memory.h"
#include "qorutils/text/qor_string.h"
#include "qorutils/text/safe_format.h"
#include "qorutils/text/text_encoding.h"
#include "qorutils/text/utf8.h"

#endif  // QORUTILS_QORUTILS_H_
