// Sets the locale of the process for one scope, so that a test means the same everywhere.
#ifndef QORUTILS_TESTS_SUPPORT_SCOPED_LOCALE_H_
#define QORUTILS_TESTS_SUPPORT_SCOPED_LOCALE_H_

#include <clocale>
#include <stdexcept>
#include <string>

// LC_ALL is `name` while the object lives and what it was before afterwards. "C" and "C.UTF-8"
// exist on every machine; any other name may be missing, and a missing one throws.
// Not for tests that run threads: the locale belongs to the whole process.
class ScopedLocale {
  public:
    explicit ScopedLocale(char const* name) : previous_(std::setlocale(LC_ALL, nullptr)) {
        if (std::setlocale(LC_ALL, name) == nullptr)
            throw std::runtime_error(std::string("no such locale: ") + name);
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, previous_.c_str()); }
    ScopedLocale(ScopedLocale const&) = delete;
    ScopedLocale& operator=(ScopedLocale const&) = delete;

  private:
    std::string previous_;
};

#endif  // QORUTILS_TESTS_SUPPORT_SCOPED_LOCALE_H_
