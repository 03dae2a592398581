// The input: a pattern up to its first zero, then a name. Both end at an inaccessible page; the
// match is compared with the table of all matches of their beginnings.

#include <qorutils/fs/wildcard_match.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "require.h"
#include "support/guard_page.h"

namespace {

constexpr std::size_t kLargestText = 1024;

bool IsSameLetter(char a, char b) {
    return std::toupper(static_cast<unsigned char>(a)) ==
           std::toupper(static_cast<unsigned char>(b));
}

// matched[i]: whether the pattern so far matches the first i characters of the name.
bool Matches(std::string const& name, std::string const& pattern) {
    std::vector<bool> matched(name.size() + 1, false);
    matched[0] = true;
    for (char const p : pattern) {
        std::vector<bool> longer(name.size() + 1, false);
        longer[0] = p == '*' && matched[0];
        for (std::size_t i = 1; i <= name.size(); ++i)
            longer[i] = p == '*' ? matched[i] || longer[i - 1]
                                 : matched[i - 1] && (p == '?' || IsSameLetter(p, name[i - 1]));
        matched = longer;
    }
    return matched[name.size()];
}

char const* PlaceAtEnd(std::string const& text, GuardedArray<char>& memory) {
    char* const start = memory.data() + memory.size() - text.size() - 1;
    text.copy(start, text.size());
    return start;
}

void Check(std::string const& name, std::string const& pattern) {
    static GuardedArray<char> names(kLargestText + 1);
    static GuardedArray<char> patterns(kLargestText + 1);
    Require(Matches(name, pattern) ==
            base::MatchesWildcard(PlaceAtEnd(name, names), PlaceAtEnd(pattern, patterns)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size > kLargestText) return 0;
    std::string const text(reinterpret_cast<char const*>(input), size);
    std::string const pattern = text.substr(0, text.find('\0'));
    std::string const rest = text.substr(pattern.size()).substr(pattern.size() < size ? 1 : 0);
    std::string const name = rest.substr(0, rest.find('\0'));
    Check(name, pattern);
    Check(pattern, name);
    // A name that the pattern is made for.
    Check(name + pattern, '*' + pattern);
    return 0;
}
