// ReadLine over whole files, beside the plain reading of one byte after another.

#include <qorutils/formats/text_lines.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/byte_file.h"
#include "support/random_text.h"
#include "support/reference_lines.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using reference_lines::Line;
using Wide = qor_text::CQorStringT<wchar_t>;

// For messages: "128x120 1x10 " is 128 times the byte 120 and then a line feed.
std::string InRuns(std::string const& bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t const end = std::min(bytes.find_first_not_of(bytes[i], i), bytes.size());
        text += std::to_string(end - i) + "x" +
                std::to_string(static_cast<unsigned char>(bytes[i])) + " ";
        i = end;
    }
    return text;
}

class ReadLineOverFiles : public testing::Test {
  protected:
    // Every line and every position, from each start that is given, and two calls at the end.
    void ExpectAsReference(std::string const& bytes, std::size_t start = 0) {
        file_.Set(bytes);
        file_.Seek(static_cast<long long>(start));
        std::size_t position = start;
        Wide line;
        for (int atEnd = 0; atEnd < 2; atEnd += position == bytes.size() ? 1 : 0) {
            Line const expected = reference_lines::LineAt(bytes, position);
            qor_formats::ReadLine(file_.descriptor(), line);
            Line const found = {Content(line), static_cast<std::size_t>(file_.Position())};
            ASSERT_TRUE(expected == found)
                << "at " << position << " of " << InRuns(bytes) << "\nexpected up to "
                << expected.next << ": " << expected.text << "\nfound up to " << found.next << ": "
                << found.text;
            position = expected.next;
        }
    }

    void ExpectAsReferenceFromAPipe(std::string const& bytes) {
        BytePipe pipe(bytes);
        pipe.CloseWriting();
        Wide line;
        for (std::wstring const& expected : reference_lines::LinesOf(bytes, false)) {
            qor_formats::ReadLine(pipe.descriptor(), line);
            ASSERT_EQ(expected, Content(line)) << InRuns(bytes);
        }
        qor_formats::ReadLine(pipe.descriptor(), line);
        ASSERT_TRUE(line.IsEmpty()) << InRuns(bytes);
    }

    ByteFile file_;
};

// Where chunks and blocks end.
std::vector<std::size_t> const kBorders = {0,    1,    126,  127,  128,  129,   130,   254,  255,
                                           256,  257,  1022, 1023, 1024, 1025,  1026,  2048, 3071,
                                           3072, 3073, 7167, 7168, 7169, 15359, 15360, 15361};

TEST_F(ReadLineOverFiles, FindsLineEndsAtEveryBorder) {
    for (std::size_t const border : kBorders) {
        std::string const text(border, 'x');
        for (std::size_t run = 0; run < 5; ++run) {
            std::string const ends = std::string("\r\n\r\n").substr(0, run);
            ExpectAsReference(text + ends);
            ExpectAsReference(text + ends + "y");
            ExpectAsReference(text + ends + text + ends + "y");
        }
    }
}

TEST_F(ReadLineOverFiles, FollowsRunsOfLineEndsAcrossBlocks) {
    for (std::size_t const start : {0u, 1u, 127u, 128u, 1023u, 1024u})
        for (std::size_t const length : {1u, 127u, 128u, 129u, 1023u, 1024u, 1025u, 3072u, 9000u})
            for (char const* rest : {"", "y", "y\n"})
                ExpectAsReference(std::string(start, 'x') + std::string(length, '\n') + rest);
}

TEST_F(ReadLineOverFiles, CutsAtZerosAtEveryBorder) {
    for (std::size_t const zero : kBorders) {
        for (std::size_t const length :
             {128u, 129u, 256u, 257u, 300u, 1024u, 1200u, 3072u, 3200u}) {
            if (zero >= length) continue;
            std::string bytes(length, 'x');
            bytes[zero] = '\0';
            ExpectAsReference(bytes);
            ExpectAsReference(bytes + "\ny");
            bytes[length / 2] = '\n';
            ExpectAsReference(bytes);
        }
    }
}

TEST_F(ReadLineOverFiles, ReadsFilesOfOneByteOnly) {
    for (char const byte : {'\0', '\n', '\r', ' ', '\t', 'x', '\xFF', '\xA0', '\x85'})
        for (std::size_t const length : kBorders) ExpectAsReference(std::string(length, byte));
}

TEST_F(ReadLineOverFiles, TestsWhiteSpaceAsTheLocaleSays) {
    for (char const* locale : {"C", "C.UTF-8"}) {
        ScopedLocale const scope(locale);
        for (int code = 0; code < 256; ++code) {
            std::string const byte(1, static_cast<char>(code));
            ExpectAsReference(byte + "\n " + byte + " \n" + std::string(200, ' ') + byte);
        }
    }
}

TEST_F(ReadLineOverFiles, StartsAnywhere) {
    std::string bytes;
    for (int i = 0; i < 40; ++i)
        bytes += std::string(static_cast<std::size_t>(i), 'x') + (i % 3 == 0 ? "\r\n" : "\n\n");
    bytes[100] = '\0';
    for (std::size_t start = 0; start <= bytes.size(); ++start) ExpectAsReference(bytes, start);
}

// Texts of long runs, so that lines pass chunks and blocks.
std::string RandomRuns(RandomText& random, std::string const& alphabet, int runs, int longest) {
    std::string bytes;
    for (int i = 0; i < runs; ++i) {
        char const byte = random.Of(alphabet, 1)[0];
        bool const isShort = byte == '\0' || random.Below(2) == 0;
        bytes +=
            std::string(static_cast<std::size_t>(1 + random.Below(isShort ? 3 : longest)), byte);
    }
    return bytes;
}

TEST_F(ReadLineOverFiles, ReadsRandomFiles) {
    RandomText random(1);
    for (int round = 0; round < 1500; ++round) {
        ExpectAsReference(random.Of(std::string("x \r\n\0", 5), random.Below(40)));
        ExpectAsReference(RandomRuns(random, std::string("xy \t\r\n\n\0", 8), 12, 140));
        ExpectAsReference(RandomRuns(random, std::string("xxxxx\n\0\0", 8), 20, 1100));
    }
}

TEST_F(ReadLineOverFiles, ReadsRandomPipes) {
    RandomText random(2);
    for (int round = 0; round < 500; ++round) {
        ExpectAsReferenceFromAPipe(random.Of(std::string("x \r\n\0", 5), random.Below(40)));
        ExpectAsReferenceFromAPipe(RandomRuns(random, std::string("xy \r\n\0", 6), 12, 140));
    }
}

}  // namespace
