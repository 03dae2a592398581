#include <qorutils/logging/trace.h>

#include <cerrno>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/main_log.h"
#include "support/scoped_locale.h"

namespace {

using qor_text::CQorStringT;
using namespace qor_logging;  // NOLINT(google-build-using-namespace): a user's program

using Messages = std::vector<std::string>;

template <typename Action>
Messages Logged(Action action) {
    LogMark const mark;
    action();
    return mark.Messages();
}

TEST(QorTraceAlways, FormatsWideText) {
    EXPECT_EQ(Messages{"7 of abc received"},
              Logged([] { QOR_TRACE_ALWAYS(L"%d of %ls received", 7, L"abc"); }));
}

TEST(QorTraceAlways, FormatsNarrowText) {
    EXPECT_EQ(Messages{"7 of abc received"},
              Logged([] { QOR_TRACE_ALWAYS("%d of %s received", 7, "abc"); }));
}

TEST(QorTraceAlways, TakesStringsAsFormats) {
    CQorStringT<wchar_t> const wide(L"%d%%, %d");
    CQorStringT<char> const narrow("%d%%, %s");
    EXPECT_EQ((Messages{"1%, 2", "1%, two"}), Logged([&] {
                  QOR_TRACE_ALWAYS(wide, 1, 2);
                  QOR_TRACE_ALWAYS(narrow, 1, "two");
              }));
}

TEST(QorTraceAlways, TakesStringsWithoutArguments) {
    EXPECT_EQ((Messages{"wide", "narrow"}), Logged([] {
                  QOR_TRACE_ALWAYS(CQorStringT<wchar_t>(L"wide"));
                  QOR_TRACE_ALWAYS(CQorStringT<char>("narrow"));
              }));
}

TEST(QorTraceAlways, PromotesTheArgumentsOfAStringAsAnyOther) {
    CQorStringT<wchar_t> const format(L"%c %d %.1f %lld %ls");
    char const letter = 'x';
    short const small = -3;
    float const half = 0.5f;
    EXPECT_EQ(Messages{"x -3 0.5 9000000000 end"},
              Logged([&] { QOR_TRACE_ALWAYS(format, letter, small, half, 9000000000LL, L"end"); }));
}

TEST(QorTraceAlways, WritesZerosInWideMessages) {
    EXPECT_EQ(Messages{"a<0>b"}, Logged([] { QOR_TRACE_ALWAYS(L"a%lcb", 0); }));
}

TEST(QorTraceAlways, EndsNarrowMessagesAtAZero) {
    EXPECT_EQ(Messages{"a"}, Logged([] { QOR_TRACE_ALWAYS("a%cb", 0); }));
}

TEST(QorTraceAlways, WidensByTheLocale) {
    ScopedLocale const utf8("C.UTF-8");
    EXPECT_EQ((Messages{"<20AC>", "before"}), Logged([] {
                  QOR_TRACE_ALWAYS("\xE2\x82\xAC");
                  QOR_TRACE_ALWAYS("before\xFF after");  // ends at what is no UTF-8
              }));
}

TEST(QorTraceAlways, LosesNarrowBytesThatAsciiDoesNotHave) {
    ScopedLocale const ascii("C");
    std::string const message = Logged([] { QOR_TRACE_ALWAYS("a\xE2z"); }).at(0);
    EXPECT_TRUE(message == "a" || message == "a<E2>z" || message == "a<FFFFFFE2>z" ||
                message == "a<DFE2>z")
        << message;
}

TEST(QorTraceAlways, WritesAWideMessageOf2047AndNoneBeyond) {
    std::wstring const longest(2047, L'x');
    EXPECT_EQ((Messages{std::string(2047, 'x'), ""}), Logged([&] {
                  QOR_TRACE_ALWAYS(L"%ls", longest.c_str());
                  QOR_TRACE_ALWAYS(L"%ls!", longest.c_str());
              }));
}

TEST(QorTraceAlways, WritesANarrowMessageOfAnyLength) {
    std::string const text(100000, 'x');
    EXPECT_EQ(Messages{text}, Logged([&] { QOR_TRACE_ALWAYS("%s", text.c_str()); }));
}

TEST(QorTraceAlways, WritesAnEmptyLine) {
    EXPECT_EQ((Messages{"", ""}), Logged([] {
                  QOR_TRACE_ALWAYS(L"");
                  QOR_TRACE_ALWAYS(CQorStringT<char>());
              }));
}

TEST(QorTraceDebug, WritesNothing) {
    EXPECT_EQ(Messages{}, Logged([] {
                  QOR_TRACE_DEBUG(L"%d", 1);
                  QOR_TRACE_DEBUG("%d", 1);
                  QOR_TRACE_DEBUG(CQorStringT<wchar_t>(L"%d"), 1);
                  QOR_TRACE_DEBUG(CQorStringT<char>("%d"), 1);
              }));
}

TEST(QorTraceDebug, NeverLooksAtItsArguments) {
    GuardedArray<char> const unreadable(0);
    EXPECT_EQ(Messages{},
              Logged([&] { QOR_TRACE_DEBUG("%s", static_cast<char const*>(unreadable.data())); }));
}

TEST(LogMessage, WritesLevelsZeroToThree) {
    EXPECT_EQ((Messages{"wide 0", "wide 1", "wide 2", "wide 3"}), Logged([] {
                  for (long level = 0; level < 4; ++level) LOGMESSAGE(level, L"wide %ld", level);
              }));
    EXPECT_EQ((Messages{"narrow 0", "narrow 1", "narrow 2", "narrow 3"}), Logged([] {
                  for (long level = 0; level < 4; ++level) LOGMESSAGE(level, "narrow %ld", level);
              }));
}

TEST(LogMessage, ShowsSevenWhateverItsLevel) {
    LogMark const mark;
    LOGMESSAGE(2, "seven");
    EXPECT_EQ(" ; 7 ; seven\r\n", Shown(DecodeUtf32Le(mark.Bytes())).substr(9));
}

TEST(LogMessage, WritesNoOtherLevel) {
    EXPECT_EQ(Messages{}, Logged([] {
                  for (long level : {4L, 5L, 6L, 7L, 8L, 100L, 2147483647L, -1L, -2147483647L}) {
                      LOGMESSAGE(level, L"wide");
                      LOGMESSAGE(level, "narrow");
                  }
              }));
}

unsigned char const* Bytes(char const* text) {
    return reinterpret_cast<unsigned char const*>(text);
}

TEST(QorTraceBinAlways, WritesTitleAndDataUnformatted) {
    EXPECT_EQ(Messages{"rx: a%d"}, Logged([] { QOR_TRACE_BIN_ALWAYS("rx: ", Bytes("a%d"), 3); }));
    EXPECT_EQ(Messages{"100%s: %n"},
              Logged([] { QOR_TRACE_BIN_ALWAYS("100%s: ", Bytes("%n"), 2); }));
}

TEST(QorTraceBinAlways, WritesTheTitleAloneForNoData) {
    EXPECT_EQ((Messages{"rx: ", "rx: "}), Logged([] {
                  QOR_TRACE_BIN_ALWAYS("rx: ", Bytes("abc"), 0);
                  QOR_TRACE_BIN_ALWAYS("rx: ", nullptr, 0);
              }));
}

TEST(QorTraceBinAlways, ReadsAsManyBytesAndNoMore) {
    GuardedArray<unsigned char> const data(Bytes("abc"), 3);
    EXPECT_EQ(Messages{"rx: abc"}, Logged([&] { QOR_TRACE_BIN_ALWAYS("rx: ", data.data(), 3); }));
}

TEST(QorTraceBinAlways, CountsBytesNotCharacters) {
    ScopedLocale const utf8("C.UTF-8");
    GuardedArray<unsigned char> const euros(Bytes("\xE2\x82\xAC\xE2\x82\xAC"), 6);
    EXPECT_EQ(Messages{"<20AC><20AC>"}, Logged([&] { QOR_TRACE_BIN_ALWAYS("", euros.data(), 6); }));
    EXPECT_EQ(Messages{"<20AC>"}, Logged([&] { QOR_TRACE_BIN_ALWAYS("", euros.data(), 4); }));
}

TEST(QorTraceBinAlways, EndsTheDataAtAZeroOrAnInvalidSequence) {
    ScopedLocale const utf8("C.UTF-8");
    EXPECT_EQ((Messages{"rx: a", "rx: a"}), Logged([] {
                  QOR_TRACE_BIN_ALWAYS("rx: ", Bytes("a\0b"), 3);
                  QOR_TRACE_BIN_ALWAYS("rx: ",
                                       Bytes("a\xFF"
                                             "b"),
                                       3);
              }));
}

TEST(QorTraceBinAlways, WritesTheDataAloneForANullTitle) {
    EXPECT_EQ(Messages{"abc"}, Logged([] { QOR_TRACE_BIN_ALWAYS(nullptr, Bytes("abc"), 3); }));
}

TEST(EveryEntryPoint, LeavesErrnoAlone) {
    errno = ENOSPC;
    QOR_TRACE_ALWAYS(L"wide");
    QOR_TRACE_ALWAYS("narrow");
    QOR_TRACE_BIN_ALWAYS("title", Bytes("data"), 4);
    qor_err_log("file", 1, "check");
    EXPECT_EQ(ENOSPC, errno);
}

}  // namespace
