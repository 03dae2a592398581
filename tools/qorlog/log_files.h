// The logs of programs: which there are, and which is the newest.
//
// A program's logs are NAME1.log.txt to NAME10.log.txt in one directory, with a counter beside
// them, NAME.seq.ini, that holds the number of the log that was begun last.

#ifndef QORUTILS_TOOLS_QORLOG_LOG_FILES_H_
#define QORUTILS_TOOLS_QORLOG_LOG_FILES_H_

#include <cstdint>
#include <string>

namespace qorlog {

// Where a program puts its log that says nothing about its directories.
std::string DefaultDirectory();

// The name of the program in the directory whose log was written last; empty when there is no log.
// Throws LogError (log_reader.h) for a directory that cannot be read.
std::string NewestProgram(std::string const& directory);

// The ten logs of one program.
class LogSeries {
  public:
    LogSeries() = default;
    LogSeries(std::string const& directory, std::string const& program);

    // The series that a log belongs to by its name; for any other file, one without logs.
    static LogSeries Of(std::string const& path);

    // The log that the counter names; without such a file, the one that was written last, or empty.
    std::string Newest() const;

    // A state of the counter.
    struct Count {
        unsigned number = 0;  // 0: it tells none
        std::int64_t time = 0;
    };
    Count Now() const;

    // The log that was begun when the counter left this state, which then becomes that behind it;
    // empty as long as it has not, or the program is about to empty that file of an earlier run.
    std::string BegunSince(Count* count) const;

  private:
    std::string PathOf(unsigned number) const;

    std::string stem_;  // of the paths, up to the number
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_LOG_FILES_H_
