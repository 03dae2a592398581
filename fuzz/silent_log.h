// Keeps the library's log from taking room and time while a target runs.

#ifndef QORUTILS_FUZZ_SILENT_LOG_H_
#define QORUTILS_FUZZ_SILENT_LOG_H_

#include <qorutils/logging/main_logger.h>

#include <cstdio>
#include <cstdlib>
#include <string>

// The logger is made where it cannot open a file, and stays without one; the target then has its
// own TMPDIR back. What the log would echo on a terminal goes nowhere, too.
inline void SilenceLog() {
    char const* const directory = std::getenv("TMPDIR");
    bool const isSet = directory != nullptr;
    std::string const kept = isSet ? directory : "";
    setenv("TMPDIR", "/proc/self", 1);
    bool const isOpen = !qor_logging::getQorMainLogFileName().IsEmpty();
    if (isSet)
        setenv("TMPDIR", kept.c_str(), 1);
    else
        unsetenv("TMPDIR");
    if (isOpen || std::freopen("/dev/null", "w", stdout) == nullptr) std::abort();
}

#endif  // QORUTILS_FUZZ_SILENT_LOG_H_
