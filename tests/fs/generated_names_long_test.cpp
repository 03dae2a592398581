// Names longer than this machine's file systems allow: the program stands before the C library and
// finds something under every such name.
#include <qorutils/fs/generated_names.h>

#include <sys/stat.h>

#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "support/next_in_line.h"
#include "support/text_literal.h"

namespace {

template <typename Status>
int StatusOfAnyLength(char const* symbol, char const* path, Status* status) {
    using Function = int(char const*, Status*);
    static auto const next = NextInLine(static_cast<Function*>(nullptr), symbol);
    char const* const slash = std::strrchr(path, '/');
    bool const isTooLong = slash != nullptr && std::strlen(slash + 1) > NAME_MAX;
    return next(isTooLong ? "/" : path, status);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int stat(char const* path,
                                                           struct stat* status) noexcept {
    return StatusOfAnyLength("stat", path, status);
}

extern "C" __attribute__((visibility("default"))) int stat64(char const* path,
                                                             struct stat64* status) noexcept {
    return StatusOfAnyLength("stat64", path, status);
}

namespace {

using WideString = qor_text::CQorStringT<wchar_t>;

TEST(NextDefaultName, IsEmptyWhenEveryNumberIsTaken) {
    for (std::size_t const digits : {256, 300}) {
        WideString const name(std::wstring(digits, L'9').c_str());
        EXPECT_EQ(WideString(), FileFuncs::NextDefaultName(L"/no/such/folder", name, L""));
    }
    // 255 digits can be counted up; what comes then cannot.
    std::wstring const last(255, L'9');
    EXPECT_EQ(WideString(), FileFuncs::NextDefaultName(L"/no/such/folder", last.c_str(), L".gpx"));
}

TEST(NextDefaultName, StaysWhereItCannotBeCountedWhenThereIsNoSuchFile) {
    // Behind another separator, the digits are not a file's name.
    WideString const name(std::wstring(300, L'9').c_str());
    EXPECT_EQ(name, FileFuncs::NextDefaultName(L"/no/such/folder", name, L"/x"));
}

}  // namespace
