// Private: the time of a line, and what stands in front of its message.

#ifndef QORUTILS_LOGGING_LOG_LINE_H_
#define QORUTILS_LOGGING_LOG_LINE_H_

#include <time.h>

#include <cstdint>

namespace qor_logging {

// Milliseconds as a 32-bit count that starts again at 0: the cut is made on a whole number, because
// a double beyond 32 bits converts differently on different machines.
inline std::uint32_t ToTicks(timespec const& time) {
    double const milliseconds =
        static_cast<double>(time.tv_nsec) / 1000000.0 + static_cast<double>(time.tv_sec) * 1000.0;
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(milliseconds));
}

inline std::uint32_t CurrentTicks() {
    timespec now;
    return clock_gettime(CLOCK_MONOTONIC, &now) == 0 ? ToTicks(now) : 0;
}

// The text of "%05u.%03u ;%2d ; " for seconds, milliseconds and level. Made by hand, which is
// faster than any format.
class LinePrefix {
  public:
    LinePrefix(std::uint32_t ticks, long level) {
        Put(L' ');
        Put(L';');
        Put(L' ');
        PutLevel(static_cast<std::int32_t>(level));
        Put(L';');
        Put(L' ');
        PutNumber(ticks % 1000, 3);
        Put(L'.');
        PutNumber(ticks / 1000, 5);
    }

    wchar_t const* Text() const { return first_; }
    int Length() const { return static_cast<int>(text_ + kSize - first_); }

  private:
    static constexpr int kSize = 32;

    // From right to left.
    void Put(wchar_t ch) { *--first_ = ch; }
    void PutDigits(std::uint32_t number) {
        do Put(static_cast<wchar_t>(L'0' + number % 10));
        while ((number /= 10) != 0);
    }
    void PutNumber(std::uint32_t number, int width) {
        wchar_t const* const filled = first_ - width;
        PutDigits(number);
        while (first_ > filled) Put(L'0');
    }
    void PutLevel(std::int32_t level) {
        wchar_t const* const filled = first_ - 2;
        auto const bits = static_cast<std::uint32_t>(level);
        PutDigits(level < 0 ? 0 - bits : bits);
        if (level < 0) Put(L'-');
        if (first_ > filled) Put(L' ');
    }

    wchar_t text_[kSize];
    wchar_t* first_ = text_ + kSize;
};

}  // namespace qor_logging

#endif  // QORUTILS_LOGGING_LOG_LINE_H_
