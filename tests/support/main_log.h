// Reads log files, the process's own among them.
#ifndef QORUTILS_TESTS_SUPPORT_MAIN_LOG_H_
#define QORUTILS_TESTS_SUPPORT_MAIN_LOG_H_

#include <qorutils/logging/main_logger.h>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

inline std::string FileBytes(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The four bytes of each character, lowest first. A character cut short at the end is left out.
inline std::u32string DecodeUtf32Le(std::string const& bytes) {
    std::u32string text;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        char32_t code = 0;
        for (std::size_t k = 4; k-- > 0;)
            code = code << 8 | static_cast<unsigned char>(bytes[i + k]);
        text += code;
    }
    return text;
}

inline std::string EncodeUtf32Le(std::u32string const& text) {
    std::string bytes;
    for (char32_t const code : text)
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(code >> shift & 0xFF);
    return bytes;
}

// ASCII as it is, anything else, zero included, as in <20AC>: the same in every locale.
inline std::string Shown(std::u32string const& text) {
    std::string shown;
    char hexadecimal[16];
    for (char32_t const code : text) {
        if (code != 0 && code < 0x80) {
            shown += static_cast<char>(code);
        } else {
            std::snprintf(hexadecimal, sizeof hexadecimal, "<%X>", static_cast<unsigned>(code));
            shown += hexadecimal;
        }
    }
    return shown;
}

// Shown text, cut at each "\r\n"; what stands behind the last one is left out.
inline std::vector<std::string> SplitLines(std::string const& text) {
    std::vector<std::string> lines;
    for (std::size_t from = 0, end; (end = text.find("\r\n", from)) != std::string::npos;
         from = end + 2)
        lines.push_back(text.substr(from, end - from));
    return lines;
}

// A line without its time and level, which must have the form that they have in every log:
// five digits or more, a dot, three digits, and the level 7.
inline std::string MessageOf(std::string const& line) {
    auto const isDigit = [&](std::size_t i) {
        return i < line.size() && line[i] >= '0' && line[i] <= '9';
    };
    std::size_t dot = 0;
    while (isDigit(dot)) ++dot;
    bool const hasTime = dot >= 5 && line.compare(dot, 1, ".") == 0 && isDigit(dot + 1) &&
                         isDigit(dot + 2) && isDigit(dot + 3);
    if (!hasTime || line.compare(dot + 4, 7, " ; 7 ; ") != 0) {
        ADD_FAILURE() << "not a line of a log: " << line;
        return line;
    }
    return line.substr(dot + 11);
}

inline std::vector<std::string> MessagesIn(std::string const& utf32Bytes) {
    std::vector<std::string> messages;
    for (std::string const& line : SplitLines(Shown(DecodeUtf32Le(utf32Bytes))))
        messages.push_back(MessageOf(line));
    return messages;
}

// The messages of a whole log file.
inline std::vector<std::string> MessagesOfFile(std::string const& path) {
    std::string const bytes = FileBytes(path);
    EXPECT_EQ("\xFF\xFE", bytes.substr(0, 2)) << path;
    return bytes.size() < 2 ? std::vector<std::string>() : MessagesIn(bytes.substr(2));
}

// Where the main log's file stands; makes the log if there is none.
inline std::string MainLogPath() {
    auto const name = qor_logging::getQorMainLogFileName();
    if (name.IsEmpty()) throw std::runtime_error("the main log has no file");
    return {name.begin(), name.end()};  // the directories of tests are ASCII
}

// A place in the main log.
class LogMark {
  public:
    LogMark() : path_(MainLogPath()), position_(FileBytes(path_).size()) {}

    // What was added behind it.
    std::string Bytes() const { return FileBytes(path_).substr(position_); }
    std::vector<std::string> Messages() const { return MessagesIn(Bytes()); }

  private:
    std::string path_;
    std::size_t position_;
};

#endif  // QORUTILS_TESTS_SUPPORT_MAIN_LOG_H_
