#include <qorutils/fs/platform_file.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "support/counted_heap.h"
#include "support/temporary_directory.h"

namespace {

TEST(CreatePlatformFile, FailsWithoutThrowingWhenThereIsNoMemoryForTheName) {
    TemporaryDirectory const directory;
    qor_text::CQorStringT<wchar_t> const name(directory.WidePath("file").c_str());
    int const blocks = arrayHeap.blocks;
    bool created = true;
    base::PlatformFileError error = base::kFileOk;
    int file = 0;
    errno = 0;
    arrayHeap.untilRefusal = 0;
    EXPECT_NO_THROW(file = base::CreatePlatformFile(name, 0x44, &created, &error));
    arrayHeap.untilRefusal = -1;
    EXPECT_EQ(-1, file);
    EXPECT_EQ(ENOMEM, errno);
    EXPECT_EQ(base::kFileErrorNoMemory, error);
    EXPECT_FALSE(created);
    EXPECT_EQ(blocks, arrayHeap.blocks);
    EXPECT_FALSE(directory.Has("file"));
}

}  // namespace
