// A line in the log: given to the system before the call returns, as it is for every peer here.

#include <qorutils/logging/main_logger.h>
#include <qorutils/logging/trace.h>
#include <qorutils/text/qor_string.h>

#include <fcntl.h>
#include <ftw.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "cases.h"

#ifdef QORUTILS_BENCH_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

#ifdef QORUTILS_BENCH_GLOG
#include <glog/logging.h>
#endif

#ifdef QORUTILS_BENCH_BOOST_LOG
#include <boost/log/expressions.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_file_backend.hpp>
#include <boost/log/sources/severity_logger.hpp>
#include <boost/log/support/date_time.hpp>
#include <boost/log/trivial.hpp>
#include <boost/log/utility/setup/common_attributes.hpp>
#include <boost/log/utility/setup/file.hpp>
#endif

#ifdef QORUTILS_BENCH_WX
#include <wx/log.h>
#include <wx/string.h>
#endif

namespace {

// All logs of a run; they go with it.
class LogDirectory {
  public:
    LogDirectory() {
        path_ = FolderForFiles() + "/logging_bench_XXXXXX";
        if (mkdtemp(&path_[0]) == nullptr) throw std::runtime_error("no temporary directory");
        setenv("TMPDIR", path_.c_str(), 1);
    }
    ~LogDirectory() { nftw(path_.c_str(), RemoveEntry, 8, FTW_DEPTH | FTW_PHYS); }
    LogDirectory(LogDirectory const&) = delete;
    LogDirectory& operator=(LogDirectory const&) = delete;

    std::string Path(char const* name) const { return path_ + "/" + name; }

    // Gives the room on the disk back; what is written next leaves a hole in front of it.
    void EmptyFiles() const { nftw(path_.c_str(), EmptyFile, 8, FTW_DEPTH | FTW_PHYS); }

  private:
    static int RemoveEntry(char const* path, struct stat const*, int, struct FTW*) {
        return std::remove(path);
    }
    static int EmptyFile(char const* path, struct stat const*, int type, struct FTW*) {
        return type == FTW_F ? truncate(path, 0) : 0;
    }

    std::string path_;
};

LogDirectory const* logs;

// One line; and a thousand of them from four threads.
template <typename Line>
void LineCases(std::string const& group, char const* subject, Line line) {
    Case(group + "/1 thread", subject, [line] {
        line();
        return 0;
    });
    Case(group + "/4 threads", subject, [line] {
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([line] {
                for (int k = 0; k < 250; ++k) line();
            });
        for (std::thread& thread : threads) thread.join();
        logs->EmptyFiles();
        return 0;
    });
}

// The bytes of a line, written as they are.
class BareFile {
  public:
    explicit BareFile(std::string const& path)
        : file_(open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600)) {}
    ~BareFile() { close(file_); }
    BareFile(BareFile const&) = delete;
    BareFile& operator=(BareFile const&) = delete;

    void Write(std::string const& bytes) {
        std::lock_guard<std::mutex> const lock(mutex_);
        benchmark::DoNotOptimize(write(file_, bytes.data(), bytes.size()));
    }

    // With what the rules of a line ask for besides.
    void WriteByTheRules(std::string const& bytes) {
        std::lock_guard<std::mutex> const lock(mutex_);
        timespec now;
        clock_gettime(CLOCK_MONOTONIC, &now);
        benchmark::DoNotOptimize(now);
        benchmark::DoNotOptimize(write(file_, bytes.data(), bytes.size()));
        benchmark::DoNotOptimize(isatty(STDOUT_FILENO));
    }

  private:
    int const file_;
    std::mutex mutex_;
};

