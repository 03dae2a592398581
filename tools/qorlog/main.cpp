// qorlog: shows logs. See its manual page, qorlog.1.

#include <qorutils/export.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "complaints.h"
#include "follow.h"
#include "log_files.h"
#include "log_view.h"
#include "options.h"
#include "output.h"
#include "signals.h"

namespace {

using namespace qorlog;  // NOLINT(google-build-using-namespace): its own program

bool ShowLog(std::string const& path, Options const& options, Output* output) {
    try {
        LogView view(path, options, output);
        while (view.ShowMore()) continue;
        view.Finish();
        return view.IsGood();
    } catch (LogError const& error) {
        output->Flush();
        Tell(ShownName(path), error.what());
        return false;
    }
}

bool ShowNewest(Options const& options, Output* output) {
    try {
        std::string const program =
            options.program.empty() ? NewestProgram(options.directory) : options.program;
        std::string const path =
            program.empty() ? program : LogSeries(options.directory, program).Newest();
        if (!path.empty()) return ShowLog(path, options, output);
        Tell(options.directory, "no log" + (program.empty() ? program : " of " + program));
    } catch (LogError const& error) {
        Tell(options.directory, error.what());
    }
    return false;
}

bool ShowLogs(Options const& options, Output* output) {
    bool isGood = true;
    for (std::string const& path : options.files) isGood &= ShowLog(path, options, output);
    return isGood;
}

bool Run(Options const& options, Output* output) {
    if (options.wantsHelp || options.wantsVersion) {
        *output->Text() = options.wantsHelp ? kHelp : "qorlog " QORUTILS_VERSION_STRING "\n";
        output->Flush();
        return true;
    }
    bool const isInput = options.files == std::vector<std::string>{"-"};
    if (options.follows && !isInput) {
        FollowLog(options, output);
        return false;
    }
    return options.files.empty() ? ShowNewest(options, output) : ShowLogs(options, output);
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8");  // logs, names and patterns are UTF-8 here
    Output output;
    try {
        return Run(ParseOptions(argc, argv), &output) ? 0 : 1;
    } catch (UsageError const& error) {
        Tell(error.what());
        std::fputs("qorlog --help tells more.\n", stderr);
        return 2;
    } catch (OutputError const& error) {
        Tell("standard output", error.what());
    } catch (ReaderGone const&) {
        EndBySignal(SIGPIPE);
    } catch (Interrupted const&) {
        EndBySignal(StopSignal());
    } catch (std::exception const& error) {
        Tell(error.what());
    }
    return 1;
}
