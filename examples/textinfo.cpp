// textinfo FILE...: tells what is in text files.
//
// Of each file: name, directory, suffix; encoding and byte-order mark; bytes, lines and words; the
// first of the longest lines; the most frequent words, those of equal count by character code.
// UTF-8 and UTF-16LE are read. Any other file gets one line on stderr, the rest are done all the
// same, and the exit status is 1 then. It is 2 without arguments.

#include <qorutils/fs/file_names.h>
#include <qorutils/logging/trace.h>
#include <qorutils/text/qor_string.h>
#include <qorutils/text/text_encoding.h>
#include <qorutils/text/utf8.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>
#include <vector>

#include "console.h"

namespace {

using Bytes = qor_text::CQorStringT<char>;    // UTF-8, or a file as it is
using Text = qor_text::CQorStringT<wchar_t>;  // decoded: one element is one character
using WordCount = std::pair<Text, int>;

namespace file_names = qor::file_names;
namespace text_utils = qor::text_utils;

constexpr int kFirstRoom = 64 * 1024;
constexpr int kTooLarge = 512 * 1024 * 1024;
constexpr int kFrequentWords = 10;
constexpr int kShownLength = 65;
constexpr unsigned int kInvalid = -1u;  // what the do_ functions return on bad input

wchar_t const* const kDelimiters =
    L" \t\n\v\f\r\u00A0\u3000.,:;!?¡¿()[]{}<>/"
    L"\\|\"“”„«»‘‚‹›`*#=+&%$@^~…·•。、，：；！？（）「」『』";

// These stand inside words too ("don't", "read-only", "file_name"), so they do not end one.
wchar_t const* const kWordEdges = L"'’-–—_";

// Why nothing can be told of a file, in words for the user.
struct Refusal {
    Bytes reason;
};

__attribute__((format(printf, 1, 2))) Bytes Formatted(char const* format, ...) {
    Bytes text;
    va_list args;
    va_start(args, format);
    text.FormatV(format, args);
    va_end(args);
    return text;
}

// A string takes exactly the room that it is asked for, so the room is doubled here: appending
// block after block would copy all that stands before each of them.
Bytes ReadFile(char const* path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(path, "rb"), std::fclose);
    if (file == nullptr) throw Refusal{std::strerror(errno)};

    Bytes content;
    for (int room = kFirstRoom; room <= kTooLarge; room *= 2) {
        int const length = content.GetLength();
        char* const end = content.GetBuffer(room) + length;
        int const read = std::fread(end, 1, room - length, file.get());
        if (std::ferror(file.get()) != 0) throw Refusal{std::strerror(errno)};
        content.ReleaseBuffer(length + read);
        if (length + read < room) return content;
    }
    throw Refusal{Formatted("too large (%d bytes or more)", kTooLarge)};
}

// This program speaks UTF-8 in every locale: see console.h. The do_ functions convert straight into
// the buffer of the result.

Text NameToText(Bytes const& name) {
    Text text;
    int const room = name.GetLength();  // there are never more characters than bytes
    unsigned int const length = do_mbstowcs(text.GetBuffer(room), name, room);
    if (length == kInvalid) throw Refusal{"the file name is not UTF-8"};
    text.ReleaseBuffer(length);
    return text;
}

// do_mbsrtowcs, unlike do_mbstowcs, tells where it stopped.
Text DecodeUtf8(Bytes const& content, int from) {
    auto const zero = static_cast<int>(std::strlen(content));
    if (zero < content.GetLength())
        throw Refusal{Formatted("binary file (zero byte at offset %d)", zero)};
    Text text;
    int const room = content.GetLength() - from;
    char const* stop = content.c_str() + from;
    unsigned int const length = do_mbsrtowcs(text.GetBuffer(room), &stop, room, nullptr);
    if (length == kInvalid)
        throw Refusal{Formatted("malformed UTF-8 at byte offset %td", stop - content.c_str())};
    text.ReleaseBuffer(length);
    return text;
}

