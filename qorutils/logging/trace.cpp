#include "qorutils/logging/trace.h"

#include <cstdarg>

#include "qorutils/logging/main_logger_impl.h"

using qor_text::CQorStringT;

namespace qor_logging {

namespace {

CQorStringT<wchar_t> const& Widened(CQorStringT<wchar_t> const& text) {
    return text;
}
CQorStringT<wchar_t> Widened(CQorStringT<char> const& text) {
    return text.c_str();
}

template <typename T>
void Trace(long level, T const* format, va_list args) {
    CQorLogger* const logger = getMainLogger();
    if (logger == nullptr || !logger->Writes(level)) return;
    KeptErrno const keptErrno;
    CQorStringT<T> message;
    message.FormatV(format, args);
    logger->WriteLine(level, Widened(message));
}

long WriterLevel(long level) {
    return static_cast<unsigned long>(level) <= 3 ? kAlwaysLevel : kDebugLevel;
}

}  // namespace

void QOR_TRACE_ALWAYS(wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(kAlwaysLevel, format, args);
    va_end(args);
}

void QOR_TRACE_ALWAYS(char const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(kAlwaysLevel, format, args);
    va_end(args);
}

void QOR_TRACE_DEBUG(wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(kDebugLevel, format, args);
    va_end(args);
}

void QOR_TRACE_DEBUG(char const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(kDebugLevel, format, args);
    va_end(args);
}

void LOGMESSAGE(long level, wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(WriterLevel(level), format, args);
    va_end(args);
}

void LOGMESSAGE(long level, char const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(WriterLevel(level), format, args);
    va_end(args);
}

namespace detail {

void TraceText(long level, wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(WriterLevel(level), format, args);
    va_end(args);
}

void TraceText(long level, char const* format, ...) {
    va_list args;
    va_start(args, format);
    Trace(WriterLevel(level), format, args);
    va_end(args);
}

}  // namespace detail

// The data are copied first: converted where they lie, they would be read on to a terminator.
void QOR_TRACE_BIN_ALWAYS(char const* title, unsigned char const* data, unsigned int length) {
    KeptErrno const keptErrno;
    CQorStringT<wchar_t> text(title);
    CQorStringT<char> const bytes(reinterpret_cast<char const*>(data), static_cast<int>(length));
    CQorStringT<wchar_t> const shown(bytes.c_str());
    text.ConcatInPlace(shown.GetLength(), shown.c_str());
    if (CQorLogger* const logger = getMainLogger()) logger->WriteLine(kAlwaysLevel, text);
}

}  // namespace qor_logging
