// Where the programs and plug-ins lie that tests run and load.
#ifndef QORUTILS_TESTS_SUPPORT_BUILT_FILE_H_
#define QORUTILS_TESTS_SUPPORT_BUILT_FILE_H_

#include <cstdlib>
#include <string>

// The directory of the installed tests and of all that they need, which then came from another
// machine; null where they were built.
inline char const* InstalledTests() {
    return std::getenv("QORUTILS_TESTS_DIR");
}

// Where a file lies now that the build left at this path.
inline std::string BuiltFile(std::string const& path) {
    char const* const installed = InstalledTests();
    return installed == nullptr ? path : installed + path.substr(path.rfind('/'));
}

#endif  // QORUTILS_TESTS_SUPPORT_BUILT_FILE_H_
