// The lines of a log as JSON.

#include <string>

#include "tools/qorlog_program.h"

namespace {

class QorLogJson : public QorLog {
  protected:
    // The objects, of which each begins with the log's path.
    std::string Json(std::u32string const& text) {
        directory_.MakeFile("survey1.log.txt", LogBytes(text));
        std::string json = RunOnLog({"--json"}).out;
        std::string const file = "{\"file\":\"" + Path() + "\"";
        for (std::size_t at = 0; (at = json.find(file, at)) != std::string::npos; ++at)
            json.replace(at, file.size(), "{");
        return json;
    }
};

TEST_F(QorLogJson, TellsTimeLevelKindAndMessage) {
    EXPECT_EQ(
        R"({,"line":1,"seconds":0.000,"time":"2026-11-22T10:00:00.000Z","level":7,"kind":"start",)"
        R"("message":"Program /opt/survey started on 2026/11/22 10:00:00 UTC"})"
        "\n"
        R"({,"line":2,"seconds":12.045,"time":"2026-11-22T10:00:12.045Z","level":7,)"
        R"("kind":"message","message":"hello"})"
        "\n"
        R"({,"line":3,"seconds":100000.000,"time":"2026-11-23T13:46:40.000Z","level":-1,)"
        R"("kind":"finish","message":"Logging finished"})"
        "\n",
        Json(kBanner + std::u32string(U"00012.045 ; 7 ; hello\r\n"
                                      U"100000.000 ;-1 ; Logging finished\r\n")));
}

TEST_F(QorLogJson, TakesFailedChecksApart) {
    struct {
        char32_t const* message;
        char const* parts;
    } const cases[] = {
        {U"DBGCHK a > \"b\" fs/a.cpp @ 12",
         R"("expression":"a > \"b\"","source":"fs/a.cpp","source_line":12)"},
        {U"DBGCHK  fs/a @ -1", R"("expression":"","source":"fs/a","source_line":-1)"},
        {U"DBGCHK a @ 1 b @ 2", R"("expression":"a @ 1","source":"b","source_line":2)"},
    };
    for (auto const& c : cases) {
        std::string const json = Json(U"00000.000 ; 7 ; " + std::u32string(c.message) + U"\r\n");
        EXPECT_NE(std::string::npos, json.find(R"("kind":"check")")) << json;
        EXPECT_NE(std::string::npos, json.find(std::string(",") + c.parts + "}\n")) << json;
    }
    for (char32_t const* const other :
         {U"DBGCHK ", U"DBGCHK x", U"DBGCHK x @ ", U"DBGCHK @ 1", U"DBGCHK a b @ 01"}) {
        std::string const json = Json(U"00000.000 ; 7 ; " + std::u32string(other) + U"\r\n");
        EXPECT_EQ(std::string::npos, json.find("source")) << json;
        EXPECT_NE(std::string::npos, json.find(R"("kind":"check")")) << json;
    }
}

TEST_F(QorLogJson, EscapesWhatAStringCannotHold) {
    std::string const json =
        Json(std::u32string(U"00000.000 ; 7 ; \"\\/\t\x1B\x7F\u0085\u202E") + U'\0' +
             std::u32string(1, static_cast<char32_t>(0xD800)) +
             std::u32string(1, static_cast<char32_t>(0x110000)) + U"\u20AC\r\n");
    EXPECT_EQ(R"({,"line":1,"seconds":0.000,"time":null,"level":7,"kind":"message",)"
              R"("message":"\"\\/\t\u001b\u007f\u0085\u202e\u0000)"
              "\xEF\xBF\xBD\xEF\xBF\xBD\xE2\x82\xAC\"}\n",
              json);
}

TEST_F(QorLogJson, KeepsTheLinesOfAMessageTogether) {
    EXPECT_EQ(R"({,"line":1,"seconds":0.000,"time":null,"level":7,"kind":"message",)"
              R"("message":"a\nb\r\nc"})"
              "\n"
              R"({,"line":4,"seconds":0.000,"time":null,"level":7,"kind":"message","message":"d"})"
              "\n",
              Json(U"00000.000 ; 7 ; a\nb\r\nc\r\n00000.000 ; 7 ; d\r\n"));
}

TEST_F(QorLogJson, KnowsNoTimeOfTextInFrontOfTheFirstLine) {
    EXPECT_EQ(
        R"({,"line":1,"seconds":null,"time":null,"level":null,"kind":"message","message":"xyz"})"
        "\n",
        Json(U"xyz\r\n"));
}

TEST_F(QorLogJson, GivesALineThatIsTooLongInParts) {
    std::string const json = Json(U"00001.000 ; 7 ; " + std::u32string(1200000, U'x') + U"\r\n");
    std::size_t parts = 0;
    std::size_t length = 0;
    for (char const c : json) {
        parts += c == '\n' ? 1 : 0;
        length += c == 'x' ? 1 : 0;
    }
    EXPECT_GT(parts, 1u);
    EXPECT_EQ(1200000u, length);
    EXPECT_NE(std::string::npos,
              json.find("\n{,\"line\":1,\"seconds\":1.000,\"time\":null,\"level\":7,"
                        "\"kind\":\"continued\",\"message\":\"x"));
}

TEST_F(QorLog, NamesFilesInJsonWhateverTheirBytes) {
    directory_.MakeFile("\xE9\x01\"", LogBytes(U"00000.000 ; 7 ; x\r\n"));
    std::string const json = Run({"-j", directory_.Path("\xE9\x01\"")}).out;
    EXPECT_NE(std::string::npos, json.find("/\xEF\xBF\xBD\\u0001\\\"\",\"line\"")) << json;
}

}  // namespace
