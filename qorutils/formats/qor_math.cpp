#include "qorutils/formats/qor_math.h"

#include <cmath>
#include <limits>

namespace qor {
namespace math {

namespace {

double Scale(int precision) {
    static double const kPowers[] = {1.0, 10.0, 100.0, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
    return precision >= 0 && precision <= 9 ? kPowers[precision] : std::pow(10.0, precision);
}

}  // namespace

// Machines differ in the sign of the NaN that infinities give.
double round_prec(double x, int precision) {
    using Limits = std::numeric_limits<double>;
    if (x == 0 || std::isnan(x)) return 0.0;
    double const scale = Scale(precision);
    double const whole = std::trunc(x);
    double const rounded = std::trunc((x - whole) * scale + std::copysign(0.5, x)) / scale;
    double const result = std::nextafter(rounded, std::copysign(Limits::max(), x)) + whole;
    return std::isnan(result) ? Limits::quiet_NaN() : result;
}

}  // namespace math
}  // namespace qor
