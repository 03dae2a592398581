// A variable of the environment, set for one scope.
#ifndef QORUTILS_TESTS_SUPPORT_SCOPED_VARIABLE_H_
#define QORUTILS_TESTS_SUPPORT_SCOPED_VARIABLE_H_

#include <cstdlib>
#include <string>

// The variable has `value` while the object lives, or is not set when that is null, and what it was
// before afterwards. Not for tests that run threads.
class ScopedVariable {
  public:
    ScopedVariable(char const* name, char const* value) : name_(name) {
        char const* const previous = std::getenv(name);
        wasSet_ = previous != nullptr;
        if (wasSet_) previous_ = previous;
        Set(value);
    }
    ~ScopedVariable() { Set(wasSet_ ? previous_.c_str() : nullptr); }
    ScopedVariable(ScopedVariable const&) = delete;
    ScopedVariable& operator=(ScopedVariable const&) = delete;

  private:
    void Set(char const* value) {
        if (value != nullptr)
            setenv(name_.c_str(), value, 1);
        else
            unsetenv(name_.c_str());
    }

    std::string name_;
    std::string previous_;
    bool wasSet_;
};

#endif  // QORUTILS_TESTS_SUPPORT_SCOPED_VARIABLE_H_
