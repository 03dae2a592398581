/// @file
/// Everything that the library offers.

#ifndef QORUTILS_QORUTILS_H_
#define QORUTILS_QORUTILS_H_

#include "qorutils/appdirs/app_dirs.h"
#include "qorutils/appdirs/module_file_name.h"
#include "qorutils/bignum/bignum.h"
#include "qorutils/export.h"
#include "qorutils/formats/names.h"
#include "qorutils/formats/number_text.h"
#include "qorutils/formats/qor_array.h"
#include "qorutils/formats/qor_formats.h"
#include "qorutils/formats/qor_math.h"
#include "qorutils/formats/text_lines.h"
#include "qorutils/formats/time_text.h"
#include "qorutils/formats/value_lists.h"
#include "qorutils/fs/cfile.h"
#include "qorutils/fs/dir_trees.h"
#include "qorutils/fs/file_enumerator.h"
#include "qorutils/fs/file_funcs.h"
#include "qorutils/fs/file_names.h"
#include "qorutils/fs/generated_names.h"
#include "qorutils/fs/platform_file.h"
#include "qorutils/fs/qor_ini_file.h"
#include "qorutils/logging/checks.h"
#include "qorutils/logging/main_logger.h"
#include "qorutils/logging/trace.h"
#include "qorutils/qorsys/file_time.h"
#include "qorutils/qorsys/qor_com.h"
#include "qorutils/qorsys/qor_system.h"
#include "qorutils/qorsys/qor_time.h"
#include "qorutils/qorsys/qor_types.h"
#include "qorutils/qorsys/win_time.h"
#include "qorutils/text/c_string.h"
#include "qorutils/text/qor_memory.h"
#include "qorutils/text/qor_string.h"
#include "qorutils/text/safe_format.h"
#include "qorutils/text/text_encoding.h"
#include "qorutils/text/utf8.h"

#endif  // QORUTILS_QORUTILS_H_