// The second half of a surrogate pair completes the first; a half that stays alone is nothing that
// UTF-8 could hold.
Text DecodeUtf16(Bytes const& content, int from) {
    if ((content.GetLength() - from) % 2 != 0) throw Refusal{"UTF-16 with an odd number of bytes"};
    Text text;
    wchar_t* const buffer = text.GetBuffer((content.GetLength() - from) / 2);
    int length = 0;
    for (int at = from; at < content.GetLength(); at += 2) {
        auto const low = static_cast<unsigned char>(content[at]);
        auto const high = static_cast<unsigned char>(content[at + 1]);
        auto const unit = static_cast<wchar_t>(high << 8 | low);
        if (length > 0 && buffer[length - 1] >> 10 == 0xD800 >> 10 && unit >> 10 == 0xDC00 >> 10)
            buffer[length - 1] = 0x10000 + ((buffer[length - 1] & 0x3FF) << 10) + (unit & 0x3FF);
        else
            buffer[length++] = unit;
    }
    text.ReleaseBuffer(length);
    if (static_cast<int>(std::wcslen(text)) < length) throw Refusal{"binary file (zero character)"};
    if (do_wcstombs(nullptr, text, 0) == kInvalid) throw Refusal{"malformed UTF-16"};
    return text;
}

struct Document {
    char const* encoding;
    char const* mark;
    Text text;
};

Document Decode(Bytes& content) {
    // By the kinds of mark that detect_bom_header returns.
    static char const* const kMarks[] = {"none",     "UTF-8", "UTF-16BE", "UTF-16LE",   "UTF-32BE",
                                         "UTF-32LE", "SCSU",  "UTF-7",    "UTF-EBCDIC", "BOCU-1"};
    constexpr unsigned int kNoMark = 0, kUtf8Mark = 1;

    auto* const data = reinterpret_cast<unsigned char*>(content.GetBuffer(0));
    unsigned int const size = content.GetLength();
    unsigned int markLength = 0;
    unsigned int const mark = text_utils::detect_bom_header(data, size, &markLength);
    unsigned int const encoding = text_utils::detect_text_encoding(data, size, nullptr);

    if (encoding == text_utils::eTextEncodingUtf16LE)
        return {"UTF-16LE", kMarks[mark], DecodeUtf16(content, markLength)};
    // To the detection, marked UTF-8 and a single byte are unknown too.
    if (mark != kNoMark && mark != kUtf8Mark)
        throw Refusal{Formatted("marked as %s, which is not read", kMarks[mark])};
    Text const text = DecodeUtf8(content, markLength);
    bool const ascii = text.GetLength() == content.GetLength();
    return {ascii ? "ASCII" : "UTF-8", kMarks[mark], text};
}

struct Lines {
    int count = 0;
    int longest = 0;  // number of the line
    Text longestText;
};

Lines CountLines(Text const& text) {
    Lines lines;
    for (int start = 0, end; start < text.GetLength(); start = end + 1) {
        end = text.Find(L'\n', start);
        if (end < 0) end = text.GetLength();
        Text line = text.Mid(start, end - start);
        line.TrimRight(L'\r');  // of a file written on Windows
        ++lines.count;
        if (lines.count > 1 && line.GetLength() <= lines.longestText.GetLength()) continue;
        lines.longest = lines.count;
        lines.longestText = line;
    }
    return lines;
}

struct Words {
    int count = 0;
    std::unordered_map<Text, int> byWord;
};

Words CountWords(Text const& text) {
    Words words;
    for (int start = 0; start >= 0;) {
        Text word = text.Tokenize(kDelimiters, start);
        word.Trim(kWordEdges).MakeLower();
        if (word.IsEmpty()) continue;
        ++words.count;
        ++words.byWord[word];
    }
    return words;
}

