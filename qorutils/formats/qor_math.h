/// @file
/// Rounding of floating-point numbers.

#ifndef QORUTILS_FORMATS_QOR_MATH_H_
#define QORUTILS_FORMATS_QOR_MATH_H_

#include "qorutils/export.h"

namespace qor {
namespace math {

/// x rounded to `precision` decimals, half away from zero. 0.0 for 0 and NaN; NaN for infinities.
/// On purpose: the result lies one unit in the last place of its fraction farther from zero than
/// the rounded number, so that formatting it with as many decimals does not round it down again.
/// A negative precision cuts the fraction off; it does not round tens or hundreds.
QORUTILS_API double round_prec(double x, int precision);

}  // namespace math
}  // namespace qor

#endif  // QORUTILS_FORMATS_QOR_MATH_H_
