#include "qorutils/qorsys/qor_time.h"

#include <cstdint>
#include <cwchar>

#include "qorutils/logging/checks.h"
#include "qorutils/qorsys/utc_offset.h"

using qor_text::CQorStringT;

namespace base {

namespace {

// mktime with a time_t of 32 bits: -1 for what that does not hold.
std::int32_t MakeTime32(std::tm fields) {
    std::int64_t const seconds = std::mktime(&fields);
    auto const low = static_cast<std::int32_t>(seconds);
    return low == seconds ? low : -1;
}

std::int32_t CheckedTime(std::tm const& fields) {
    std::int32_t const seconds = MakeTime32(fields);
    if (seconds == -1)
        qor_logging::qor_enforce("qorutils/qorsys/qor_time", __LINE__, "Illegal input time");
    return seconds;
}

int Minus(int a, unsigned int b) {
    return static_cast<int>(static_cast<unsigned int>(a) - b);
}

std::tm LocalFields(int year, int month, int day, int hour, int min, int sec, int dst) {
    std::tm fields = {};
    fields.tm_year = Minus(year, 1900);
    fields.tm_mon = Minus(month, 1);
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = min;
    fields.tm_sec = sec;
    fields.tm_isdst = dst;
    return fields;
}

// The field, counted from `first`, of the local time; 0 if that is not to be had.
int LocalField(CTime const& t, int std::tm::*field, int first) {
    std::tm local = {};
    return t.GetLocalTm(&local) == nullptr ? 0 : local.*field + first;
}

}  // namespace

CTimeSpan::CTimeSpan(long days, int hours, int mins, int secs) noexcept
    : seconds_(static_cast<std::int32_t>(
          ((static_cast<std::uint32_t>(days) * 24u + static_cast<std::uint32_t>(hours)) * 60u +
           static_cast<std::uint32_t>(mins)) *
              60u +
          static_cast<std::uint32_t>(secs))) {}

CTime::CTime(int year, int month, int day, int hour, int min, int sec, int dst)
    : time_(CheckedTime(LocalFields(year, month, day, hour, min, sec, dst))) {}

CTime::CTime(unsigned short dosDate, unsigned short dosTime, int dst)
    : CTime((dosDate >> 9) + 1980, dosDate >> 5 & 15, dosDate & 31, dosTime >> 11,
            dosTime >> 5 & 63, (dosTime & 31) * 2, dst) {}

CTime::CTime(_SYSTEMTIME const& st, int dst) {
    if (st.wYear > 1899)
        *this = CTime(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond, dst);
}

CTime::CTime(_FILETIME const&, int) noexcept {}

CTime CTime::GetCurrentTime() noexcept {
    return std::time(nullptr);
}

bool CTime::IsValidFILETIME(_FILETIME const&) noexcept {
    return false;
}

std::tm* CTime::GetGmtTm(std::tm*) const noexcept {
    return nullptr;
}

std::tm* CTime::GetLocalTm(std::tm*) const noexcept {
    return nullptr;
}

int CTime::GetYear() const noexcept {
    return LocalField(*this, &std::tm::tm_year, 1900);
}

int CTime::GetMonth() const noexcept {
    return LocalField(*this, &std::tm::tm_mon, 1);
}

int CTime::GetDay() const noexcept {
    return LocalField(*this, &std::tm::tm_mday, 0);
}

int CTime::GetHour() const noexcept {
    return LocalField(*this, &std::tm::tm_hour, 0);
}

int CTime::GetMinute() const noexcept {
    return LocalField(*this, &std::tm::tm_min, 0);
}

int CTime::GetSecond() const noexcept {
    return LocalField(*this, &std::tm::tm_sec, 0);
}

int CTime::GetDayOfWeek() const noexcept {
    return LocalField(*this, &std::tm::tm_wday, 1);
}

bool CTime::GetAsSystemTime(_SYSTEMTIME& st) const noexcept {
    std::tm local = {};
    if (GetLocalTm(&local) == nullptr) return false;
    st.wYear = static_cast<std::uint16_t>(local.tm_year + 1900);
    st.wMonth = static_cast<std::uint16_t>(local.tm_mon + 1);
    st.wDayOfWeek = static_cast<std::uint16_t>(local.tm_wday);
    st.wDay = static_cast<std::uint16_t>(local.tm_mday);
    st.wHour = static_cast<std::uint16_t>(local.tm_hour);
    st.wMinute = static_cast<std::uint16_t>(local.tm_min);
    st.wSecond = static_cast<std::uint16_t>(local.tm_sec);
    st.wMilliseconds = 0;
    return true;
}

CQorStringT<wchar_t> CTime::Format(wchar_t const* format) const {
    std::tm local = {};
    if (format == nullptr || GetLocalTm(&local) == nullptr) return {};
    wchar_t text[128];
    return CQorStringT<wchar_t>(text, static_cast<int>(std::wcsftime(text, 128, format, &local)));
}

CQorStringT<wchar_t> CTime::FormatGmt(wchar_t const*) const {
    return {};
}

int CTime::GetBias(int&, int&, int&, int&) noexcept {
    return 0;
}

CQorStringT<wchar_t> CTime::TimeToXSString(CTime t, bool utc) {
    std::tm localFields = {};
    std::tm utcFields = {};
    t.GetLocalTm(&localFields);
    t.GetGmtTm(&utcFields);
    int const offset = UtcOffset(localFields, utcFields);
    if (utc || offset == 0) return t.FormatGmt(L"%Y-%m-%dT%H:%M:%SZ");
    return WithUtcOffset(t.Format(L"%Y-%m-%dT%H:%M:%S"), offset);
}

}  // namespace base
