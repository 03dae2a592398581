#include "qorutils/formats/text_lines.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <new>

#include "qorutils/fs/system_calls.h"
#include "qorutils/text/string_routines.h"
#include "qorutils/text/utf8.h"

using qor_text::CQorStringT;

namespace qor_formats {

namespace {

constexpr int kChunk = 128;
// Blocks double, so that what is read in vain is in proportion to the line.
constexpr std::size_t kFirstBlock = 1024;  // holds nearly every line
constexpr std::size_t kLargestBlock = 8192;

static_assert(sizeof(wchar_t) == 4, "characters are written as UTF-32");

bool IsLineEnd(char byte) {
    return byte == '\r' || byte == '\n';
}

// The first CR or LF, or the end.
char const* FindLineEnd(char const* begin, char const* end) {
    char const* const lf = qor_text::FindChar(begin, end - begin, '\n');
    if (lf != nullptr) end = lf;
    char const* const cr = qor_text::FindChar(begin, end - begin, '\r');
    return cr != nullptr ? cr : end;
}

// In steps of a fixed length, which compilers make vector instructions of.
void Widen(char const* from, int n, wchar_t* __restrict to) {
    constexpr int kStep = 16;
    auto const* const bytes = reinterpret_cast<unsigned char const*>(from);
    int i = 0;
    for (; n - i >= kStep; i += kStep)
        for (int k = 0; k < kStep; ++k) to[i + k] = bytes[i + k];
    for (; i < n; ++i) to[i] = bytes[i];
}

// Collects a line from its bytes as they come.
class LineCollector {
  public:
    explicit LineCollector(CQorStringT<wchar_t>& line) : line_(line) {
        line_.AllocBeforeWrite(kChunk);
        line_.ReleaseBuffer(0);
    }

    // Whether nothing that follows belongs to the line.
    bool IsWhole() const { return state_ == kWhole; }

    // Takes the bytes that belong to the line, its end included; returns the first that does not.
    char const* Take(char const* begin, char const* end) {
        if (state_ == kText) begin = TakeText(begin, end);
        if (state_ == kLineEnds) {
            begin = std::find_if_not(begin, end, IsLineEnd);
            if (begin != end) state_ = kWhole;
        }
        return begin;
    }

    void Finish() {
        bool const isBlank = std::all_of(line_.begin(), line_.end(), qor_text::IsSpace<wchar_t>);
        if (isBlank) line_.ReleaseBuffer(0);
    }

  private:
    enum State { kText, kLineEnds, kWhole };

    char const* TakeText(char const* begin, char const* end) {
        char const* const textEnd = FindLineEnd(begin, end);
        if (leftOfCutChunk_ == 0) begin = AppendUpToZero(begin, textEnd);
        if (leftOfCutChunk_ != 0) {
            if (textEnd - begin >= leftOfCutChunk_) {
                state_ = kWhole;
                return begin + leftOfCutChunk_;
            }
            leftOfCutChunk_ -= static_cast<int>(textEnd - begin);
        }
        if (textEnd != end) state_ = kLineEnds;
        return textEnd;
    }

    // Returns where the zero is that cuts the line, or the end.
    char const* AppendUpToZero(char const* begin, char const* end) {
        char const* const zero = qor_text::FindChar(begin, end - begin, '\0');
        Append(begin, zero != nullptr ? zero : end);
        if (zero == nullptr) return end;
        leftOfCutChunk_ = kChunk - line_.GetLength() % kChunk;
        return zero;
    }

    void Append(char const* begin, char const* end) {
        int const length = line_.GetLength();
        int const n = static_cast<int>(end - begin);
        if (n > INT_MAX - length) throw std::bad_alloc();
        wchar_t* const text = line_.GetBuffer(RoomFor(length + n));
        Widen(begin, n, text + length);
        line_.ReleaseBuffer(length + n);
    }

    // At least doubled whenever it grows, so that a long line is not copied for each of its blocks.
    int RoomFor(int length) const {
        int const room = line_.GetAllocLength();
        return length <= room ? room : std::max(length, room <= INT_MAX / 2 ? room * 2 : INT_MAX);
    }

    CQorStringT<wchar_t>& line_;
    State state_ = kText;
    int leftOfCutChunk_ = 0;  // bytes from the zero that cut the line to the end of its chunk
};

// Moves the position only once, when all is done.
void CollectByBlocks(int fd, off64_t start, LineCollector& line) {
    char block[kLargestBlock];
    off64_t position = start;
    for (std::size_t size = kFirstBlock; !line.IsWhole(); size = std::min(size * 2, sizeof block)) {
        ssize_t const n = base::RetryOnEintr([&] { return pread64(fd, block, size, position); });
        if (n <= 0) break;
        position += line.Take(block, block + n) - block;
    }
    if (position != start) lseek64(fd, position, SEEK_SET);
}

// Nothing can be put back here.
void CollectByBytes(int fd, LineCollector& line) {
    char byte;
    bool hasBegun = false;
    while (!line.IsWhole() && base::RetryOnEintr([&] { return read(fd, &byte, 1); }) == 1) {
        if (!IsLineEnd(byte)) {
            line.Take(&byte, &byte + 1);
            hasBegun = true;
        } else if (hasBegun) {
            break;
        }
    }
}

}  // namespace

void ReadLine(int fd, CQorStringT<wchar_t>& line) {
    LineCollector collector(line);
    off64_t const start = lseek64(fd, 0, SEEK_CUR);
    if (start != -1)
        CollectByBlocks(fd, start, collector);
    else
        CollectByBytes(fd, collector);
    collector.Finish();
}

// Makes room for the longest encoding: converting costs less than counting first.
bool WriteString(std::FILE* stream, CQorStringT<wchar_t> const& text) {
    constexpr int kLongestEncoding = 4;
    int const length = text.GetLength();
    if (length > INT_MAX / kLongestEncoding) throw std::bad_alloc();
    int const room = length * kLongestEncoding;
    CQorStringT<char> bytes;
    char* const buffer = bytes.GetBufferSetLength(room);
    unsigned int const size = do_wcstombs(buffer, text, static_cast<unsigned int>(room));
    if (size == static_cast<unsigned int>(-1)) return false;
    return std::fwrite(buffer, 1, size, stream) == size;
}

bool WriteUTF16String(std::FILE* stream, CQorStringT<wchar_t> const& text) {
    auto const length = static_cast<std::size_t>(text.GetLength());
    return std::fwrite(text, sizeof(wchar_t), length, stream) == length;
}

bool WriteUTF16BOM(std::FILE* stream) {
    return std::fputc(0xFF, stream) != EOF && std::fputc(0xFE, stream) != EOF;
}

}  // namespace qor_formats
