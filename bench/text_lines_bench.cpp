// Reading a file of text line by line, and writing text to a stream.
//
// ReadLine keeps the position of the descriptor at the next line, so that it can read nothing ahead
// for the next call; the peers read through a buffer that they keep.

#include <qorutils/formats/text_lines.h>
#include <qorutils/formats/value_lists.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "cases.h"
#include "peers.h"

#ifdef QORUTILS_BENCH_QT
#include <QtCore/QFile>
#include <QtCore/QTextStream>
#endif

namespace {

using Wide = qor_text::CQorStringT<wchar_t>;

constexpr std::size_t kFileSize = 1 << 16;

// A file of lines of one length, deleted with the object.
class LineFile {
  public:
    explicit LineFile(std::size_t lineLength) : lineSize_(lineLength + 1) {
        int const file = mkstemp(path_);
        std::string const line = Words<std::string>(lineLength) + "\n";
        for (std::size_t i = 0; i < LineCount(); ++i)
            if (write(file, line.data(), line.size()) == -1) std::abort();
        descriptor_ = file;
    }
    ~LineFile() {
        close(descriptor_);
        unlink(path_);
    }
    LineFile(LineFile const&) = delete;
    LineFile& operator=(LineFile const&) = delete;

    char const* path() const { return path_; }
    int Rewound() const {
        lseek(descriptor_, 0, SEEK_SET);
        return descriptor_;
    }
    std::size_t lineSize() const { return lineSize_; }
    std::size_t LineCount() const { return std::max<std::size_t>(kFileSize / lineSize_, 4); }

  private:
    std::size_t lineSize_;
    int descriptor_;
    char path_[32] = "/tmp/qorutils_bench_XXXXXX";
};

// As large as the library's, for the same line.
constexpr std::size_t kFirstBlock = 1024;
constexpr std::size_t kLargestBlock = 8192;

std::size_t Larger(std::size_t size) {
    return std::min(size * 2, kLargestBlock);
}

// Each line: the system calls alone.
std::size_t ReadBlocksAndSeek(LineFile const& lines) {
    char block[kLargestBlock];
    int const file = lines.Rewound();
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < lines.LineCount(); ++i) {
        off_t rest = static_cast<off_t>(lines.lineSize());
        for (std::size_t size = kFirstBlock; rest > 0; size = Larger(size)) {
            ssize_t const n = read(file, block, size);
            if (n <= 0) break;
            rest -= n;
            bytes += static_cast<std::size_t>(n);
        }
        lseek(file, rest, SEEK_CUR);
    }
    return bytes;
}

// The same with the question in front whether the descriptor can seek.
std::size_t ReadBlocksBetweenSeeks(LineFile const& lines) {
    char block[kLargestBlock];
    int const file = lines.Rewound();
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < lines.LineCount(); ++i) {
        off_t at = lseek(file, 0, SEEK_CUR);
        off_t const end = at + static_cast<off_t>(lines.lineSize());
        for (std::size_t size = kFirstBlock; at < end; size = Larger(size)) {
            ssize_t const n = pread(file, block, size, at);
            if (n <= 0) break;
            at += n;
            bytes += static_cast<std::size_t>(n);
        }
        lseek(file, end, SEEK_SET);
    }
    return bytes;
}

std::size_t ReadByteByByte(LineFile const& lines) {
    int const file = lines.Rewound();
    std::size_t bytes = 0;
    char byte = 0;
    while (read(file, &byte, 1) == 1) {
        ++bytes;
        if (byte != '\n') continue;
        if (read(file, &byte, 1) != 1) break;
        lseek(file, -1, SEEK_CUR);
    }
    return bytes;
}

void Widen(char const* text, std::size_t length, std::wstring* wide) {
    wide->resize(length);
    std::transform(text, text + length, wide->begin(),
                   [](char c) { return static_cast<wchar_t>(static_cast<unsigned char>(c)); });
}

