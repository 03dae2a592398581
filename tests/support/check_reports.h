// The failed checks that an action reports.
#ifndef QORUTILS_TESTS_SUPPORT_CHECK_REPORTS_H_
#define QORUTILS_TESTS_SUPPORT_CHECK_REPORTS_H_

#include <string>

#include <gtest/gtest.h>

// Runs action() and returns the reports that it made, in order, each as one line
// "DBGCHK expression file @ line\n". What the action throws passes through.
template <typename Action>
std::string CheckReports(Action action) {
    testing::internal::CaptureStderr();
    try {
        action();
    } catch (...) {
        testing::internal::GetCapturedStderr();
        throw;
    }
    return testing::internal::GetCapturedStderr();
}

#endif  // QORUTILS_TESTS_SUPPORT_CHECK_REPORTS_H_
