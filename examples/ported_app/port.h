// What the port added: the names that the original's stdafx.h brought and the library does not, and
// the few functions in whose place something else had to stand. README.md tells all changes.
#ifndef QORUTILS_EXAMPLES_PORTED_APP_PORT_H_
#define QORUTILS_EXAMPLES_PORTED_APP_PORT_H_

#include <qorutils/appdirs/app_dirs.h>
#include <qorutils/formats/qor_array.h>
#include <qorutils/fs/cfile.h>
#include <qorutils/fs/file_funcs.h>
#include <qorutils/fs/file_names.h>
#include <qorutils/fs/qor_ini_file.h>
#include <qorutils/logging/trace.h>
#include <qorutils/qorsys/qor_com.h>
#include <qorutils/qorsys/qor_system.h>
#include <qorutils/qorsys/qor_time.h>
#include <qorutils/qorsys/win_time.h>
#include <qorutils/text/qor_string.h>

#include <cstdio>
#include <cwchar>
#include <stdexcept>

using TCHAR = wchar_t;
using LPTSTR = TCHAR*;
using LPCTSTR = TCHAR const*;
using UINT = unsigned int;

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr HRESULT S_OK = 0;

#define _T(text) L##text
#define TRACE qor_logging::QOR_TRACE_ALWAYS
#define _stscanf std::swscanf
#define _tcstod std::wcstod

using CString = qor_text::CQorStringT<wchar_t>;
using CStringA = qor_text::CQorStringT<char>;
using CFile = base::CFile;
using CTime = base::CTime;
using CTimeSpan = base::CTimeSpan;
using CFileException = std::runtime_error;
template <typename T, typename ARG>
using CArray = qor_templ::CQorArray<T, ARG>;

// The original's entry; main, in port.cpp, calls it.
int _tmain(int argc, LPTSTR argv[]);

// For _tprintf and _ftprintf: UTF-8 in every locale.
void Print(std::FILE* pStream, CString const& strText);

// For MultiByteToWideChar(CP_UTF8). FALSE for what is not UTF-8, and for a zero byte.
BOOL Utf8ToText(CStringA const& strBytes, CString& strText);

// For WideCharToMultiByte(CP_UTF8).
CStringA TextToUtf8(CString const& strText);

// For CTime::FormatGmt: "2015-06-01", the separator, and "05:58:12".
CString FormatTime(CTime const& time, TCHAR chSeparator);

// For GetPrivateProfileString and its kin: a file that is read once. Without a file, or without the
// key, the default is what counts.
class CProfile {
  public:
    // FALSE for a file that is there and cannot be read.
    BOOL Load(CString const& strPath);

    CString GetString(LPCTSTR pszSection, LPCTSTR pszKey, LPCTSTR pszDefault) const;
    int GetInt(LPCTSTR pszSection, LPCTSTR pszKey, int nDefault) const;

  private:
    qor_settings::CThreeTupleStore m_settings;
};

#endif  // QORUTILS_EXAMPLES_PORTED_APP_PORT_H_
