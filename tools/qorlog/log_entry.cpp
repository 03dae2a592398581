#include "log_entry.h"

#include <algorithm>

namespace qorlog {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t CountDigits(boost::string_ref text, std::size_t from, std::size_t most) {
    std::size_t count = 0;
    while (count < most && from + count < text.size() && IsDigit(text[from + count])) ++count;
    return count;
}

std::uint64_t Number(boost::string_ref digits) {
    std::uint64_t number = 0;
    for (char const c : digits) number = number * 10 + static_cast<std::uint64_t>(c - '0');
    return number;
}

// One step after another through a prefix; the first that fails decides.
class PrefixReader {
  public:
    explicit PrefixReader(boost::string_ref text) : text_(text) {}

    bool Digits(std::size_t fewest, std::size_t most, std::uint64_t* number) {
        std::size_t const count = CountDigits(text_, at_, most);
        if (count < fewest) return Fail(at_ + count);
        *number = Number(text_.substr(at_, count));
        at_ += count;
        return true;
    }

    bool Text(boost::string_ref expected) {
        for (char const c : expected) {
            if (at_ == text_.size() || text_[at_] != c) return Fail(at_);
            ++at_;
        }
        return true;
    }

    bool Skip(char c) {
        bool const isThere = at_ < text_.size() && text_[at_] == c;
        if (isThere) ++at_;
        return isThere;
    }

    std::size_t Position() const { return at_; }
    PrefixForm Failure() const { return isCut_ ? PrefixForm::kCut : PrefixForm::kOther; }

  private:
    bool Fail(std::size_t where) {
        isCut_ = where == text_.size();
        return false;
    }

    boost::string_ref text_;
    std::size_t at_ = 0;
    bool isCut_ = false;
};

constexpr char kCheckMark[] = "DBGCHK ";

// boost::string_ref::find takes a text; this is memchr's work.
std::size_t FindLast(boost::string_ref text, char c) {
    std::size_t const found = text.rfind(c);
    return found == boost::string_ref::npos ? text.size() : found;
}

}  // namespace

PrefixForm ParsePrefix(boost::string_ref text, LinePrefix* prefix) {
    PrefixReader reader(text);
    std::uint64_t seconds = 0;
    std::uint64_t milliseconds = 0;
    std::uint64_t level = 0;
    if (!reader.Digits(5, 7, &seconds) || !reader.Text(".") ||
        !reader.Digits(3, 3, &milliseconds) || !reader.Text(" ;"))
        return reader.Failure();
    reader.Skip(' ');
    bool const isNegative = reader.Skip('-');
    if (!reader.Digits(1, 9, &level) || !reader.Text(" ; ")) return reader.Failure();
    prefix->milliseconds = seconds * 1000 + milliseconds;
    prefix->level = isNegative ? -static_cast<int>(level) : static_cast<int>(level);
    prefix->length = reader.Position();
    return PrefixForm::kWhole;
}

MessageKind KindOf(boost::string_ref message) {
    if (message.starts_with(kCheckMark)) return MessageKind::kCheck;
    if (message == "Logging finished") return MessageKind::kFinish;
    Moment start = 0;
    return ParseBanner(message, &start) ? MessageKind::kStart : MessageKind::kOther;
}

bool ParseBanner(boost::string_ref message, Moment* start) {
    static constexpr boost::string_ref::size_type kTimeLength = 19;
    boost::string_ref const between = " started on ";
    boost::string_ref const end = " UTC";
    std::size_t const tail = between.size() + kTimeLength + end.size();
    if (!message.starts_with("Program ") || message.size() < tail) return false;
    boost::string_ref const behind = message.substr(message.size() - tail);
    return behind.starts_with(between) && behind.ends_with(end) &&
           ParseBannerTime(behind.substr(between.size(), kTimeLength), start);
}

bool ParseCheck(boost::string_ref message, FailedCheck* check) {
    boost::string_ref const between = " @ ";
    if (!message.starts_with(kCheckMark)) return false;
    boost::string_ref rest = message.substr(sizeof kCheckMark - 1);
    std::size_t digits = rest.size();
    while (digits > 0 && IsDigit(rest[digits - 1])) --digits;
    if (digits == rest.size()) return false;
    if (digits > 0 && rest[digits - 1] == '-') --digits;
    check->line = rest.substr(digits);
    rest = rest.substr(0, digits);
    if (!rest.ends_with(between)) return false;
    rest.remove_suffix(between.size());
    std::size_t const blank = FindLast(rest, ' ');
    if (blank == rest.size()) return false;
    check->expression = rest.substr(0, blank);
    check->file = rest.substr(blank + 1);
    return true;
}

}  // namespace qorlog
