#include "track.h"

namespace {

// The text up to the next comma, which is taken off with it.
CString NextField(CString& strLine) {
    int const nComma = strLine.Find(_T(','));
    CString strField = nComma < 0 ? strLine : strLine.Left(nComma);
    strLine = nComma < 0 ? CString() : strLine.Mid(nComma + 1);
    return strField.Trim();
}

BOOL ParseTime(CString const& strText, CTime& time) {
    SYSTEMTIME st = {};
    FILETIME ft;
    int nEnd = 0;
    _stscanf(strText, _T("%4hu-%2hu-%2hu %2hu:%2hu:%2hu%n"), &st.wYear, &st.wMonth, &st.wDay,
             &st.wHour, &st.wMinute, &st.wSecond, &nEnd);
    if (nEnd == 0 || nEnd != strText.GetLength() || !SystemTimeToFileTime(&st, &ft)) return FALSE;
    time = base::to_time_t(ft);
    return TRUE;
}

BOOL ParseNumber(CString const& strText, double dLow, double dHigh, double& dValue) {
    LPTSTR pszEnd;
    dValue = _tcstod(strText, &pszEnd);
    return !strText.IsEmpty() && *pszEnd == _T('\0') && dLow <= dValue && dValue <= dHigh;
}

BOOL ParsePoint(CString strLine, CTrackPoint& point) {
    NextField(strLine);  // the name: a line on a map has none
    return ParseTime(NextField(strLine), point.m_time) &&
           ParseNumber(NextField(strLine), -90, 90, point.m_dLatitude) &&
           ParseNumber(NextField(strLine), -180, 180, point.m_dLongitude) &&
           ParseNumber(NextField(strLine), -500, 9000, point.m_dAltitude) && strLine.IsEmpty();
}

CStringA ReadWhole(CString const& strPath) {
    CFile file;
    if (!file.OpenForReading(strPath)) throw CFileException("cannot be opened");
    CStringA strBytes;
    auto const nLength = static_cast<int>(file.GetLength());
    file.Read(strBytes.GetBuffer(nLength), nLength);
    strBytes.ReleaseBuffer(nLength);
    file.Close();
    return strBytes;
}

CString Quoted(CString strText) {
    for (int i = 0; i < strText.GetLength(); ++i)
        if (strText[i] < _T(' ')) strText.SetAt(i, _T(' '));
    strText.Replace(_T("\\"), _T("\\\\"));
    strText.Replace(_T("\""), _T("\\\""));
    return _T("\"") + strText + _T("\"");
}

CString Quoted(CTime const& time) {
    return Quoted(FormatTime(time, _T('T')) + _T("Z"));
}

}  // namespace

BOOL CTrack::Load(CString const& strPath) {
    CString strText;
    if (!Utf8ToText(ReadWhole(strPath), strText)) return FALSE;

    int nLine = 0;
    for (int nStart = 0, nEnd; nStart < strText.GetLength(); nStart = nEnd + 1) {
        nEnd = strText.Find(_T('\n'), nStart);
        if (nEnd < 0) nEnd = strText.GetLength();
        CString strLine = strText.Mid(nStart, nEnd - nStart);
        CTrackPoint point;
        ++nLine;
        if (strLine.Trim().IsEmpty()) continue;
        if (ParsePoint(strLine, point))
            m_points.Add(point);
        else
            m_badLines.Add(nLine);
    }
    TRACE(_T("%d points read, %d lines refused"), GetCount(), m_badLines.GetSize());
    return TRUE;
}

CTrack CTrack::Thinned(CTimeSpan interval) const {
    CTrack thinned;
    thinned.m_strTitle = m_strTitle;
    for (int i = 0; i < GetCount(); ++i) {
        BOOL const bIsOuter = i == 0 || i == GetCount() - 1;
        if (bIsOuter || m_points[i].m_time - thinned.GetEnd() >= interval)
            thinned.m_points.Add(m_points[i]);
    }
    return thinned;
}

UINT CTrack::Save(CString const& strPath) const {
    CString strJson;
    strJson += _T("{\"type\": \"Feature\",\n\"properties\": {\"name\": ") + Quoted(m_strTitle);
    strJson += _T(", \"from\": ") + Quoted(GetStart()) + _T(", \"to\": ") + Quoted(GetEnd());
    strJson += _T("},\n\"geometry\": {\"type\": \"LineString\", \"coordinates\": [\n");
    // Strings keep no spare room: without this, each point would copy all that stand before it.
    int const nRoom = strJson.GetLength() + GetCount() * 40 + 4;
    strJson.GetBuffer(nRoom);
    strJson.ReleaseBuffer();
    for (int i = 0; i < GetCount(); ++i) {
        CString strPoint;
        strPoint.Format(_T("[%.5f, %.5f, %.1f]%ls\n"), m_points[i].m_dLongitude,
                        m_points[i].m_dLatitude, m_points[i].m_dAltitude,
                        i < GetCount() - 1 ? _T(",") : _T(""));
        strJson += strPoint;
    }
    strJson += _T("]}}\n");

    CStringA const strBytes = TextToUtf8(strJson);
    CFile file;
    if (!file.OpenForWriting(strPath)) throw CFileException("cannot be created");
    file.Write(strBytes, strBytes.GetLength());
    file.Close();
    return strBytes.GetLength();
}

HRESULT CTrack::put_Title(BSTR bstrTitle) {
    m_strTitle = bstrTitle;
    return S_OK;
}
