// qorini: settings files from the shell. See qorini.1.

#include <signal.h>

#include <clocale>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "command_line.h"

namespace {

void Print(std::string const& text) {
    if (text.empty()) return;
    bool const isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!isWritten || std::fflush(stdout) != 0) throw qorini::SystemComplaint("standard output");
}

int RunAndPrint(std::vector<std::string> const& words) {
    std::string out;
    qorini::ExitStatus const status = qorini::Run(words, &out);
    Print(out);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    // Where these are missing, everything stays plain ASCII: other text is then refused.
    std::setlocale(LC_ALL, "");
    // A closed pipe and a limit of the file size are errors to report.
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
    try {
        return RunAndPrint({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (qorini::Complaint const& complaint) {
        qorini::Complain(complaint.what());
        return complaint.status();
    } catch (std::bad_alloc const&) {
        qorini::Complain("out of memory");
    } catch (std::exception const& error) {
        qorini::Complain(error.what());
    }
    return qorini::kRefused;
}
