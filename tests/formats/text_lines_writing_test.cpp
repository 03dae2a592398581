#include <qorutils/formats/text_lines.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/byte_file.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using namespace qor_formats;
using Wide = qor_text::CQorStringT<wchar_t>;

// A stream on which every write fails.
class FullDisk {
  public:
    FullDisk() : stream_(std::fopen("/dev/full", "wb")) {
        if (stream_ == nullptr) throw std::runtime_error("no /dev/full");
        std::setvbuf(stream_, nullptr, _IONBF, 0);
    }
    ~FullDisk() { std::fclose(stream_); }
    FullDisk(FullDisk const&) = delete;
    FullDisk& operator=(FullDisk const&) = delete;
    std::FILE* stream() { return stream_; }

  private:
    std::FILE* stream_;
};

TEST(WriteString, WritesUtf8WhateverTheLocale) {
    for (char const* locale : {"C", "C.UTF-8"}) {
        ScopedLocale const scope(locale);
        ByteFile file;
        EXPECT_TRUE(WriteString(file.stream(), L"a\u00E9\u20AC\U0001F600\r\n"));
        EXPECT_TRUE(WriteString(file.stream(), L"b"));
        EXPECT_EQ("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\r\nb", file.Content());
    }
}

TEST(WriteString, WritesNothingOfAnEmptyText) {
    ByteFile file;
    EXPECT_TRUE(WriteString(file.stream(), L""));
    EXPECT_EQ("", file.Content());
    EXPECT_TRUE(WriteString(FullDisk().stream(), Wide()));
}

TEST(WriteString, WritesUpToAZero) {
    ByteFile file;
    EXPECT_TRUE(WriteString(file.stream(), Whole(std::wstring(L"ab\0cd", 5))));
    EXPECT_EQ("ab", file.Content());
}

TEST(WriteString, WritesLongTextsWhole) {
    ByteFile file;
    EXPECT_TRUE(WriteString(file.stream(), Whole(std::wstring(100000, L'\u00E9'))));
    std::string expected;
    for (int i = 0; i < 100000; ++i) expected += "\xC3\xA9";
    EXPECT_TRUE(expected == file.Content());
}

TEST(WriteString, WritesNothingOfWhatUtf8DoesNotEncode) {
    for (std::uint32_t const code : {0xD800u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
        ByteFile file;
        std::wstring const text = {L'a', static_cast<wchar_t>(code)};
        EXPECT_FALSE(WriteString(file.stream(), Whole(text))) << code;
        EXPECT_EQ("", file.Content());
    }
}

TEST(WriteUTF16String, WritesFourBytesACharacterBehindATwoByteMark) {
    ByteFile file;
    EXPECT_TRUE(WriteUTF16BOM(file.stream()));
    EXPECT_TRUE(WriteUTF16String(file.stream(), L"AB"));
    EXPECT_EQ(std::string("\xFF\xFE\x41\0\0\0\x42\0\0\0", 10), file.Content());
}

TEST(WriteUTF16String, WritesEveryCharacterAsItIs) {
    ByteFile file;
    std::wstring const text = {L'\0', 0xD800, 0x10FFFF, static_cast<wchar_t>(0x81828384u)};
    EXPECT_TRUE(WriteUTF16String(file.stream(), Whole(text)));
    EXPECT_EQ(std::string("\0\0\0\0\0\xD8\0\0\xFF\xFF\x10\0\x84\x83\x82\x81", 16), file.Content());
    EXPECT_TRUE(WriteUTF16String(file.stream(), L""));
    EXPECT_EQ(16u, file.Content().size());
}

TEST(TextWriters, FailOnAFullDisk) {
    FullDisk disk;
    EXPECT_FALSE(WriteString(disk.stream(), L"a"));
    EXPECT_FALSE(WriteUTF16String(disk.stream(), L"a"));
    EXPECT_FALSE(WriteUTF16BOM(disk.stream()));
}

TEST(TextWriters, FailOnAStreamForReading) {
    std::FILE* const stream = std::fopen("/dev/null", "rb");
    ASSERT_NE(nullptr, stream);
    EXPECT_FALSE(WriteString(stream, L"a"));
    EXPECT_FALSE(WriteUTF16String(stream, L"a"));
    EXPECT_FALSE(WriteUTF16BOM(stream));
    EXPECT_TRUE(WriteString(stream, L""));
    std::fclose(stream);
}

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

// A stream that takes `room` bytes, kept in `bytes`, and refuses the rest.
struct SmallDisk {
    explicit SmallDisk(std::size_t bytesOfRoom) : room(bytesOfRoom) {
        cookie_io_functions_t functions = {};
        functions.write = Write;
        stream.reset(fopencookie(this, "w", functions));
        std::setvbuf(stream.get(), nullptr, _IONBF, 0);
    }

    static ssize_t Write(void* cookie, char const* data, std::size_t size) {
        SmallDisk& disk = *static_cast<SmallDisk*>(cookie);
        std::size_t const taken = std::min(size, disk.room - disk.bytes.size());
        disk.bytes.append(data, taken);
        return static_cast<ssize_t>(taken);
    }

    std::size_t room;
    std::string bytes;
    std::unique_ptr<std::FILE, StreamCloser> stream;
};

TEST(TextWriters, TellAShortWrite) {
    SmallDisk disk(6);
    EXPECT_TRUE(WriteString(disk.stream.get(), L"abc"));
    EXPECT_FALSE(WriteString(disk.stream.get(), L"defg"));
    EXPECT_EQ("abcdef", disk.bytes);

    SmallDisk forCharacters(7);
    EXPECT_FALSE(WriteUTF16String(forCharacters.stream.get(), L"AB"));
    EXPECT_EQ(7u, forCharacters.bytes.size());
}

TEST(WriteUTF16BOM, FailsWithTheSecondByte) {
    SmallDisk disk(1);
    EXPECT_FALSE(WriteUTF16BOM(disk.stream.get()));
    EXPECT_EQ("\xFF", disk.bytes);
}

TEST(WriteUTF16BOM, DoesNotTryTheSecondByteWithoutTheFirst) {
    struct Counter {
        int writes = 0;
        static ssize_t Refuse(void* cookie, char const*, std::size_t) {
            ++static_cast<Counter*>(cookie)->writes;
            return 0;
        }
    } counter;
    cookie_io_functions_t functions = {};
    functions.write = Counter::Refuse;
    std::unique_ptr<std::FILE, StreamCloser> const stream(fopencookie(&counter, "w", functions));
    std::setvbuf(stream.get(), nullptr, _IONBF, 0);
    EXPECT_FALSE(WriteUTF16BOM(stream.get()));
    EXPECT_EQ(1, counter.writes);
}

}  // namespace
