// FILETIME as one number.
#ifndef QORUTILS_TESTS_SUPPORT_TICKS_H_
#define QORUTILS_TESTS_SUPPORT_TICKS_H_

#include <qorutils/qorsys/win_time.h>

#include <cstdint>

inline FILETIME FromTicks(std::uint64_t ticks) {
    return {static_cast<std::uint32_t>(ticks & 0xFFFFFFFFu),
            static_cast<std::uint32_t>(ticks >> 32)};
}

inline std::uint64_t Ticks(FILETIME const& ft) {
    return std::uint64_t{ft.dwHighDateTime} << 32 | ft.dwLowDateTime;
}

#endif  // QORUTILS_TESTS_SUPPORT_TICKS_H_
