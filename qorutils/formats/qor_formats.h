/// @file
/// Values and their texts: everything that namespace qor_formats offers.

#ifndef QORUTILS_FORMATS_QOR_FORMATS_H_
#define QORUTILS_FORMATS_QOR_FORMATS_H_

#include "qorutils/formats/names.h"
#include "qorutils/formats/number_text.h"
#include "qorutils/formats/text_lines.h"
#include "qorutils/formats/time_text.h"
#include "qorutils/formats/value_lists.h"

#endif  // QORUTILS_FORMATS_QOR_FORMATS_H_
