#include "entry_printer.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include <boost/utility/string_ref.hpp>

#include "escaped_text.h"

namespace qorlog {

namespace {

constexpr char kDim[] = "\x1B[2m";
constexpr char kBold[] = "\x1B[1m";
constexpr char kRed[] = "\x1B[31m";
constexpr char kPlain[] = "\x1B[m";

char const* ColorOf(MessageKind kind) {
    switch (kind) {
        case MessageKind::kStart:
        case MessageKind::kFinish:
            return kBold;
        case MessageKind::kCheck:
            return kRed;
        case MessageKind::kOther:
            break;
    }
    return nullptr;
}

Moment MomentOf(LogEntry const& entry, LogFacts const& log) {
    return log.start + static_cast<Moment>(entry.milliseconds);
}

void Append(boost::string_ref text, std::string* to) {
    to->append(text.data(), text.size());
}

void PutColoured(boost::string_ref text, char const* color, std::string* to) {
    if (color != nullptr) *to += color;
    Append(text, to);
    if (color != nullptr) *to += kPlain;
}

// The time and the level, as in the log but for the kind of time.
void PutPrefix(LogEntry const& entry, LogFacts const& log, Look const& look, std::string* to) {
    boost::string_ref prefix = entry.text.substr(0, entry.prefixLength);
    char const* const color = look.isColoured ? kDim : nullptr;
    if (!look.hasCalendarTimes || !log.hasStart || prefix.empty())
        return PutColoured(prefix, color, to);
    prefix.remove_prefix(prefix.find(' '));
    PutColoured(MomentText(MomentOf(entry, log), ' ') + prefix.to_string(), color, to);
}

// On a terminal a message's later lines are set in, so that none can pass for a line of the log.
void PutLine(boost::string_ref line, bool isSetIn, Look const& look, std::string* to) {
    if (!look.isHarmless) return Append(line, to);
    if (isSetIn) *to += "    ";
    AppendVisible(line, to);
}

void PutLines(boost::string_ref text, bool isSetIn, Look const& look, std::string* to) {
    void const* found = nullptr;
    while (!text.empty() && (found = std::memchr(text.data(), '\n', text.size())) != nullptr) {
        auto const length = static_cast<std::size_t>(static_cast<char const*>(found) - text.data());
        bool const hasCr = length > 0 && text[length - 1] == '\r';
        PutLine(text.substr(0, length - (hasCr ? 1 : 0)), isSetIn, look, to);
        *to += '\n';
        text.remove_prefix(length + 1);
        isSetIn = true;
    }
    PutLine(text, isSetIn, look, to);
}

void PrintAsText(LogEntry const& entry, LogFacts const& log, Look const& look, std::string* to) {
    if (entry.prefixLength != 0) PutPrefix(entry, log, look, to);
    char const* const color = look.isColoured ? ColorOf(KindOf(entry.Message())) : nullptr;
    if (color != nullptr) *to += color;
    PutLines(entry.Message(), entry.goesOn && entry.beginsLine, look, to);
    if (color != nullptr) *to += kPlain;
    if (entry.isEnded) *to += '\n';
}

char const* NameOf(MessageKind kind) {
    switch (kind) {
        case MessageKind::kStart:
            return "start";
        case MessageKind::kFinish:
            return "finish";
        case MessageKind::kCheck:
            return "check";
        case MessageKind::kOther:
            break;
    }
    return "message";
}

void PutTimes(LogEntry const& entry, LogFacts const& log, std::string* to) {
    if (!entry.hasTime) {
        *to += ",\"seconds\":null,\"time\":null,\"level\":null";
        return;
    }
    char numbers[64];
    std::snprintf(numbers, sizeof numbers, ",\"seconds\":%llu.%03u,\"time\":",
                  static_cast<unsigned long long>(entry.milliseconds / 1000),
                  static_cast<unsigned>(entry.milliseconds % 1000));
    *to += numbers;
    if (log.hasStart)
        AppendJsonText(MomentText(MomentOf(entry, log), 'T') + "Z", to);
    else
        *to += "null";
    *to += ",\"level\":";
    *to += std::to_string(entry.level);
}

void PutCheck(boost::string_ref message, std::string* to) {
    FailedCheck check;
    if (!ParseCheck(message, &check)) return;
    *to += ",\"expression\":";
    AppendJsonText(check.expression, to);
    *to += ",\"source\":";
    AppendJsonText(check.file, to);
    *to += ",\"source_line\":";
    Append(check.line, to);
}

void PrintAsJson(LogEntry const& entry, LogFacts const& log, std::string* to) {
    MessageKind const kind = entry.goesOn ? MessageKind::kOther : KindOf(entry.Message());
    *to += "{\"file\":";
    AppendJsonText(log.name, to);
    *to += ",\"line\":";
    *to += std::to_string(entry.lineNumber);
    PutTimes(entry, log, to);
    *to += ",\"kind\":\"";
    *to += entry.goesOn ? "continued" : NameOf(kind);
    *to += "\",\"message\":";
    AppendJsonText(entry.Message(), to);
    if (kind == MessageKind::kCheck) PutCheck(entry.Message(), to);
    *to += "}\n";
}

}  // namespace

void PrintEntry(LogEntry const& entry, LogFacts const& log, Look const& look, std::string* to) {
    if (look.isJson)
        PrintAsJson(entry, log, to);
    else
        PrintAsText(entry, log, look, to);
}

}  // namespace qorlog
