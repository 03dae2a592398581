#include "qorutils/formats/time_text.h"

#include <cstdint>
#include <limits>

#include "qorutils/formats/integer_scan.h"

using qor_text::CQorStringT;

namespace qor_formats {

namespace {

// Towards zero; clamped as the target's conversion instruction does, with 0 for NaN.
int ToInt(double value) {
    if (value != value) return 0;
    if (value <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    if (value >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    return static_cast<int>(value);
}

}  // namespace

CQorStringT<wchar_t> TimeSpanToString(base::CTimeSpan const& span) {
    CQorStringT<wchar_t> text;
    text.Format(L"%02d:%02d:%02d", static_cast<int>(span.GetTotalHours()), span.GetMinutes(),
                span.GetSeconds());
    return text;
}

CQorStringT<wchar_t> TimeToString(double hours) {
    int const wholeHours = ToInt(hours);
    double const fraction = hours - wholeHours;
    int const minutes = ToInt(fraction * 60.0);
    double const seconds = (fraction - minutes / 60.0) * 3600.0;
    CQorStringT<wchar_t> text;
    text.Format(L"%2d:%2d:%5.3f", wholeHours, minutes, seconds);
    return text;
}

CQorStringT<wchar_t> TimeToXSString(base::CTime t, bool utc) {
    return base::CTime::TimeToXSString(t, utc);
}

CQorStringT<wchar_t> GetDateTimeAttrFormat() {
    return L"yyyy-MM-dd HH:mm:ss";
}

// Each field is followed by its separator, which is compared; the blank stands for any white space
// and for none, and numbers skip that by themselves.
int ParseDtTimeAttrFormatFromStr(CQorStringT<wchar_t> const& text, _SYSTEMTIME& st) {
    if (text.IsEmpty()) return 0;
    std::uint16_t* const fields[] = {&st.wYear, &st.wMonth,  &st.wDay,
                                     &st.wHour, &st.wMinute, &st.wSecond};
    static wchar_t const kSeparators[] = L"-- ::";
    wchar_t const* rest = text;
    int count = 0;
    for (; count < 6; ++count) {
        ScannedInteger const number = ScanInteger(rest);
        if (!number.hasDigits) break;
        *fields[count] = static_cast<std::uint16_t>(ToSigned(number));
        rest = number.end;
        wchar_t const separator = kSeparators[count];
        if (separator != L'\0' && separator != L' ' && *rest++ != separator) break;
    }
    st.wMilliseconds = static_cast<std::uint16_t>(st.wSecond / 1000);
    return count == 6;
}

}  // namespace qor_formats
