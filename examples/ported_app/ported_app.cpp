// ported_app POINTS MAP: makes a line on a map (GeoJSON) of a receiver's point file.
//
// POINTS has a line "name, date and time, latitude, longitude, altitude" for each point, with times
// in UTC. The file ported_app.ini in the application's folder says how the line is called and how
// many seconds lie between its points.
//
// The exit status is 1 when a file cannot be read or written, or has no track of two points; also
// when some lines are no points, though the map is made of the others then. It is 2 without two
// arguments.

#include <qorutils/formats/time_text.h>

#include "track.h"

namespace {

BOOL Complain(CString const& strAbout, CString const& strReason) {
    Print(stderr, _T("ported_app: ") + strAbout + _T(": ") + strReason + _T("\n"));
    return FALSE;
}

BOOL LoadTrack(CString const& strPath, CTrack& track) {
    try {
        if (!track.Load(strPath)) return Complain(strPath, _T("is not UTF-8"));
    } catch (CFileException const& e) {
        return Complain(strPath, e.what());
    }
    for (int const nLine : track.GetBadLines()) {
        CString strReason;
        strReason.Format(_T("line %d is no point"), nLine);
        Complain(strPath, strReason);
    }
    return track.GetCount() >= 2 || Complain(strPath, _T("has no two points"));
}

void SetTitle(CProfile const& profile, CTrack& track) {
    BSTR bstrTitle = profile.GetString(_T("Map"), _T("Title"), _T("A walk")).AllocSysString();
    track.put_Title(bstrTitle);
    SysFreeString(bstrTitle);
}

void PrintWalk(CString const& strPath, CTrack const& track) {
    CString strCount;
    strCount.Format(_T("%d points, "), track.GetCount());
    CTimeSpan const span = track.GetEnd() - track.GetStart();
    Print(stdout, strPath + _T("\n  ") + strCount + FormatTime(track.GetStart(), _T(' ')) +
                      _T(" to ") + FormatTime(track.GetEnd(), _T(' ')) + _T(" UTC, ") +
                      qor_formats::TimeSpanToString(span) + _T(" on the way\n"));
}

BOOL SaveMap(CString const& strPath, CTrack const& track, int nInterval) {
    CTrack const line = track.Thinned(CTimeSpan(0, 0, 0, nInterval));
    try {
        UINT const nBytes = line.Save(strPath);
        CString strCount;
        strCount.Format(_T("\n  %d points, %d s or more apart, in %u bytes\n"), line.GetCount(),
                        nInterval, nBytes);
        Print(stdout, strPath + strCount);
        TRACE(_T("%d points written"), line.GetCount());
        return TRUE;
    } catch (CFileException const& e) {
        return Complain(strPath, e.what());
    }
}

}  // namespace

int _tmain(int argc, LPTSTR argv[]) {
    if (argc != 3) {
        Print(stderr, _T("usage: ported_app POINTS MAP\n"));
        return 2;
    }

    CProfile profile;
    CString const strIni =
        qor::file_names::GetCanonicalFileName(GetExeDir() + _T("\\ported_app.ini"));
    if (!profile.Load(strIni)) {
        Complain(strIni, _T("cannot be read"));
        return 1;
    }

    CTrack track;
    if (!LoadTrack(argv[1], track)) return 1;
    SetTitle(profile, track);
    PrintWalk(argv[1], track);
    if (!SaveMap(argv[2], track, profile.GetInt(_T("Map"), _T("Interval"), 60))) return 1;

    OutputDebugString(_T("the map is made\n"));
    if (std::fflush(stdout) != 0) {
        Complain(_T("standard output"), _T("cannot be written"));
        return 1;
    }
    return track.GetBadLines().IsEmpty() ? 0 : 1;
}
