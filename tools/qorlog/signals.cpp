#include "signals.h"

#include <csignal>
#include <cstdlib>

namespace qorlog {

namespace {

volatile std::sig_atomic_t stopSignal = 0;

extern "C" void NoteStopSignal(int signal) {
    stopSignal = signal;
}

}  // namespace

void NoteStopSignals() {
    struct sigaction action = {};
    action.sa_handler = NoteStopSignal;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int StopSignal() {
    return stopSignal;
}

void EndBySignal(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    sigprocmask(SIG_UNBLOCK, &only, nullptr);
    std::raise(signal);
    std::_Exit(128 + signal);
}

}  // namespace qorlog