void RegisterLines(std::size_t length) {
    std::string const group = "line/" + std::to_string(length);
    auto const text = Words<std::string>(length);
    auto const wide = Words<std::wstring>(length);

    LineCases(group, "qorutils", [wide] { qor_logging::QOR_TRACE_ALWAYS(L"%ls", wide.c_str()); });

    std::string const bytes(4 * (length + sizeof "00000.000 ; 7 ; \r\n" - 1), 'x');
    auto const file = std::make_shared<BareFile>(logs->Path("bare"));
    LineCases(group, "floor: write", [file, bytes] { file->Write(bytes); });
    LineCases(group, "floor: write, clock, terminal test",
              [file, bytes] { file->WriteByTheRules(bytes); });

#ifdef QORUTILS_BENCH_SPDLOG
    auto const spd = std::make_shared<spdlog::logger>(
        "bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(logs->Path("spdlog")));
    spd->flush_on(spdlog::level::info);
    LineCases(group, "spdlog", [spd, text] { spd->info("{}", text); });
#endif
#ifdef QORUTILS_BENCH_GLOG
    LineCases(group, "glog", [text] { LOG(INFO) << text; });
#endif
#ifdef QORUTILS_BENCH_BOOST_LOG
    LineCases(group, "Boost.Log", [text] { BOOST_LOG_TRIVIAL(info) << text; });
#endif
#ifdef QORUTILS_BENCH_WX
    LineCases(group, "wxLog", [wide] { wxLogMessage(L"%ls", wide.c_str()); });
#endif
}

void RegisterRejectedLines() {
    LineCases("rejected line", "qorutils",
              [] { qor_logging::QOR_TRACE_DEBUG(L"%d of %ls", 7, L"text"); });
#ifdef QORUTILS_BENCH_SPDLOG
    auto const spd = std::make_shared<spdlog::logger>(
        "rejecting", std::make_shared<spdlog::sinks::basic_file_sink_mt>(logs->Path("rejected")));
    LineCases("rejected line", "spdlog", [spd] { spd->debug("{} of {}", 7, "text"); });
#endif
#ifdef QORUTILS_BENCH_GLOG
    LineCases("rejected line", "glog", [] {
        VLOG(1) << 7 << " of "
                << "text";
    });
#endif
#ifdef QORUTILS_BENCH_BOOST_LOG
    LineCases("rejected line", "Boost.Log", [] {
        BOOST_LOG_TRIVIAL(debug) << 7 << " of "
                                 << "text";
    });
#endif
#ifdef QORUTILS_BENCH_WX
    LineCases("rejected line", "wxLog", [] { wxLogDebug(L"%d of %ls", 7, L"text"); });
#endif
}

void OpenPeers(char const* program) {
#ifdef QORUTILS_BENCH_GLOG
    FLAGS_log_dir = logs->Path("");
    FLAGS_logbuflevel = -1;  // no line is held back
    FLAGS_stderrthreshold = google::GLOG_FATAL;
    google::InitGoogleLogging(program);
#endif
#ifdef QORUTILS_BENCH_BOOST_LOG
    namespace keywords = boost::log::keywords;
    namespace expressions = boost::log::expressions;
    boost::log::add_common_attributes();
    boost::log::add_file_log(
        keywords::file_name = logs->Path("boost"), keywords::auto_flush = true,
        keywords::format = expressions::stream
                           << expressions::format_date_time<boost::posix_time::ptime>("TimeStamp",
                                                                                      "%H:%M:%S.%f")
                           << " " << expressions::smessage);
    boost::log::core::get()->set_filter(boost::log::trivial::severity >= boost::log::trivial::info);
#endif
#ifdef QORUTILS_BENCH_WX
    delete wxLog::SetActiveTarget(
        new wxLogStderr(std::fopen(logs->Path("wxlog").c_str(), "w")));  // flushes each line
    wxLog::SetLogLevel(wxLOG_Message);
#endif
    benchmark::DoNotOptimize(program);
}

}  // namespace

int main(int argc, char** argv) {
    LogDirectory const directory;
    logs = &directory;
    qor_logging::getMainLogger();  // before the first thread
    OpenPeers(argv[0]);
    RegisterLines(40);
    RegisterLines(200);
    RegisterRejectedLines();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::ClearRegisteredBenchmarks();
}
