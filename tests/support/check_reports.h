// The failed checks that an action reports.
#ifndef QORUTILS_TESTS_SUPPORT_CHECK_REPORTS_H_
#define QORUTILS_TESTS_SUPPORT_CHECK_REPORTS_H_

#include <string>

#include "support/main_log.h"

// Runs action() and returns the reports that it made, in order, each as one line
// "DBGCHK expression file @ line\n". What the action throws passes through.
template <typename Action>
std::string CheckReports(Action action) {
    LogMark const mark;
    action();
    std::string reports;
    for (std::string const& message : mark.Messages())
        if (message.compare(0, 7, "DBGCHK ") == 0) reports += message + "\n";
    return reports;
}

#endif  // QORUTILS_TESTS_SUPPORT_CHECK_REPORTS_H_
