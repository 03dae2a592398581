// Calendar conversions. Every subject gets the same thousand times between 1970 and 2038 in turn.

#include <qorutils/qorsys/qor_time.h>
#include <qorutils/qorsys/win_time.h>

#include <array>
#include <ctime>
#include <random>

#include "cases.h"

namespace {

constexpr std::size_t kCount = 1000;

struct Moment {
    std::time_t seconds;
    std::tm fields;
    _FILETIME ft;
    _SYSTEMTIME st;
};

std::array<Moment, kCount> Moments() {
    std::minstd_rand random(8);
    std::array<Moment, kCount> moments;
    for (Moment& moment : moments) {
        moment.seconds = static_cast<std::time_t>(random());
        gmtime_r(&moment.seconds, &moment.fields);
        base::to_FILETIME(static_cast<long>(moment.seconds), moment.ft);
        FileTimeToSystemTime(&moment.ft, &moment.st);
    }
    return moments;
}

// A case for each conversion of a moment.
template <typename Convert>
void InTurn(char const* group, char const* subject, Convert convert) {
    static std::array<Moment, kCount> const kMoments = Moments();
    std::size_t last = 0;
    Case(group, subject, [convert, last]() mutable { return convert(kMoments[++last % kCount]); });
}

}  // namespace

int main(int argc, char** argv) {
    InTurn("to calendar", "qorutils", [](Moment const& moment) {
        _SYSTEMTIME st;
        FileTimeToSystemTime(&moment.ft, &st);
        return st;
    });
    InTurn("to calendar", "gmtime_r", [](Moment const& moment) {
        std::tm fields;
        gmtime_r(&moment.seconds, &fields);
        return fields;
    });
    InTurn("from calendar", "qorutils", [](Moment const& moment) {
        _FILETIME ft;
        SystemTimeToFileTime(&moment.st, &ft);
        return ft;
    });
    InTurn("from calendar", "timegm", [](Moment const& moment) {
        std::tm fields = moment.fields;
        return timegm(&fields);
    });
    InTurn("from local calendar", "qorutils",
           [](Moment const& moment) { return base::CTime(moment.st, 0).GetTime(); });
    InTurn("from local calendar", "mktime", [](Moment const& moment) {
        std::tm fields = moment.fields;
        return std::mktime(&fields);
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
