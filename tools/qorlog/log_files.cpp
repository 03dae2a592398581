#include "log_files.h"

#include <qorutils/fs/dir_trees.h>
#include <qorutils/qorsys/qor_types.h>
#include <qorutils/text/qor_string.h>
#include <qorutils/text/utf8.h>

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>

#include <boost/utility/string_ref.hpp>

#include "log_reader.h"

namespace qorlog {

namespace {

constexpr unsigned kLastNumber = 10;
constexpr char kSuffix[] = ".log.txt";

// When a file was written last, in nanoseconds since 1970; false when there is no file. Folders and
// pipes are none: they may be called as they like, in a directory that everyone can write to.
bool WrittenAt(std::string const& path, std::int64_t* time) {
    struct stat64 status;
    if (stat64(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    *time = std::int64_t{status.st_mtim.tv_sec} * 1000000000 + status.st_mtim.tv_nsec;
    return true;
}

// The path or name of a log without number and suffix; empty for any other file.
boost::string_ref StemOf(boost::string_ref path) {
    if (!path.ends_with(kSuffix)) return {};
    path.remove_suffix(sizeof kSuffix - 1);
    if (path.ends_with("10"))
        path.remove_suffix(2);
    else if (!path.empty() && path.back() >= '1' && path.back() <= '9')
        path.remove_suffix(1);
    else
        return {};
    return path.ends_with('/') ? boost::string_ref() : path;
}

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

}  // namespace

std::string DefaultDirectory() {
    qor_text::CQorStringT<wchar_t> const directory = FileFuncs::GetTempDirWithoutSlash();
    unsigned int const length = do_wcstombs(nullptr, directory, 0);
    if (length == 0 || length == static_cast<unsigned int>(-1)) return "/";
    std::string narrow(length, '\0');
    do_wcstombs(&narrow[0], directory, length);
    return narrow;
}

std::string NewestProgram(std::string const& directory) {
    std::unique_ptr<DIR, CloseDirectory> const open(opendir(directory.c_str()));
    if (open == nullptr) throw LogError(std::strerror(errno));
    std::string newest;
    std::int64_t newestTime = 0;
    while (dirent64 const* const entry = readdir64(open.get())) {
        std::string const program = StemOf(entry->d_name).to_string();
        std::int64_t time = 0;
        if (program.empty() || !WrittenAt(directory + "/" + entry->d_name, &time)) continue;
        bool const isNewer =
            newest.empty() || time > newestTime || (time == newestTime && program < newest);
        if (!isNewer) continue;
        newest = program;
        newestTime = time;
    }
    return newest;
}

LogSeries::LogSeries(std::string const& directory, std::string const& program)
    : stem_(directory + (boost::string_ref(directory).ends_with('/') ? "" : "/") + program) {}

LogSeries LogSeries::Of(std::string const& path) {
    LogSeries series;
    series.stem_ = StemOf(path).to_string();
    return series;
}

std::string LogSeries::PathOf(unsigned number) const {
    return stem_ + std::to_string(number) + kSuffix;
}

std::string LogSeries::Newest() const {
    if (stem_.empty()) return {};
    std::int64_t time = 0;
    unsigned const counted = Now().number;
    if (counted != 0 && WrittenAt(PathOf(counted), &time)) return PathOf(counted);
    std::string newest;
    std::int64_t newestTime = 0;
    for (unsigned number = 1; number <= kLastNumber; ++number) {
        std::string const path = PathOf(number);
        if (!WrittenAt(path, &time) || (!newest.empty() && time < newestTime)) continue;
        newest = path;
        newestTime = time;
    }
    return newest;
}

LogSeries::Count LogSeries::Now() const {
    Count count;
    std::string const path = stem_ + ".seq.ini";
    if (stem_.empty() || !WrittenAt(path, &count.time)) return {};
    std::ifstream file(path);
    unsigned number = 0;
    if (file >> number && number <= kLastNumber) count.number = number;
    return count;
}

// A log is made after the counter was written, so that it is the later one of the two. Of several
// that were begun since, each has its turn.
std::string LogSeries::BegunSince(Count* count) const {
    Count next = Now();
    if (next.number == 0 || next.number == count->number) return {};
    std::int64_t time = 0;
    unsigned const successor = count->number % kLastNumber + 1;
    if (count->number != 0 && successor != next.number && WrittenAt(PathOf(successor), &time) &&
        time >= count->time)
        next = {successor, count->time};
    std::string path = PathOf(next.number);
    if (!WrittenAt(path, &time) || time < next.time) return {};
    *count = next;
    return path;
}

}  // namespace qorlog
