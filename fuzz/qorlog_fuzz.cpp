// The way of a log's bytes through qorlog, from the decoder to the output. The first byte says in
// which pieces they come, the rest are the bytes behind a log's mark. They are decoded a second
// time, plainly, and the text is compared, as are the messages in the JSON with those in the text.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "require.h"
#include "support/guard_page.h"
#include "support/reference_utf8.h"
#include "tools/qorlog/entry_printer.h"
#include "tools/qorlog/entry_splitter.h"
#include "tools/qorlog/log_form.h"
#include "tools/qorlog/utf32_decoder.h"

namespace {

constexpr std::size_t kLargestInput = 4096;
char const* const kReplacement = "\xEF\xBF\xBD";

// ---- The plain decoder ----

std::uint32_t UnitAt(std::string const& bytes, std::size_t at) {
    std::uint32_t unit = 0;
    for (std::size_t i = 4; i-- > 0;) unit = unit << 8 | static_cast<unsigned char>(bytes[at + i]);
    return unit;
}

bool TimeBeginsAt(std::string const& bytes, std::size_t at) {
    std::string const form = "00000.000 ;";
    if (at + 4 * form.size() > bytes.size()) return false;
    for (std::size_t i = 0; i < form.size(); ++i) {
        std::uint32_t unit = UnitAt(bytes, at + 4 * i);
        if (unit >= '0' && unit <= '9') unit = '0';
        if (unit != static_cast<unsigned char>(form[i])) return false;
    }
    return true;
}

struct Decoded {
    std::string text;
    std::uint64_t invalid = 0;
};

Decoded PlainDecoded(std::string const& bytes) {
    Decoded decoded;
    std::size_t at = 0;
    while (at + 4 <= bytes.size()) {
        std::string const character = reference_utf8::Encode(UnitAt(bytes, at));
        decoded.text += character.empty() ? kReplacement : character;
        std::size_t steps = 4;
        if (character.empty()) {
            ++decoded.invalid;
            for (std::size_t k = 3; k > 0; --k)
                if (TimeBeginsAt(bytes, at + k)) steps = k;
            if (steps != 4) decoded.text += "\r\n";
        }
        at += steps;
    }
    if (at < bytes.size()) {
        ++decoded.invalid;
        decoded.text += kReplacement;
    }
    return decoded;
}

// ---- The program's way ----

using qorlog::LogEntry;
using qorlog::TextEnd;

struct Shown {
    std::string entries;  // as the splitter hands them out, with their line ends
    std::string text;
    std::string harmless;
    std::vector<std::string> messages;
    std::string json;
};

void Show(LogEntry const& entry, Shown* shown) {
    qorlog::LogFacts const log = {"f", true, 0};
    qorlog::Look json;
    json.isJson = true;
    qorlog::Look harmless;
    harmless.isHarmless = true;
    shown->entries += entry.text.to_string() + (entry.isEnded ? "\r\n" : "");
    shown->messages.push_back(entry.Message().to_string());
    qorlog::PrintEntry(entry, log, qorlog::Look(), &shown->text);
    qorlog::PrintEntry(entry, log, harmless, &shown->harmless);
    qorlog::PrintEntry(entry, log, json, &shown->json);
}

Shown ShownInPieces(std::string const& bytes, std::size_t pieceSize, Decoded const& expected) {
    qorlog::Utf32Decoder decoder;
    qorlog::EntrySplitter splitter;
    Shown shown;
    auto const handler = [&](LogEntry const& entry) { Show(entry, &shown); };
    std::string kept;
    for (std::size_t at = 0; at < bytes.size() || at == 0; at += pieceSize) {
        kept += bytes.substr(at, pieceSize);
        bool const isLast = at + pieceSize >= bytes.size();
        GuardedArray<char> data(kept.data(), kept.size());
        std::size_t const done = decoder.Decode(data.data(), kept.size(), isLast, splitter.Text());
        Require(isLast ? done == kept.size() : kept.size() - done <= 46);
        kept.erase(0, done);
        splitter.HandOut(isLast ? TextEnd::kNoMore : TextEnd::kMoreAtOnce, handler);
    }
    Require(decoder.InvalidCharacters() == expected.invalid);
    return shown;
}

// ---- What must hold ----

std::string WithoutCrs(std::string const& text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') lines += text[i];
    return lines;
}

std::size_t HexadecimalValue(std::string const& digits) {
    Require(digits.size() == 4);
    return std::stoul(digits, nullptr, 16);
}

// Reads the string that begins at `at`, behind its quote, and leaves `at` behind the last one.
std::string JsonString(std::string const& json, std::size_t* at) {
    std::string text;
    for (;;) {
        Require(*at < json.size());
        char const c = json[(*at)++];
        Require(static_cast<unsigned char>(c) >= 0x20);
        if (c == '"') return text;
        if (c != '\\') {
            text += c;
            continue;
        }
        Require(*at < json.size());
        char const kind = json[(*at)++];
        if (kind == 'u') {
            text += reference_utf8::Encode(
                static_cast<std::uint32_t>(HexadecimalValue(json.substr(*at, 4))));
            *at += 4;
        } else {
            std::size_t const found = std::string("\"\\trn").find(kind);
            Require(found != std::string::npos);
            text += "\"\\\t\r\n"[found];
        }
    }
}

void RequireJson(Shown const& shown) {
    std::size_t at = 0;
    for (std::string const& message : shown.messages) {
        std::string const name = "\"message\":\"";
        at = shown.json.find(name, at);
        Require(at != std::string::npos);
        at += name.size();
        Require(JsonString(shown.json, &at) == message);
        at = shown.json.find('\n', at);
        Require(at != std::string::npos && shown.json[at - 1] == '}');
    }
    Require(shown.messages.empty() || at + 1 == shown.json.size());
}

void RequireHarmless(std::string const& text) {
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        Require(byte >= 0x20 ? byte != 0x7F : c == '\t' || c == '\n');
    }
    Require(text.find("\xC2\x9B") == std::string::npos);
    Require(text.find("\xE2\x80\xAE") == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size == 0 || size > kLargestInput) return 0;
    std::string const bytes(reinterpret_cast<char const*>(input) + 1, size - 1);
    Decoded const expected = PlainDecoded(bytes);
    Shown const whole = ShownInPieces(bytes, kLargestInput, expected);
    Shown const pieces = ShownInPieces(bytes, std::size_t{1} + input[0], expected);

    Require(whole.entries == expected.text);
    Require(whole.text == WithoutCrs(expected.text));
    Require(pieces.messages == whole.messages);
    Require(pieces.json == whole.json);
    RequireJson(whole);
    RequireHarmless(whole.harmless);
    qorlog::FormOf(bytes.data(), bytes.size());
    return 0;
}
