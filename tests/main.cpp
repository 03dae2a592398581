#include <qorutils/logging/main_logger.h>

#include <ftw.h>
#include <stdlib.h>

#include <clocale>
#include <cstdio>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace {

// TMPDIR, where the log goes: programs that run at the same time would share its numbered names.
class OwnTemporaryFiles {
  public:
    OwnTemporaryFiles() {
        char path[] = "/tmp/qorutils_tests_XXXXXX";
        if (mkdtemp(path) == nullptr) throw std::runtime_error("no temporary directory");
        path_ = path;
        setenv("TMPDIR", path, 1);
    }
    ~OwnTemporaryFiles() { nftw64(path_.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS); }
    OwnTemporaryFiles(OwnTemporaryFiles const&) = delete;
    OwnTemporaryFiles& operator=(OwnTemporaryFiles const&) = delete;

  private:
    static int RemoveEntry(char const* path, struct stat64 const*, int, struct FTW*) {
        return std::remove(path);
    }

    std::string path_;
};

// Before the first test, which may change what the log is made from, or count what it takes. A
// program whose tests each need a process without a log defines QORUTILS_TESTS_START_WITHOUT_LOG.
void MakeLog() {
#ifndef QORUTILS_TESTS_START_WITHOUT_LOG
    qor_logging::getMainLogger();
#endif
}

}  // namespace

int main(int argc, char** argv) {
    OwnTemporaryFiles const temporaryFiles;
    // The suite is run under several values of LC_ALL; without this call all would mean "C".
    std::setlocale(LC_ALL, "");
    MakeLog();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
