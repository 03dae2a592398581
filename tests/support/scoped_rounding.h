// The direction in which floating-point arithmetic rounds, set for one scope.
#ifndef QORUTILS_TESTS_SUPPORT_SCOPED_ROUNDING_H_
#define QORUTILS_TESTS_SUPPORT_SCOPED_ROUNDING_H_

#include <cfenv>

// The direction, such as FE_UPWARD, is that of the thread while the object lives.
class ScopedRounding {
  public:
    explicit ScopedRounding(int direction) : previous_(std::fegetround()) {
        std::fesetround(direction);
    }
    ~ScopedRounding() { std::fesetround(previous_); }
    ScopedRounding(ScopedRounding const&) = delete;
    ScopedRounding& operator=(ScopedRounding const&) = delete;

  private:
    int previous_;
};

#endif  // QORUTILS_TESTS_SUPPORT_SCOPED_ROUNDING_H_
