// The application's directories while there are none.
#ifndef QORUTILS_TESTS_SUPPORT_NO_DIRECTORIES_H_
#define QORUTILS_TESTS_SUPPORT_NO_DIRECTORIES_H_

#include <qorutils/appdirs/app_dirs.h>

#include <gtest/gtest.h>

inline void ExpectNoDirectories() {
    using WideString = qor_text::CQorStringT<wchar_t>;
    EXPECT_EQ(CApplicationDirectories(), GetApplicationFileName());
    EXPECT_EQ(WideString(), GetApplicationPath());
    EXPECT_EQ(WideString(), GetExeDir());
    EXPECT_EQ(WideString(), GetRootDir());
    EXPECT_EQ(WideString(), GetTavrelAppDataDir());
    EXPECT_EQ(WideString(), GetDocsDir());
    EXPECT_EQ(WideString(L"\\"), GetTavrelAppGeoidsDataDir());
    EXPECT_EQ(WideString(L"\\"), GetTavrelAppGeoDataDir());
}

#endif  // QORUTILS_TESTS_SUPPORT_NO_DIRECTORIES_H_
