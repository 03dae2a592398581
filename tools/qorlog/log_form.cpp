#include "log_form.h"

#include <algorithm>

#include <boost/utility/string_ref.hpp>

#include "utf32_decoder.h"

namespace qorlog {

namespace {

constexpr std::size_t kMarkLength = 2;

struct Beginning {
    char const* bytes;
    std::size_t size;
    char const* refusal;
};

Beginning const kOthers[] = {
    {"\x7F"
     "ELF",
     4, "a program (ELF), not a log"},
    {"\xFF\xFE\0\0", 4, "UTF-32 with a mark of four bytes, not a log"},
    {"\xFE\xFF", 2, "UTF-16 with the high byte first, not a log"},
    {"\0\0\xFE\xFF", 4, "UTF-32 with the high byte first, not a log"},
    {"\x1F\x8B", 2, "compressed (gzip), not a log"},
};

bool MostAreCharacters(boost::string_ref bytes) {
    int characters = 0;
    int others = 0;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4)
        ++(IsCharacter(UnitAt(bytes.data() + i)) ? characters : others);
    return characters > others;
}

bool BeginsWithAscii(boost::string_ref bytes) {
    return bytes.size() >= 4 && UnitAt(bytes.data()) >= 0x20 && UnitAt(bytes.data()) < 0x7F;
}

}  // namespace

LogForm FormOf(char const* bytes, std::size_t size) {
    boost::string_ref const text(bytes, std::min(size, kTellingBytes));
    if (text.empty()) return {"empty, not a log", 0};
    for (Beginning const& other : kOthers)
        if (text.starts_with(boost::string_ref(other.bytes, other.size))) return {other.refusal, 0};

    if (text.starts_with("\xFF\xFE")) {
        boost::string_ref const rest = text.substr(kMarkLength);
        bool const isLog = rest.size() < 4 || MostAreCharacters(rest);
        return {isLog ? nullptr : "UTF-16, not a log", kMarkLength};
    }
    if (BeginsWithAscii(text) && MostAreCharacters(text)) return {nullptr, 0};
    bool const isText = text.find('\0') == boost::string_ref::npos;
    return {isText ? "text of 8-bit characters, not a log" : "not a log", 0};
}

}  // namespace qorlog
