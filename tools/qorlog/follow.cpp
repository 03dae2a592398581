#include "follow.h"

#include <unistd.h>

#include <memory>
#include <string>

#include "complaints.h"
#include "log_files.h"
#include "log_view.h"
#include "signals.h"

namespace qorlog {

namespace {

constexpr int kPause = 100;  // milliseconds

class Follower {
  public:
    Follower(Options const& options, Output* output) : options_(options), output_(output) {}

    // Until a signal comes.
    void Run() {
        while (StopSignal() == 0) {
            if (view_ == nullptr) OpenFirst();
            if (view_ != nullptr) ShowMore();
            output_->Wait(kPause);
        }
        if (view_ != nullptr) view_->ShowRest();
    }

    // What is read, or waited for.
    std::string Subject() const {
        if (!path_.empty()) return path_;
        return options_.files.empty() ? options_.directory : options_.files.front();
    }

  private:
    LogSeries FirstSeries() const {
        if (!options_.files.empty()) return LogSeries::Of(options_.files.front());
        std::string const program =
            options_.program.empty() ? NewestProgram(options_.directory) : options_.program;
        return program.empty() ? LogSeries() : LogSeries(options_.directory, program);
    }

    // The counter is read before the log is chosen: a start in between is then seen as the next.
    void OpenFirst() {
        series_ = FirstSeries();
        count_ = series_.Now();
        std::string const path = options_.files.empty() ? series_.Newest() : options_.files.front();
        if (!path.empty() && access(path.c_str(), F_OK) == 0) return Open(path);
        if (!isWaitTold_) Tell(Subject(), "no log yet; waiting for it");
        isWaitTold_ = true;
    }

    void Open(std::string const& path) {
        path_ = path;
        view_.reset(new LogView(path, options_, output_));
    }

    // Whatever was added to the old log before the new one began is shown first.
    void ShowMore() {
        while (StopSignal() == 0 && view_->ShowMore()) continue;
        std::string const next = series_.BegunSince(&count_);
        if (next.empty() && !view_->IsReplaced()) return;
        while (view_->ShowMore()) continue;
        Leave();
        Tell(next.empty() ? path_ : next, next.empty() ? "begun anew" : "the next log");
        Open(next.empty() ? path_ : next);
    }

    // One that was just begun when its program was started again is no log yet, and no matter.
    void Leave() {
        try {
            view_->Finish();
        } catch (LogError const& error) {
            Tell(path_, error.what());
        }
    }

    Options const& options_;
    Output* const output_;
    LogSeries series_;
    LogSeries::Count count_;
    std::string path_;
    std::unique_ptr<LogView> view_;
    bool isWaitTold_ = false;
};

}  // namespace

void FollowLog(Options const& options, Output* output) {
    NoteStopSignals();
    Follower follower(options, output);
    try {
        follower.Run();
    } catch (LogError const& error) {
        output->Flush();
        Tell(follower.Subject(), error.what());
        return;
    }
    EndBySignal(StopSignal());
}

}  // namespace qorlog
