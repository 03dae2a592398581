// A directory of a test's own, so that no test sees what another left.
#ifndef QORUTILS_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_
#define QORUTILS_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_

#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// Exists while the object lives. What the object made itself goes with it; every other entry that
// is still there then fails the test. What the code under test is meant to leave is therefore
// removed by name, with Remove, which fails when it is missing.
// Names are taken within the directory; the directory's own path is plain ASCII without "..".
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        char path[] = "/tmp/qorutils_test_XXXXXX";
        if (mkdtemp(path) == nullptr) throw std::runtime_error("no temporary directory");
        path_ = path;
    }
    ~TemporaryDirectory() {
        for (auto made = made_.rbegin(); made != made_.rend(); ++made) std::remove(made->c_str());
        nftw64(path_.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS);
    }
    TemporaryDirectory(TemporaryDirectory const&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory const&) = delete;

    std::string Path(std::string const& name) const { return path_ + "/" + name; }

    // For names of ASCII only, so that it does not depend on the locale.
    std::wstring WidePath(std::string const& name) const {
        std::string const path = Path(name);
        return std::wstring(path.begin(), path.end());
    }

    void MakeFile(std::string const& name, std::string const& content) {
        std::ofstream file(Path(name), std::ios::binary);
        file << content;
        file.close();
        Made(name, file.good());
    }

    // A file of zeros that takes no room on the disk.
    void MakeSparseFile(std::string const& name, long long size) {
        int const file = open64(Path(name).c_str(), O_CREAT | O_EXCL | O_WRONLY, 0600);
        bool const isSized = file != -1 && ftruncate64(file, size) == 0;
        if (file != -1) close(file);
        Made(name, isSized);
    }

    void MakeFolder(std::string const& name) { Made(name, mkdir(Path(name).c_str(), 0700) == 0); }

    void MakeLink(std::string const& name, std::string const& target) {
        Made(name, symlink(target.c_str(), Path(name).c_str()) == 0);
    }

    bool Has(std::string const& name) const {
        struct stat64 status;
        return lstat64(Path(name).c_str(), &status) == 0;
    }

    std::string Content(std::string const& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        EXPECT_TRUE(file.is_open()) << Path(name);
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }

    void Remove(std::string const& name) const {
        EXPECT_EQ(0, std::remove(Path(name).c_str())) << Path(name);
    }

  private:
    void Made(std::string const& name, bool succeeded) {
        made_.push_back(Path(name));
        if (!succeeded) throw std::runtime_error("cannot make " + Path(name));
    }

    static int RemoveEntry(char const* path, struct stat64 const*, int, struct FTW* position) {
        if (position->level > 0) ADD_FAILURE() << "left behind: " << path;
        return std::remove(path);
    }

    std::string path_;
    std::vector<std::string> made_;
};

#endif  // QORUTILS_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_
