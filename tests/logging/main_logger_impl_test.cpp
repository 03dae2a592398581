#include "qorutils/logging/main_logger_impl.h"

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/main_log.h"
#include "support/pseudo_terminal.h"
#include "support/temporary_directory.h"

namespace {

using qor_logging::CQorLogger;
using qor_text::CQorStringT;
using Messages = std::vector<std::string>;

class Logger : public testing::Test {
  protected:
    ~Logger() override { directory_.Remove("a.txt"); }

    std::string Bytes() const { return directory_.Content("a.txt"); }
    std::string Text() const { return Shown(DecodeUtf32Le(Bytes().substr(2))); }

    // What has been written and what has been shown on a terminal.
    template <typename Action>
    std::string ShownBy(Action action) {
        TerminalOutput const terminal;
        action();
        return terminal.Read();
    }

    TemporaryDirectory directory_;
    std::wstring const path_ = directory_.WidePath("a.txt");
};

std::string Utf32(char const* text) {
    return EncodeUtf32Le(std::u32string(text, text + std::char_traits<char>::length(text)));
}

TEST_F(Logger, WritesTheMarkOfTwoBytesWhenItOpensItsFile) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    EXPECT_EQ("\xFF\xFE", Bytes());
    EXPECT_TRUE(logger.isOpen);
    EXPECT_TRUE(logger.fileName == path_.c_str());
}

TEST_F(Logger, EmptiesAFileOfThatName) {
    { std::ofstream(directory_.Path("a.txt")) << "a log of long ago"; }
    CQorLogger logger;
    logger.Open(path_.c_str());
    EXPECT_EQ("\xFF\xFE", Bytes());
}

TEST_F(Logger, WritesLinesOfFourByteCharacters) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    logger.startTicks = qor_logging::CurrentTicks() - 12000;
    logger.WriteLine(7, L"hi");
    std::string const bytes = Bytes();
    EXPECT_EQ("\xFF\xFE" + Utf32("00012."), bytes.substr(0, 2 + 4 * 6));
    EXPECT_EQ(Utf32(" ; 7 ; hi\r\n"), bytes.substr(2 + 4 * 9));
}

TEST_F(Logger, WritesCharactersOfAnyValueWhole) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    logger.WriteLine(7, CQorStringT<wchar_t>(L"a\0\U0001F600\xFFFFFFFF%s\r\n", 8));
    EXPECT_EQ("a<0><1F600><FFFFFFFF>%s\r\n\r\n", Text().substr(16));
}

TEST_F(Logger, ClosesWithALastLine) {
    {
        CQorLogger logger;
        logger.Open(path_.c_str());
    }
    EXPECT_EQ(Messages{"Logging finished"}, MessagesOfFile(directory_.Path("a.txt")));
}

TEST_F(Logger, WritesALineAtLevelOneWithoutShowingIt) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    std::string const shown = ShownBy([&] { logger.WriteLine(1, L"quiet"); });
    EXPECT_EQ("", shown);
    EXPECT_EQ(" ; 1 ; quiet\r\n", Text().substr(9));
}

TEST_F(Logger, WritesAndShowsALineAtLevelFive) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    std::string const shown = ShownBy([&] { logger.WriteLine(5, L"loud"); });
    EXPECT_EQ(" ; 5 ; loud\r\n", shown.substr(9));
    EXPECT_EQ(" ; 5 ; loud\r\n", Text().substr(9));
}

TEST_F(Logger, DropsALineWithoutTheMasksBit) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    std::string const shown = ShownBy([&] {
        for (long level : {0L, 2L, 4L, 6L, 8L, -2L}) logger.WriteLine(level, L"dropped");
    });
    EXPECT_EQ("", shown);
    EXPECT_EQ("\xFF\xFE", Bytes());
}

TEST_F(Logger, ShowsADotForEachZero) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    std::string const shown =
        ShownBy([&] { logger.WriteLine(7, CQorStringT<wchar_t>(L"\0a\0\0b", 5)); });
    EXPECT_EQ(" ; 7 ; .a..b\r\n", shown.substr(9));
    EXPECT_EQ(" ; 7 ; <0>a<0><0>b\r\n", Text().substr(9));
}

