#include "utf8_text.h"

#include <qorutils/text/utf8.h>

#include <algorithm>
#include <cstddef>

namespace qorlog {

Utf8Character TakeCharacter(boost::string_ref* text) {
    constexpr std::size_t kLongest = 4;
    Utf8Character character = {0, {}};
    auto const room = static_cast<unsigned int>(std::min(text->size(), kLongest));
    int const length = do_mbtowc(&character.code, text->data(), room);
    if (length == -1) {
        text->remove_prefix(1);
        return {0xFFFD, "\xEF\xBF\xBD"};
    }
    character.bytes = text->substr(0, length == 0 ? 1 : static_cast<std::size_t>(length));
    text->remove_prefix(character.bytes.size());
    return character;
}

}  // namespace qorlog
