#include "qorutils/logging/main_logger.h"

#include <time.h>

#include <memory>

#include "qorutils/appdirs/app_dirs.h"
#include "qorutils/fs/dir_trees.h"
#include "qorutils/fs/file_funcs.h"
#include "qorutils/fs/file_names.h"
#include "qorutils/fs/generated_names.h"
#include "qorutils/logging/main_logger_impl.h"
#include "qorutils/logging/trace.h"

using qor_text::CQorStringT;

namespace qor_logging {

namespace {

bool isFinished = false;

// Destroyed right before the holder, which does not forget the logger that it destroys.
struct FinishMark {
    ~FinishMark() { isFinished = true; }
};

// Built before everything else in the library and in programs that it is part of, and so destroyed
// after it. The holder's type is a promise to ported code, deprecated or not.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
__attribute__((init_priority(101))) std::auto_ptr<CQorLogger> mainLogger;
#pragma GCC diagnostic pop
__attribute__((init_priority(101))) FinishMark const finishMark;

CQorStringT<wchar_t> LogDirectory() {
    CQorStringT<wchar_t> root = GetRootDir();
    if (FileFuncs::IsDirExist(root)) return root;
    FileFuncs::CreateDirectoryTree(root);
    return FileFuncs::IsDirExist(root) ? root : FileFuncs::GetTempDirWithoutSlash();
}

CQorStringT<wchar_t> NextLogName(CQorStringT<wchar_t> const& directory) {
    CQorStringT<wchar_t> name =
        qor::file_names::ExtractFileNameWithoutExtFromPathName(GetApplicationPath());
    if (name.IsEmpty()) name = L"qor";
    return SeqFileNames(directory, name, L".log.txt", 10).getNext();
}

void WriteBanner() {
    time_t const now = time(nullptr);
    tm utc;
    gmtime_r(&now, &utc);
    QOR_TRACE_ALWAYS(L"Program %ls started on %d/%02d/%02d %02d:%02d:%02d UTC",
                     GetApplicationPath().c_str(), utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                     utc.tm_hour, utc.tm_min, utc.tm_sec);
}

void MakeMainLogger() {
    KeptErrno const keptErrno;
    CQorStringT<wchar_t> const directory = LogDirectory();
    mainLogger.reset(new CQorLogger);
    mainLogger->Open(NextLogName(directory));
    if (mainLogger->isOpen) WriteBanner();
}

}  // namespace

CQorLogger* getMainLogger() {
    if (isFinished) return nullptr;
    if (mainLogger.get() == nullptr) MakeMainLogger();
    return mainLogger.get();
}

void qor_flush_log() {
    KeptErrno const keptErrno;
    if (CQorLogger* const logger = getMainLogger()) logger->Flush();
}

CQorStringT<wchar_t> getQorMainLogFileName() {
    CQorLogger* const logger = getMainLogger();
    return logger != nullptr ? logger->OpenFileName() : CQorStringT<wchar_t>();
}

}  // namespace qor_logging
