// The time zone of the process, set for one scope.
#ifndef QORUTILS_TESTS_SUPPORT_SCOPED_TIME_ZONE_H_
#define QORUTILS_TESTS_SUPPORT_SCOPED_TIME_ZONE_H_

#include <ctime>

#include "support/scoped_variable.h"

// Local time follows `rule`, a POSIX rule such as "UTC0" or "AAA-2", while the object lives: unlike
// the name of a place, it needs no installed time zones. Not for tests that run threads.
class ScopedTimeZone {
  public:
    explicit ScopedTimeZone(char const* rule) : variable_("TZ", rule) { tzset(); }
    ScopedTimeZone(ScopedTimeZone const&) = delete;
    ScopedTimeZone& operator=(ScopedTimeZone const&) = delete;

  private:
    struct Restorer {
        ~Restorer() { tzset(); }
    };

    Restorer restorer_;  // destroyed last, when the variable is what it was
    ScopedVariable variable_;
};

#endif  // QORUTILS_TESTS_SUPPORT_SCOPED_TIME_ZONE_H_