// Ranks copies of the strings: they share their characters, so copying them is cheap.
std::vector<WordCount> MostFrequent(Words const& words) {
    std::vector<WordCount> ranked(words.byWord.begin(), words.byWord.end());
    auto const end = ranked.begin() + std::min<int>(kFrequentWords, ranked.size());
    auto const before = [](WordCount const& a, WordCount const& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    };
    std::partial_sort(ranked.begin(), end, ranked.end(), before);
    ranked.erase(end, ranked.end());
    return ranked;
}

Text Shortened(Text const& text) {
    return text.GetLength() <= kShownLength ? text : text.Left(kShownLength) + L'…';
}

// For a terminal: nothing in it moves the cursor.
Bytes Shown(Text shown) {
    if (shown.IsEmpty()) return "(none)";
    for (int i = 0; i < shown.GetLength(); ++i)
        if (std::iswcntrl(static_cast<std::wint_t>(shown[i])) != 0) shown.SetAt(i, L' ');
    return ToUtf8(shown);
}

void PrintField(char const* label, Bytes const& value) {
    std::printf("  %-11s%s\n", label, value.c_str());
}

void PrintText(Text const& text) {
    Lines const lines = CountLines(text);
    PrintField("lines", Formatted("%d", lines.count));
    PrintField("longest",
               Formatted("line %d, length %d", lines.longest, lines.longestText.GetLength()));
    PrintField("", Shown(Shortened(lines.longestText)));
    Words const words = CountWords(text);
    PrintField("words",
               Formatted("%d, %d different", words.count, static_cast<int>(words.byWord.size())));
    for (WordCount const& word : MostFrequent(words))
        PrintField("", Formatted("%7d  %s", word.second, Shown(Shortened(word.first)).c_str()));
}

void Describe(char const* path) {
    Text const pathName = NameToText(path);
    Bytes content = ReadFile(path);
    Document const document = Decode(content);
    if (content.IsEmpty()) throw Refusal{"the file is empty"};
    if (document.text.IsEmpty()) throw Refusal{"nothing but a byte-order mark"};

    // The suffix of the name, not of the path: the last dot there may be one of a directory.
    Text const name = file_names::ExtractFileNameWithExtFromPathName(pathName);
    Text const directory = file_names::ExtractDirNameWithSlashFromPathName(pathName);
    Text const suffix = file_names::ExtractFileNameExtFromPathName(name);
    std::printf("%s\n", Shown(name).c_str());
    PrintField("directory", Shown(directory));
    PrintField("suffix", Shown(suffix));
    PrintField("encoding", document.encoding);
    PrintField("mark", document.mark);
    PrintField("bytes", Formatted("%d", content.GetLength()));
    PrintText(document.text);
    std::printf("\n");
}

bool Complain(Bytes about, char const* reason) {
    for (int i = 0; i < about.GetLength(); ++i)  // as in Shown; a name need not be UTF-8
        if (std::iscntrl(static_cast<unsigned char>(about[i])) != 0) about.SetAt(i, ' ');
    std::fflush(stdout);  // what has been told of other files comes first
    std::fprintf(stderr, "textinfo: %s: %s\n", about.c_str(), reason);
    return false;
}

bool DescribeOrComplain(char const* path) {
    try {
        Describe(path);
        return true;
    } catch (Refusal const& refusal) {
        return Complain(path, refusal.reason);
    } catch (std::bad_alloc const&) {
        return Complain(path, "not enough memory");
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: textinfo FILE...\n", stderr);
        return 2;
    }
    std::setlocale(LC_CTYPE, "C.UTF-8");  // for MakeLower: this locale knows all letters
    bool good = true;
    for (int i = 1; i < argc; ++i) {
        bool const isDescribed = DescribeOrComplain(argv[i]);
        // Without the name: on a terminal, a '%' in a log line is taken for a conversion.
        qor_logging::QOR_TRACE_ALWAYS("file %d of %d: %s", i, argc - 1,
                                      isDescribed ? "described" : "refused");
        good = good && isDescribed;
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        good = Complain("standard output", std::strerror(errno));
    return good ? 0 : 1;
}
