#include "qorutils/export.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The build takes the text, programs ask for the numbers.
TEST(Version, TextIsTheThreeNumbers) {
    EXPECT_EQ(std::to_string(QORUTILS_VERSION_MAJOR) + "." +
                  std::to_string(QORUTILS_VERSION_MINOR) + "." +
                  std::to_string(QORUTILS_VERSION_PATCH),
              QORUTILS_VERSION_STRING);
}

}  // namespace
