// What ReadLine gives, found as plainly as it can be said: byte after byte, in chunks of 128.
#ifndef QORUTILS_TESTS_SUPPORT_REFERENCE_LINES_H_
#define QORUTILS_TESTS_SUPPORT_REFERENCE_LINES_H_

#include <cstddef>
#include <cwctype>
#include <string>
#include <vector>

namespace reference_lines {

constexpr std::size_t kChunk = 128;

struct Line {
    std::wstring text;
    std::size_t next;  // the position afterwards
};

inline bool operator==(Line const& a, Line const& b) {
    return a.text == b.text && a.next == b.next;
}

inline bool IsLineEnd(char c) {
    return c == '\r' || c == '\n';
}

inline std::size_t SkipLineEnds(std::string const& file, std::size_t position) {
    while (position < file.size() && IsLineEnd(file[position])) ++position;
    return position;
}

// At most 128 characters: up to a line end, which is one LF, or to the end of the file.
inline std::wstring ReadChunk(std::string const& file, std::size_t& position) {
    std::wstring chunk;
    while (chunk.size() < kChunk && position < file.size()) {
        char const c = file[position];
        if (IsLineEnd(c)) {
            position = SkipLineEnds(file, position);
            return chunk + L'\n';
        }
        chunk += static_cast<wchar_t>(static_cast<unsigned char>(c));
        ++position;
    }
    return chunk;
}

inline bool IsBlank(std::wstring const& text) {
    for (wchar_t const c : text)
        if (!std::iswspace(static_cast<std::wint_t>(c))) return false;
    return true;
}

// The line of a file at a position.
inline Line LineAt(std::string const& file, std::size_t position) {
    std::wstring line;
    std::wstring chunk;
    do {
        chunk = ReadChunk(file, position).c_str();  // up to its first zero
        line += chunk;
    } while (chunk.size() == kChunk && chunk.back() != L'\n');
    if (!line.empty() && line.back() == L'\n') line.pop_back();
    return {IsBlank(line) ? std::wstring() : line, position};
}

// All lines of a file that can seek, and of one that cannot.
inline std::vector<std::wstring> LinesOf(std::string const& file, bool canSeek) {
    std::vector<std::wstring> lines;
    std::size_t position = canSeek ? 0 : SkipLineEnds(file, 0);
    while (position < file.size()) {
        Line const line = LineAt(file, position);
        lines.push_back(line.text);
        position = canSeek ? line.next : SkipLineEnds(file, line.next);
    }
    return lines;
}

}  // namespace reference_lines

#endif  // QORUTILS_TESTS_SUPPORT_REFERENCE_LINES_H_
