#include "log_view.h"

#include "complaints.h"

namespace qorlog {

namespace {

// The milliseconds of a line's time start again behind them.
constexpr std::uint64_t kRound = std::uint64_t{1} << 32;

// "1 character", "5 characters".
std::string Counted(std::uint64_t number, char const* thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

}  // namespace

std::string ShownName(std::string const& path) {
    return path == "-" ? "standard input" : path;
}

LogView::LogView(std::string const& path, Options const& options, Output* output)
    : options_(options), output_(output), reader_(path) {
    log_.name = ShownName(path);
}

bool LogView::ShowMore() {
    bool const isMore = reader_.Read(splitter_.Text());
    HandOut(isMore && reader_.HasMoreNow() ? TextEnd::kMoreAtOnce : TextEnd::kMoreLater);
    return isMore;
}

void LogView::ShowRest() {
    if (reader_.HasMoreNow()) ShowMore();
    if (!reader_.HasBegun()) return;
    reader_.Finish(splitter_.Text());
    HandOut(TextEnd::kNoMore);
    TellInvalidCharacters();
}

void LogView::Finish() {
    reader_.Finish(splitter_.Text());
    HandOut(TextEnd::kNoMore);
    if (!endsInLineEnd_) {
        std::size_t const bytes = reader_.BytesLeftOver();
        Complain("the last line is cut" +
                 (bytes == 0 ? "" : ", and " + Counted(bytes, "byte") + " of a character left"));
    }
    TellInvalidCharacters();
}

void LogView::TellInvalidCharacters() {
    std::uint64_t const invalid = reader_.InvalidCharacters();
    if (invalid != 0) Complain(Counted(invalid, "invalid character") + ", shown as U+FFFD");
}

void LogView::HandOut(TextEnd end) {
    splitter_.HandOut(end, [this, end](LogEntry const& entry) { Show(entry, end); });
    output_->Flush();
}

void LogView::Show(LogEntry entry, TextEnd end) {
    if (!hasBegun_) Begin(entry);
    if (entry.hasTime) entry.milliseconds = SinceStart(entry.milliseconds);
    endsInLineEnd_ = entry.isEnded;
    TellIfUnsearched(entry);
    if (!entry.goesOn) isSelected_ = options_.filter.Selects(entry, log_.start);
    if (!isSelected_) return;
    if (end == TextEnd::kNoMore) entry.isEnded = true;  // what is shown next has a line of its own
    PrintEntry(entry, log_, options_.look, output_->Text());
    output_->FlushIfMuch();
}

void LogView::Begin(LogEntry const& entry) {
    hasBegun_ = true;
    if (reader_.LacksMark()) Complain("lacks its mark, and is read all the same");
    Moment start = 0;
    log_.hasStart = ParseBanner(entry.Message(), &start);
    if (log_.hasStart) log_.start = start - static_cast<Moment>(entry.milliseconds);
    if (log_.hasStart) return;
    if (options_.filter.NeedsStart())
        throw LogError("does not begin with the time of its start, so dates select nothing");
    if (options_.look.hasCalendarTimes)
        Complain("does not begin with the time of its start: times are those since then");
}

// Lines are in order; the small steps back of two programs that share a file are none of a round.
std::uint64_t LogView::SinceStart(std::uint64_t milliseconds) {
    std::uint64_t time = passed_ / kRound * kRound + milliseconds;
    if (time + kRound / 2 < passed_) time += kRound;
    passed_ = time;
    return time;
}

// A message in parts is selected, or not, by the first of them.
void LogView::TellIfUnsearched(LogEntry const& entry) {
    bool const isPart = !entry.isEnded && entry.text.size() >= EntrySplitter::kLongestPart;
    if (!isPart || options_.filter.pattern == nullptr || isUnsearchedTold_) return;
    Complain("line " + std::to_string(entry.lineNumber) +
             " is longer than 1 MiB: --grep looks at the beginning of such lines only");
    isUnsearchedTold_ = true;
}

void LogView::Complain(std::string const& what) {
    output_->Flush();
    Tell(log_.name, what);
    isGood_ = false;
}

}  // namespace qorlog
