// For programs that stand before the C library: they define functions of its names.
#ifndef QORUTILS_TESTS_SUPPORT_NEXT_IN_LINE_H_
#define QORUTILS_TESTS_SUPPORT_NEXT_IN_LINE_H_

#include <dlfcn.h>

#include <cstdlib>

// The C library's own function of this name and of the first argument's type, which is all that
// counts of that argument.
template <typename Function>
Function* NextInLine(Function*, char const* name) {
    void* const found = dlsym(RTLD_NEXT, name);
    if (found == nullptr) std::abort();
    return reinterpret_cast<Function*>(found);
}

#endif  // QORUTILS_TESTS_SUPPORT_NEXT_IN_LINE_H_
