#include "qorutils/qorsys/file_time.h"

#include "qorutils/fs/platform_file.h"

using qor_text::CQorStringT;

namespace qor {
namespace file_time {

namespace {

void SetIfWanted(_FILETIME* ft, long seconds) {
    if (ft != nullptr) base::to_FILETIME(seconds, *ft);
}

void FormatIfWanted(_FILETIME* ft, CQorStringT<wchar_t>* date, CQorStringT<wchar_t>* time) {
    if (ft != nullptr && date != nullptr) ConvertAndFormatFileTime(*ft, date, time);
}

}  // namespace

bool qorGetFileTimes(wchar_t const* path, _FILETIME* creation, _FILETIME* access,
                     _FILETIME* write) {
    int const file =
        base::CreatePlatformFile(path, base::kFileOpenExisting | base::kFileRead, nullptr, nullptr);
    if (file == -1) return false;
    base::PlatformFileInfo info;
    bool const isKnown = base::GetPlatformFileInfo(file, &info);
    if (isKnown) {
        SetIfWanted(creation, info.creationTime);
        SetIfWanted(access, info.lastAccessed);
        SetIfWanted(write, info.lastModified);
    }
    base::ClosePlatformFile(file);
    return isKnown;
}

bool ConvertAndFormatFileTime(_FILETIME& ft, CQorStringT<wchar_t>* date,
                              CQorStringT<wchar_t>* time) {
    _FILETIME local;
    _SYSTEMTIME st;
    if (FileTimeToLocalFileTime(&ft, &local) == 0) return false;
    FileTimeToSystemTime(&local, &st);
    if (date != nullptr) date->Format(L"%02d/%02d/%d", st.wMonth, st.wDay, st.wYear);
    if (time != nullptr) time->Format(L"%02d:%02d", st.wHour, st.wMinute);
    return true;
}

bool qorGetFileTimeFormatted(_FILETIME* creation, _FILETIME* access, _FILETIME* write,
                             CQorStringT<wchar_t>* creationDate, CQorStringT<wchar_t>* creationTime,
                             CQorStringT<wchar_t>* writeDate, CQorStringT<wchar_t>* writeTime,
                             CQorStringT<wchar_t>* accessDate, CQorStringT<wchar_t>* accessTime) {
    FormatIfWanted(creation, creationDate, creationTime);
    FormatIfWanted(write, writeDate, writeTime);
    FormatIfWanted(access, accessDate, accessTime);
    return true;
}

bool qorGetFileTimeFormatted(wchar_t const* path, CQorStringT<wchar_t>* creationDate,
                             CQorStringT<wchar_t>* creationTime, CQorStringT<wchar_t>* writeDate,
                             CQorStringT<wchar_t>* writeTime, CQorStringT<wchar_t>* accessDate,
                             CQorStringT<wchar_t>* accessTime) {
    _FILETIME creation = {};
    _FILETIME access = {};
    _FILETIME write = {};
    qorGetFileTimes(path, &creation, &access, &write);
    return qorGetFileTimeFormatted(&creation, &access, &write, creationDate, creationTime,
                                   writeDate, writeTime, accessDate, accessTime);
}

bool qorSystemTimeToFileTime(_SYSTEMTIME* st, _FILETIME& ft) {
    return SystemTimeToFileTime(st, &ft) == 1;
}

bool qorGetSystemTimeAsFileTime(_FILETIME& ft) {
    _SYSTEMTIME now;
    GetSystemTime(&now);
    return qorSystemTimeToFileTime(&now, ft);
}

}  // namespace file_time
}  // namespace qor