TEST_F(Logger, ShowsALongLineInPiecesOf250) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    // The prefix takes 16. A piece that ends in a single '%' is no format: it shows nothing behind
    // what stands before that; two of them in one piece show one.
    std::wstring message(600, L'x');
    message[249 - 16] = L'%';
    message[250 - 16] = message[251 - 16] = L'%';
    message[498 - 16] = message[499 - 16] = L'%';
    message[500 - 16] = message[501 - 16] = L'%';
    std::string const shown = ShownBy([&] { logger.WriteLine(7, message.c_str()); });
    EXPECT_EQ(std::string(249 - 16, 'x') + "%" + std::string(246, 'x') + "%%" +
                  std::string(616 - 502, 'x') + "\r\n",
              shown.substr(16));
}

TEST_F(Logger, OnPurposeShowsALineAsAFormat) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    std::string const shown = ShownBy([&] { logger.WriteLine(7, L"100%%"); });
    EXPECT_EQ("100%\r\n", shown.substr(16));
    EXPECT_EQ("100%%\r\n", Text().substr(16));
}

TEST_F(Logger, KeepsTheRoomForItsLines) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    logger.WriteLine(7, L"a long line");
    wchar_t const* const room = logger.lineText.c_str();
    logger.WriteLine(7, L"shorter");
    EXPECT_EQ(room, logger.lineText.c_str());
    EXPECT_STREQ(L"shorter\r\n", logger.lineText.c_str() + 16);
}

TEST_F(Logger, RemembersTheTimesOfTheLastTwoLines) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    EXPECT_EQ(logger.startTicks, logger.prevTicks);
    EXPECT_EQ(logger.startTicks, logger.lastTicks);
    logger.lastTicks = 5;
    logger.WriteLine(7, L"");
    EXPECT_EQ(5u, logger.prevTicks);
    EXPECT_LE(logger.startTicks, logger.lastTicks);
}

TEST_F(Logger, CountsTimeOnWhenTheClockStartsAgain) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    // Opened 3 seconds before a clock that has just passed 0.
    logger.startTicks = qor_logging::CurrentTicks() - 4294967295u - 3001;
    logger.WriteLine(7, L"");
    std::string const seconds = Text().substr(0, 6);
    EXPECT_TRUE(seconds == "00003." || seconds == "00004.") << seconds;
}

TEST_F(Logger, WritesALineWithinALine) {
    CQorLogger logger;
    logger.Open(path_.c_str());
    logger.mutex.lock();
    logger.WriteLine(7, L"from the thread that holds the lock");
    logger.mutex.unlock();
    EXPECT_EQ(Messages{"from the thread that holds the lock"},
              MessagesOfFile(directory_.Path("a.txt")));
}

TEST(LoggerWithoutFile, ShowsLinesOnTheTerminalOnly) {
    std::string shown;
    {
        TerminalOutput const terminal;
        {
            CQorLogger logger;
            logger.Open(L"/no/such/directory/a.txt");
            EXPECT_FALSE(logger.isOpen);
            EXPECT_EQ(-1, logger.fileHandle);
            EXPECT_TRUE(logger.OpenFileName().IsEmpty());
            logger.WriteLine(7, L"shown");
            logger.WriteLine(1, L"neither written nor shown");
            logger.Flush();
        }
        shown = terminal.Read();
    }
    EXPECT_EQ((Messages{"shown", "Logging finished"}),
              (Messages{shown.substr(16, 5), shown.substr(39, 16)}));
}

TEST(LoggerWithoutFile, RefusesANameWithTwoDots) {
    TemporaryDirectory directory;
    CQorLogger logger;
    logger.Open(directory.WidePath("a..b").c_str());
    EXPECT_FALSE(logger.isOpen);
    EXPECT_FALSE(directory.Has("a..b"));
}

TEST(LoggerOnAFullDisk, DropsLinesWithoutAWord) {
    CQorLogger logger;
    logger.Open(L"/dev/full");
    ASSERT_TRUE(logger.isOpen);
    logger.WriteLine(7, L"lost");
    logger.Flush();
    EXPECT_TRUE(logger.OpenFileName() == L"/dev/full");
}

TEST(FreshLogger, HasTheStateItIsCreatedWith) {
    CQorLogger const logger;
    EXPECT_EQ(-1, logger.fileHandle);
    EXPECT_TRUE(logger.fileName.IsEmpty());
    EXPECT_TRUE(logger.lineText.IsEmpty());
    EXPECT_TRUE(logger.messages.empty());
    EXPECT_EQ(0u, logger.startTicks);
    EXPECT_EQ(0u, logger.prevTicks);
    EXPECT_EQ(0u, logger.lastTicks);
    EXPECT_FALSE(logger.isOpen);
    EXPECT_EQ(1u, logger.levelMask);
    EXPECT_TRUE(logger.pending.empty());
}

}  // namespace
