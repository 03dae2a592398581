// The working directory of the process, changed for one scope.
#ifndef QORUTILS_TESTS_SUPPORT_WORKING_DIRECTORY_H_
#define QORUTILS_TESTS_SUPPORT_WORKING_DIRECTORY_H_

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

// It is `path` while the object lives and what it was before afterwards. Create the directory
// before the object, so that it outlives it. Not for tests that run threads.
class WorkingDirectory {
  public:
    explicit WorkingDirectory(std::string const& path)
        : previous_(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (previous_ == -1 || chdir(path.c_str()) != 0)
            throw std::runtime_error("cannot work in " + path);
    }
    ~WorkingDirectory() {
        EXPECT_EQ(0, fchdir(previous_));
        close(previous_);
    }
    WorkingDirectory(WorkingDirectory const&) = delete;
    WorkingDirectory& operator=(WorkingDirectory const&) = delete;

  private:
    int previous_;
};

#endif  // QORUTILS_TESTS_SUPPORT_WORKING_DIRECTORY_H_
