// A walk with a receiver: its points, read from a point file, and the line on a map that it makes.
#ifndef QORUTILS_EXAMPLES_PORTED_APP_TRACK_H_
#define QORUTILS_EXAMPLES_PORTED_APP_TRACK_H_

#include "port.h"

struct CTrackPoint {
    CTime m_time;
    double m_dLatitude;
    double m_dLongitude;
    double m_dAltitude;
};

class CTrack {
  public:
    // The lines of a point file: name, date and time, latitude, longitude, altitude. Throws
    // CFileException. FALSE for a file that is no UTF-8.
    BOOL Load(CString const& strPath);

    // The first point, every one that is so much later than the last that was taken, and the last.
    CTrack Thinned(CTimeSpan interval) const;

    // Writes a GeoJSON feature and returns its size in bytes. Throws CFileException.
    UINT Save(CString const& strPath) const;

    // The name in the file, as the automation interface sets it.
    HRESULT put_Title(BSTR bstrTitle);

    int GetCount() const { return m_points.GetSize(); }
    CTime GetStart() const { return m_points[0].m_time; }
    CTime GetEnd() const { return m_points[GetCount() - 1].m_time; }

    // The numbers of the lines that are no points.
    CArray<int, int> const& GetBadLines() const { return m_badLines; }

  private:
    CString m_strTitle;
    CArray<CTrackPoint, CTrackPoint const&> m_points;
    CArray<int, int> m_badLines;
};

#endif  // QORUTILS_EXAMPLES_PORTED_APP_TRACK_H_
