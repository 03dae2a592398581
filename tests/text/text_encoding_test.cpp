#include <qorutils/text/text_encoding.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/guard_page.h"

namespace {

using qor::text_utils::detect_bom_header;
using qor::text_utils::detect_text_encoding;

constexpr unsigned int kUntouched = 77;

struct Detection {
    unsigned int result;
    unsigned int markLength;
};

bool operator==(Detection a, Detection b) {
    return a.result == b.result && a.markLength == b.markLength;
}

std::ostream& operator<<(std::ostream& out, Detection d) {
    return out << "result " << d.result << ", mark length " << d.markLength;
}

// A text with its length, as zero bytes are part of it.
template <std::size_t N>
std::string Bytes(char const (&literal)[N]) {
    return std::string(literal, N - 1);
}

std::string InHex(std::string const& bytes) {
    char const* const digits = "0123456789ABCDEF";
    std::string hex;
    for (unsigned char const b : bytes) {
        hex += digits[b >> 4];
        hex += digits[b & 15];
        hex += ' ';
    }
    return hex;
}

// Both detections run on bytes that end at an inaccessible page.
Detection Bom(std::string const& bytes) {
    GuardedArray<char> data(bytes.data(), bytes.size());
    Detection found = {0, kUntouched};
    found.result = detect_bom_header(reinterpret_cast<unsigned char*>(data.data()),
                                     static_cast<unsigned int>(bytes.size()), &found.markLength);
    return found;
}

Detection Encoding(std::string const& bytes) {
    GuardedArray<char> data(bytes.data(), bytes.size());
    Detection found = {0, kUntouched};
    found.result = detect_text_encoding(data.data(), static_cast<unsigned int>(bytes.size()),
                                        &found.markLength);
    return found;
}

struct MarkCase {
    char const* name;
    std::string mark;
    unsigned int kind;
    unsigned int encoding;
};

MarkCase const kMarks[] = {
    {"UTF-32LE", Bytes("\xFF\xFE\x00\x00"), 5, 0},
    {"UTF-16LE", Bytes("\xFF\xFE"), 3, 2},
    {"UTF-8", Bytes("\xEF\xBB\xBF"), 1, 0},
    {"UTF-7, first form", Bytes("\x2B\x2F\x76\x2B"), 7, 0},
    {"UTF-7, second form", Bytes("\x2B\x2F\x76\x2F"), 7, 0},
    {"UTF-7, third form", Bytes("\x2B\x2F\x76\x38"), 7, 0},
    {"UTF-7, fourth form", Bytes("\x2B\x2F\x76\x39"), 7, 0},
    {"UTF-16BE", Bytes("\xFE\xFF"), 2, 0},
    {"UTF-32BE", Bytes("\x00\x00\xFE\xFF"), 4, 0},
    {"BOCU-1", Bytes("\xFB\xEE\x28"), 9, 0},
    {"SCSU", Bytes("\x0E\xFE\xFF"), 6, 0},
    {"UTF-EBCDIC", Bytes("\xDD\x73\x66\x73"), 8, 0},
};

unsigned int LengthOf(std::string const& mark) {
    return static_cast<unsigned int>(mark.size());
}

TEST(EQorTextEncoding, HasItsFixedValuesAndWidth) {
    using qor::text_utils::EQorTextEncoding;
    EXPECT_TRUE((std::is_same<unsigned int, std::underlying_type<EQorTextEncoding>::type>::value));
    EXPECT_EQ(0u, qor::text_utils::eTextEncodingUnknown);
    EXPECT_EQ(1u, qor::text_utils::eTextEncodingAnsi);
    EXPECT_EQ(2u, qor::text_utils::eTextEncodingUtf16LE);
}

TEST(DetectBomHeader, KnowsEveryMarkBeforeText) {
    for (MarkCase const& c : kMarks)
        EXPECT_EQ((Detection{c.kind, LengthOf(c.mark)}), Bom(c.mark + "text")) << c.name;
}

TEST(DetectBomHeader, KnowsEveryMarkThatIsAllThereIs) {
    for (MarkCase const& c : kMarks)
        EXPECT_EQ((Detection{c.kind, LengthOf(c.mark)}), Bom(c.mark)) << c.name;
}

TEST(DetectBomHeader, DoesNotKnowMarksThatAreCutOff) {
    std::string const cutOff[] = {
        Bytes("\xFF"),         Bytes("\xEF"),         Bytes("\xEF\xBB"), Bytes("\x2B"),
        Bytes("\x2B\x2F"),     Bytes("\x2B\x2F\x76"), Bytes("\xFE"),     Bytes("\x00"),
        Bytes("\x00\x00"),     Bytes("\x00\x00\xFE"), Bytes("\xFB"),     Bytes("\xFB\xEE"),
        Bytes("\x0E"),         Bytes("\x0E\xFE"),     Bytes("\xDD"),     Bytes("\xDD\x73"),
        Bytes("\xDD\x73\x66"),
    };
    for (std::string const& bytes : cutOff)
        EXPECT_EQ((Detection{0, kUntouched}), Bom(bytes)) << InHex(bytes);
}

TEST(DetectBomHeader, DoesNotKnowMarksWithAnotherLastByte) {
    for (MarkCase const& c : kMarks) {
        if (c.kind == 5) continue;  // begins with another mark, see below
        std::string damaged = c.mark;
        damaged.back() = 'x';
        EXPECT_EQ((Detection{0, kUntouched}), Bom(damaged + "text")) << c.name;
    }
}

TEST(DetectBomHeader, TriesUtf32BeforeTheUtf16MarkThatItBeginsWith) {
    EXPECT_EQ((Detection{5, 4}), Bom(Bytes("\xFF\xFE\x00\x00\x41\x00")));
    EXPECT_EQ((Detection{3, 2}), Bom(Bytes("\xFF\xFE\x41\x00")));
    EXPECT_EQ((Detection{3, 2}), Bom(Bytes("\xFF\xFE\x00")));
    EXPECT_EQ((Detection{3, 2}), Bom(Bytes("\xFF\xFE\x00\x41")));
}

TEST(DetectBomHeader, KnowsUtf7ByFourValuesOfTheFourthByteOnly) {
    for (int fourth = 0; fourth != 256; ++fourth) {
        bool const closes = fourth == 0x2B || fourth == 0x2F || fourth == 0x38 || fourth == 0x39;
        Detection const expected = closes ? Detection{7, 4} : Detection{0, kUntouched};
        EXPECT_EQ(expected, Bom("\x2B\x2F\x76" + std::string(1, static_cast<char>(fourth))))
            << fourth;
    }
}

TEST(DetectBomHeader, FindsNoMarkInNoData) {
    unsigned int length = kUntouched;
    EXPECT_EQ(0u, detect_bom_header(nullptr, 4, &length));
    EXPECT_EQ(kUntouched, length);
    EXPECT_EQ((Detection{0, kUntouched}), Bom(""));
}

TEST(DetectBomHeader, LooksAtTheStartOnly) {
    EXPECT_EQ((Detection{0, kUntouched}), Bom(" \xEF\xBB\xBFtext"));
}

TEST(DetectBomHeader, NeedsNoPlaceForTheLength) {
    unsigned char mark[] = {0xEF, 0xBB, 0xBF};
    EXPECT_EQ(1u, detect_bom_header(mark, 3, nullptr));
    EXPECT_EQ(0u, detect_bom_header(mark, 2, nullptr));
}

TEST(DetectTextEncoding, ReadsOnlyTheUtf16MarkAndReportsTheLengthOfAll) {
    for (MarkCase const& c : kMarks) {
        EXPECT_EQ((Detection{c.encoding, LengthOf(c.mark)}), Encoding(c.mark + "a text")) << c.name;
        EXPECT_EQ((Detection{c.encoding, LengthOf(c.mark)}), Encoding(c.mark)) << c.name;
    }
}

TEST(DetectTextEncoding, KnowsPlainText) {
    EXPECT_EQ((Detection{1, kUntouched}), Encoding("Hello, world"));
}

TEST(DetectTextEncoding, KnowsUtf16WithoutAMark) {
    EXPECT_EQ((Detection{2, kUntouched}), Encoding(Bytes("H\0e\0l\0l\0o\0")));
}

TEST(DetectTextEncoding, RefusesUtf8WithItsMark) {
    EXPECT_EQ((Detection{0, 3}), Encoding("\xEF\xBB\xBFtext"));
}

TEST(DetectTextEncoding, DoesNotKnowNullOrLessThanTwoBytes) {
    unsigned int length = kUntouched;
    EXPECT_EQ(0u, detect_text_encoding(nullptr, 12, &length));
    EXPECT_EQ(kUntouched, length);
    EXPECT_EQ((Detection{0, kUntouched}), Encoding(""));
    EXPECT_EQ((Detection{0, kUntouched}), Encoding("a"));
    EXPECT_EQ((Detection{0, kUntouched}), Encoding("\xFF"));
}

TEST(DetectTextEncoding, TakesTwoToEightBytesFor8BitText) {
    std::string const text = Bytes("H\0e\0l\0l\0o\0");
    for (std::size_t size = 2; size <= 8; ++size)
        EXPECT_EQ((Detection{1, kUntouched}), Encoding(text.substr(0, size))) << size;
}

TEST(DetectTextEncoding, GuessesFromNineBytesOn) {
    EXPECT_EQ((Detection{2, kUntouched}), Encoding(Bytes("H\0e\0l\0l\0o")));
}

TEST(DetectTextEncoding, TakesAnyHighByteFor8BitText) {
    for (std::size_t high : {1u, 3u, 5u, 7u}) {
        std::string text = Bytes("H\0e\0l\0l\0o\0");
        text[high] = '\x04';
        EXPECT_EQ((Detection{1, kUntouched}), Encoding(text)) << high;
    }
}

TEST(DetectTextEncoding, TakesASingleLowByteForUtf16) {
    for (std::size_t low : {0u, 2u, 4u, 6u}) {
        std::string text(9, '\0');
        text[low] = '\xE9';
        EXPECT_EQ((Detection{2, kUntouched}), Encoding(text)) << low;
    }
}

TEST(DetectTextEncoding, TakesEightZerosFor8BitTextWhateverFollows) {
    EXPECT_EQ((Detection{1, kUntouched}), Encoding(std::string(9, '\0')));
    EXPECT_EQ((Detection{1, kUntouched}), Encoding(std::string(8, '\0') + Bytes("H\0e\0")));
}

TEST(DetectTextEncoding, DoesNotLookBeyondTheEighthByte) {
    EXPECT_EQ((Detection{2, kUntouched}), Encoding(Bytes("H\0e\0l\0l\0\xFF\xFF\xFF\xFF")));
}

TEST(DetectTextEncoding, NeedsNoPlaceForTheLength) {
    char mark[] = "\xFF\xFE";
    EXPECT_EQ(2u, detect_text_encoding(mark, 2, nullptr));
    char text[] = "Hello, world";
    EXPECT_EQ(1u, detect_text_encoding(text, 12, nullptr));
}

TEST(DetectTextEncoding, StaysInsideEverySizeOfEveryMark) {
    for (MarkCase const& c : kMarks) {
        std::string const text = c.mark + "some text";
        for (std::size_t size = 0; size <= 9; ++size) {
            std::string const part = text.substr(0, size);
            bool const marked = size >= c.mark.size();
            if (marked) {
                EXPECT_EQ((Detection{c.kind, LengthOf(c.mark)}), Bom(part)) << c.name << size;
                EXPECT_EQ((Detection{c.encoding, LengthOf(c.mark)}), Encoding(part))
                    << c.name << size;
            } else if (c.kind == 5 && size >= 2) {
                EXPECT_EQ((Detection{3, 2}), Bom(part)) << size;
                EXPECT_EQ((Detection{2, 2}), Encoding(part)) << size;
            } else {
                EXPECT_EQ((Detection{0, kUntouched}), Bom(part)) << c.name << size;
                EXPECT_EQ((Detection{size < 2 ? 0u : 1u, kUntouched}), Encoding(part))
                    << c.name << size;
            }
        }
    }
}

}  // namespace
