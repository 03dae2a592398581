#include "port.h"

#include <qorutils/appdirs/module_file_name.h>
#include <qorutils/formats/number_text.h>
#include <qorutils/formats/text_lines.h>
#include <qorutils/text/utf8.h>

#include <unistd.h>

#include <climits>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

CString ProgramFolder() {
    char szPath[PATH_MAX];
    ssize_t const nLength = readlink("/proc/self/exe", szPath, sizeof szPath - 1);
    if (nLength <= 0) return CString();
    szPath[nLength] = '\0';
    return qor::file_names::ExtractDirNameWithoutSlashFromPathName(CString(szPath));
}

// Where the settings lie, and where the log goes: PORTED_APP_HOME, or else the program's folder.
// One backslash, in front of the name: up to there the path is used as it is.
void NameModule(wchar_t* pszBuffer, int nSize) {
    char const* const pszHome = std::getenv("PORTED_APP_HOME");
    CString const strName =
        (pszHome != nullptr ? CString(pszHome) : ProgramFolder()) + _T("\\ported_app");
    if (strName.GetLength() <= nSize) std::wmemcpy(pszBuffer, strName, strName.GetLength());
}

}  // namespace

void Print(std::FILE* pStream, CString const& strText) {
    qor_formats::WriteString(pStream, strText);
}

BOOL Utf8ToText(CStringA const& strBytes, CString& strText) {
    UINT const nLength = do_mbstowcs(nullptr, strBytes, 0);
    if (nLength == UINT_MAX || strBytes.GetLength() != static_cast<int>(std::strlen(strBytes)))
        return FALSE;
    do_mbstowcs(strText.GetBuffer(nLength), strBytes, nLength);
    strText.ReleaseBuffer(nLength);
    return TRUE;
}

CStringA TextToUtf8(CString const& strText) {
    UINT const nLength = do_wcstombs(nullptr, strText, 0);
    CStringA strBytes;
    do_wcstombs(strBytes.GetBuffer(nLength), strText, nLength);
    strBytes.ReleaseBuffer(nLength);
    return strBytes;
}

CString FormatTime(CTime const& time, TCHAR chSeparator) {
    FILETIME ft;
    SYSTEMTIME st;
    base::to_FILETIME(static_cast<long>(time.GetTime()), ft);
    FileTimeToSystemTime(&ft, &st);
    CString strTime;
    strTime.Format(_T("%04d-%02d-%02d%lc%02d:%02d:%02d"), st.wYear, st.wMonth, st.wDay, chSeparator,
                   st.wHour, st.wMinute, st.wSecond);
    return strTime;
}

BOOL CProfile::Load(CString const& strPath) {
    qor::text_utils::EQorTextEncoding encoding;
    return !FileFuncs::IsFileExist(strPath) ||
           qor_settings::readSettingsAsIni(strPath, m_settings, encoding);
}

CString CProfile::GetString(LPCTSTR pszSection, LPCTSTR pszKey, LPCTSTR pszDefault) const {
    auto const section = m_settings.find(pszSection);
    if (section == m_settings.end()) return pszDefault;
    auto const value = section->second.values.find(pszKey);
    return value == section->second.values.end() ? CString(pszDefault) : value->second;
}

int CProfile::GetInt(LPCTSTR pszSection, LPCTSTR pszKey, int nDefault) const {
    int nValue;
    CString const strValue = GetString(pszSection, pszKey, _T(""));
    return qor_formats::StringToInt(strValue, nValue) != 0 ? nValue : nDefault;
}

int main(int argc, char** argv) {
    // Paths are narrowed, and arguments widened, as the locale says; the decimal point stays '.'.
    if (std::setlocale(LC_CTYPE, "") == nullptr) std::setlocale(LC_CTYPE, "C.UTF-8");
    qor_appdirs::SetModuleFileNameHook(NameModule);

    std::vector<CString> arguments(argv, argv + argc);
    std::vector<LPTSTR> pointers;
    pointers.reserve(arguments.size());
    for (CString& strArgument : arguments) {
        // What the locale cannot decode would be cut off, and name another file.
        if (CStringA(strArgument) != argv[pointers.size()]) {
            std::fputs("ported_app: an argument is no text in this locale\n", stderr);
            return 2;
        }
        pointers.push_back(strArgument.GetBuffer(strArgument.GetLength()));
    }
    return _tmain(argc, pointers.data());
}
