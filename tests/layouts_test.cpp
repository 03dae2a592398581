// Programs that were compiled against one version of the headers go on with a later library of the
// same major version: what lies in their own memory keeps its size, on each machine.
#include <gtest/gtest.h>
#include <qorutils/qorutils.h>

#include <cstddef>

namespace {

// bytes32 holds for the target, bytes64 for the host.
template <typename T>
void ExpectSize(std::size_t bytes32, std::size_t bytes64) {
    EXPECT_EQ(sizeof(void*) == 4 ? bytes32 : bytes64, sizeof(T));
}

TEST(Layouts, OfStringsAreOnePointerToThreeWords) {
    ExpectSize<qor_text::CQorStringT<char>>(4, 8);
    ExpectSize<qor_text::CQorStringT<wchar_t>>(4, 8);
    ExpectSize<qor_text::CQorStringData<char>>(12, 12);
    ExpectSize<qor_text::CQorStringData<wchar_t>>(12, 12);
}

TEST(Layouts, OfWin32RecordsAreThoseOfWindows) {
    ExpectSize<GUID>(16, 16);
    ExpectSize<_FILETIME>(8, 8);
    ExpectSize<_SYSTEMTIME>(16, 16);
}

TEST(Layouts, OfTimesAreTheSameOnBothMachines) {
    ExpectSize<base::CTime>(8, 8);
    ExpectSize<base::CTimeSpan>(8, 8);
}

TEST(Layouts, OfNumbersAreDigitsSignAndTop) {
    ExpectSize<bignum_t<255>>(258, 258);
}

// The enumerator's records hold a stat of the system.
TEST(Layouts, OfFilesFollowTheMachine) {
    ExpectSize<base::CFile>(4, 4);
    ExpectSize<base::PlatformFileInfo>(24, 24);
    ExpectSize<base::_TFindInfo>(352, 408);
    ExpectSize<base::TFileEnumerator>(408, 504);
    ExpectSize<SeqFileNames>(16, 32);
}

// A std::map and a std::vector of the C++ runtime.
TEST(Layouts, OfContainersAreThoseOfTheRuntime) {
    ExpectSize<qor_settings::CThreeTupleStore>(24, 48);
    ExpectSize<qor_templ::CQorArray<int>>(12, 24);
}

}  // namespace
