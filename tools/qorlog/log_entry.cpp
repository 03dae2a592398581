#include "log_entry.h"

#include "text_reader.h"

namespace qorlog {

namespace {

constexpr char kCheckMark[] = "DBGCHK ";

}  // namespace

PrefixForm ParsePrefix(boost::string_ref text, LinePrefix* prefix) {
    TextReader reader(text);
    std::int64_t seconds = 0;
    std::int64_t milliseconds = 0;
    std::int64_t level = 0;
    auto const failure = [&] { return reader.AtEnd() ? PrefixForm::kCut : PrefixForm::kOther; };
    if (!reader.Number(5, 7, &seconds) || !reader.Take('.') ||
        !reader.Number(3, 3, &milliseconds) || !reader.Take(" ;"))
        return failure();
    reader.Take(' ');
    bool const isNegative = reader.Take('-');
    if (!reader.Number(1, 9, &level) || !reader.Take(" ; ")) return failure();
    prefix->milliseconds = static_cast<std::uint64_t>(seconds * 1000 + milliseconds);
    prefix->level = static_cast<int>(isNegative ? -level : level);
    prefix->length = text.size() - reader.Rest().size();
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
    while (digits > 0 && rest[digits - 1] >= '0' && rest[digits - 1] <= '9') --digits;
    bool const hasLeadingZero = digits + 1 < rest.size() && rest[digits] == '0';
    if (digits == rest.size() || hasLeadingZero) return false;
    if (digits > 0 && rest[digits - 1] == '-') --digits;
    check->line = rest.substr(digits);
    rest = rest.substr(0, digits);
    if (!rest.ends_with(between)) return false;
    rest.remove_suffix(between.size());
    std::size_t const blank = rest.rfind(' ');
    if (blank == boost::string_ref::npos) return false;
    check->expression = rest.substr(0, blank);
    check->file = rest.substr(blank + 1);
    return true;
}

}  // namespace qorlog
