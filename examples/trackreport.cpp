// trackreport FOLDER: reports on the point files (*.csv) in a folder.
//
// A line of such a file is "name, date and time, latitude, longitude, altitude", as in
//
//     P0017, 2015-06-01 10:20:30, 46.02431, 7.74912, 1620.4
//
// A point without a name gets the next number after the one before it. Lines that are not right are
// named by number, with the reason, and left out; blank lines are not counted. Of each file: how
// many points, the time from the first to the last, the mean and the highest altitude. The report
// is printed, and written to the folder under the next free name: report1.txt, report2.txt, ...
//
// The exit status is 1 when there is no such folder or the report cannot be written, and 2 without
// an argument.

#include <qorutils/formats/qor_formats.h>
#include <qorutils/fs/file_funcs.h>
#include <qorutils/fs/file_names.h>
#include <qorutils/fs/generated_names.h>
#include <qorutils/fs/platform_file.h>
#include <qorutils/logging/trace.h>
#include <qorutils/qorsys/qor_time.h>
#include <qorutils/text/safe_format.h>

#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <memory>
#include <vector>

#include "console.h"

namespace {

using Text = qor_text::CQorStringT<wchar_t>;
using qor_logging::QOR_TRACE_ALWAYS;
namespace formats = qor_formats;

enum Field { kName, kTime, kLatitude, kLongitude, kAltitude, kFieldCount };

struct Point {
    Text name;
    long long seconds;  // since 1970
    double altitude;    // metres
};

struct Track {
    std::vector<Point> points;
    Text rejected;  // a line of the report each
};

// Why a line is not a point; null while all is well.
using Reason = wchar_t const*;

bool ReadNumber(Text const& text, double limit, double& number) {
    int const type = formats::getTextValType(text);
    if (type != 1 && type != 2) return false;
    return formats::StringToDouble(text, number) != 0 && -limit <= number && number <= limit;
}

bool ReadTime(Text const& text, long long& seconds) {
    _SYSTEMTIME st = {};
    _FILETIME ticks;
    if (formats::getTextValType(text) != 5) return false;
    if (formats::ParseDtTimeAttrFormatFromStr(text, st) == 0) return false;
    if (SystemTimeToFileTime(&st, &ticks) == 0) return false;
    seconds = base::to_time_t(ticks);
    return true;
}

Reason NamePoint(Text const& given, std::vector<Point> const& before, Text& name) {
    name = given;
    if (given.IsEmpty()) {
        if (before.empty()) return L"there is no name before it to count on from";
        name = before.back().name;
        if (formats::DoIncPtno(name, 1) == 0) return L"the number before it cannot be counted on";
    }
    return formats::IsValidName(name) ? nullptr : L"a name has 1 to 40 letters, digits and '_'";
}

Reason ReadPoint(Text const& line, std::vector<Point> const& before, Point& point) {
    formats::StringArray fields;
    // With a separator at its very start, a text would be one item.
    if (!formats::ParseValues(L" " + line, fields, ',', L"\"\t"))
        return L"quotes and tabs have no place";
    if (fields.GetSize() != kFieldCount) return L"a point has five fields";
    if (Reason const reason = NamePoint(fields[kName], before, point.name)) return reason;
    double degrees;
    if (!ReadTime(fields[kTime], point.seconds)) return L"no date and time";
    if (!ReadNumber(fields[kLatitude], 90, degrees)) return L"no latitude";
    if (!ReadNumber(fields[kLongitude], 180, degrees)) return L"no longitude";
    if (!ReadNumber(fields[kAltitude], 9000, point.altitude)) return L"no altitude";
    return nullptr;
}

bool IsAtEnd(int file) {
    char next;
    ssize_t const n = read(file, &next, 1);
    if (n == 1) lseek(file, -1, SEEK_CUR);
    return n != 1;
}

// No track is there when the file cannot be opened.
std::unique_ptr<Track> ReadTrack(Text const& path) {
    int const file =
        base::CreatePlatformFile(path, base::kFileOpenExisting | base::kFileRead, nullptr, nullptr);
    if (file == -1) return nullptr;
    std::unique_ptr<Track> track(new Track);
    Text line;
    for (int number = 1; !IsAtEnd(file); ++number) {
        formats::ReadLine(file, line);
        Point point;
        Reason const reason = ReadPoint(line, track->points, point);
        if (reason == nullptr)
            track->points.push_back(point);
        else
            track->rejected += qor_text::qor_printf(L"  line %d: %ls\n", number, reason);
    }
    base::ClosePlatformFile(file);
    return track;
}

Text Summary(std::vector<Point> const& points) {
    if (points.empty()) return L"  no points\n";
    double sum = 0;
    for (Point const& point : points) sum += point.altitude;
    auto const higher = [](Point const& a, Point const& b) { return a.altitude < b.altitude; };
    auto const earlier = [](Point const& a, Point const& b) { return a.seconds < b.seconds; };
    Point const& highest = *std::max_element(points.begin(), points.end(), higher);
    auto const span = std::minmax_element(points.begin(), points.end(), earlier);
    base::CTimeSpan const duration(span.second->seconds - span.first->seconds);

    return qor_text::qor_printf(
        L"  %d points, %ls to %ls, in %ls\n  altitude: %ls m on average, %ls m at %ls\n",
        static_cast<int>(points.size()), points.front().name.c_str(), points.back().name.c_str(),
        formats::TimeSpanToString(duration).c_str(),
        formats::DoubleToString(sum / static_cast<double>(points.size()), 2).c_str(),
        formats::DoubleToString(highest.altitude, 1).c_str(), highest.name.c_str());
}

std::vector<Text> PointFiles(Text const& folder) {
    qor_vector<base::_TFindInfo> entries;
    FileFuncs::GetFileEntriesInFolder(entries, FileFuncs::eFindFiles, folder, L"*.csv");
    std::vector<Text> names;
    for (base::_TFindInfo const& entry : entries)
        names.push_back(base::TFileEnumerator::GetFilename(entry));
    std::sort(names.begin(), names.end());
    return names;
}

Text Report(Text const& folder) {
    Text report;
    for (Text const& name : PointFiles(folder)) {
        report += name + L"\n";
        std::unique_ptr<Track> const track = ReadTrack(folder + L"/" + name);
        report += track == nullptr ? L"  cannot be read\n" : Summary(track->points);
        if (track != nullptr) report += track->rejected;
        // Without the name: on a terminal, a '%' in a log line is taken for a conversion.
        QOR_TRACE_ALWAYS("%d points read",
                         track == nullptr ? 0 : static_cast<int>(track->points.size()));
    }
    return report;
}

bool WriteReport(Text const& path, Text const& report) {
    std::FILE* const file = std::fopen(qor_text::CQorStringT<char>(path), "w");
    if (file == nullptr) return false;
    bool const isWritten = formats::WriteString(file, report);
    return std::fclose(file) == 0 && isWritten;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: trackreport FOLDER\n", stderr);
        return 2;
    }
    // Paths are narrowed, and names widened, as the locale says; the decimal point is always '.'.
    if (std::setlocale(LC_CTYPE, "") == nullptr) std::setlocale(LC_CTYPE, "C.UTF-8");

    Text const folder = qor::file_names::GetAbsoluteFileName(argv[1]);
    if (!FileFuncs::IsDirExist(folder)) {
        std::fprintf(stderr, "trackreport: %s: no such folder\n", argv[1]);
        return 1;
    }
    Text const report = Report(folder);
    std::fputs(ToUtf8(report), stdout);

    Text const name = FileFuncs::NextDefaultName(folder, L"report", L".txt") + L".txt";
    if (!WriteReport(folder + L"/" + name, report)) {
        std::fprintf(stderr, "trackreport: the report cannot be written\n");
        return 1;
    }
    std::printf("written to %s\n", ToUtf8(name).c_str());
    return 0;
}