std::size_t ReadByGetline(LineFile const& lines) {
    std::ifstream file(lines.path(), std::ios::binary);
    std::string line;
    std::wstring wide;
    std::size_t characters = 0;
    while (std::getline(file, line)) {
        Widen(line.data(), line.size(), &wide);
        characters += wide.size();
    }
    return characters;
}

std::size_t ReadByFgets(LineFile const& lines) {
    std::FILE* const file = std::fopen(lines.path(), "rb");
    static char line[1 << 15];
    std::wstring wide;
    std::size_t characters = 0;
    while (std::fgets(line, sizeof line, file) != nullptr) {
        Widen(line, std::char_traits<char>::length(line), &wide);
        characters += wide.size();
    }
    std::fclose(file);
    return characters;
}

void RegisterReading(std::size_t lineLength) {
    static LineFile const shortLines(80);
    static LineFile const longLines(20000);
    LineFile const& lines = lineLength == 80 ? shortLines : longLines;
    std::string const group = "read lines of " + std::to_string(lineLength);
    Case(group, "qorutils", [&lines] {
        int const file = lines.Rewound();
        Wide line;
        std::size_t characters = 0;
        for (std::size_t i = 0; i < lines.LineCount(); ++i) {
            qor_formats::ReadLine(file, line);
            characters += static_cast<std::size_t>(line.GetLength());
        }
        return characters;
    });
    Case(group, "floor: read, seek", [&lines] { return ReadBlocksAndSeek(lines); });
    Case(group, "floor: seek, read, seek", [&lines] { return ReadBlocksBetweenSeeks(lines); });
    Case(group, "floor byte by byte", [&lines] { return ReadByteByByte(lines); });
    Case(group, "std::getline", [&lines] { return ReadByGetline(lines); });
    Case(group, "fgets", [&lines] { return ReadByFgets(lines); });
#ifdef QORUTILS_BENCH_QT
    Case(group, "QTextStream", [&lines] {
        QFile file(QString::fromLatin1(lines.path()));
        file.open(QIODevice::ReadOnly);
        QTextStream stream(&file);
        stream.setCodec("ISO-8859-1");
        QString line;
        std::size_t characters = 0;
        while (stream.readLineInto(&line)) characters += static_cast<std::size_t>(line.size());
        return characters;
    });
#endif
}

void RegisterWriting() {
    static std::FILE* const stream = std::fopen("/dev/null", "wb");
    std::string const group = "write UTF-8/" + SizeName(4096);
    auto const text = Words<std::wstring>(4096);
    Wide const qor(text.c_str());
    Case(group, "qorutils", [qor] { return qor_formats::WriteString(stream, qor); });
    auto const narrow = Words<std::string>(4096);
    Case(group, "floor: fwrite",
         [narrow] { return std::fwrite(narrow.data(), 1, narrow.size(), stream); });
#ifdef QORUTILS_BENCH_QT
    auto const qt = QString::fromStdWString(text);
    Case(group, "QString", [qt] {
        QByteArray const bytes = qt.toUtf8();
        return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    });
#endif
}

void RegisterSplitting() {
    std::wstring text;
    for (int i = 0; i < 100; ++i) text += L" value " + std::to_wstring(i) + L" ;";
    Wide const qor(text.c_str());
    Case("split 100 values", "qorutils", [qor] {
        qor_formats::StringArray out;
        qor_formats::ParseValues(qor, out, ';', L"#");
        return out.GetSize();
    });
#ifdef QORUTILS_BENCH_QT
    auto const qt = QString::fromStdWString(text);
    Case("split 100 values", "QString", [qt] {
        QStringList out;
        for (QString const& item : qt.split(QLatin1Char(';'))) out.append(item.trimmed());
        return out.size();
    });
#endif
}

}  // namespace

int main(int argc, char** argv) {
    RegisterReading(80);
    RegisterReading(20000);
    RegisterWriting();
    RegisterSplitting();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
