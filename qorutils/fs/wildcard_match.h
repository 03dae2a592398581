// Private: file names against patterns with '*' and '?'.

#ifndef QORUTILS_FS_WILDCARD_MATCH_H_
#define QORUTILS_FS_WILDCARD_MATCH_H_

#include <ctype.h>

namespace base {

// '?' stands for any character; case is that of the process locale, byte by byte.
class CharacterMatch {
  public:
    bool operator()(char pattern, char c) const {
        return pattern == '?' || Upper(pattern) == Upper(c);
    }

  private:
    // The table that toupper looks into; a call for each character costs more than the match.
    int Upper(char c) const { return upper_[static_cast<unsigned char>(c)]; }

    int const* upper_ = *__ctype_toupper_loc();
};

// Whether the whole name matches. Where a '*' took too little, only the last one is tried with
// more: those before it took what they need.
inline bool MatchesWildcard(char const* name, char const* pattern) {
    CharacterMatch const matches;
    for (; *name != '\0' && *pattern != '*'; ++name, ++pattern)
        if (!matches(*pattern, *name)) return false;

    char const* behindStar = nullptr;
    char const* tried = nullptr;
    while (*name != '\0') {
        if (*pattern == '*') {
            behindStar = ++pattern;
            if (*pattern == '\0') return true;
            tried = name;
        } else if (matches(*pattern, *name)) {
            ++pattern;
            ++name;
        } else {
            pattern = behindStar;
            name = ++tried;
        }
    }
    while (*pattern == '*') ++pattern;
    return *pattern == '\0';
}

}  // namespace base

#endif  // QORUTILS_FS_WILDCARD_MATCH_H_
