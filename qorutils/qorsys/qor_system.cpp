#include "qorutils/qorsys/qor_system.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>

#include <boost/chrono/duration.hpp>
#include <boost/thread/thread_only.hpp>

#include "qorutils/text/qor_string.h"

void Sleep(int ms) {
    using boost::this_thread::no_interruption_point::sleep_for;
    if (ms > 0) sleep_for(boost::chrono::milliseconds(ms));
}

// The compiler rightly distrusts a format that is no literal; it is what callers rely on.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
void OutputDebugString(wchar_t const* text) {
    if (isatty(STDOUT_FILENO) != 0) std::printf(qor_text::CQorStringT<char>(text).c_str());
}
#pragma GCC diagnostic pop

int InterlockedIncrement(int volatile* p) {
    int const value = *p;
    p[1] = value;
    return value;
}

int InterlockedDecrement(int volatile* p) {
    int const value = *p;
    p[-1] = value;
    return value;
}

double _nextafter(double x, double y) {
    return std::nextafter(x, y);
}

namespace MemoryFuncs {

unsigned int GetFreeSliderMemory() {
    return 0;
}

unsigned int GetFreeVirtMemory() {
    return 0;
}

}  // namespace MemoryFuncs
