#include "qorutils/text/text_search.h"

#include <algorithm>
#include <type_traits>

namespace qor_text {
namespace {

// A point that splits a pattern such that a mismatch right of it allows to skip as far as has been
// matched (the critical factorization of Crochemore and Perrin), and a period of the right part.
struct Split {
    std::ptrdiff_t left;  // length of the left part
    std::ptrdiff_t period;
};

// The start of the greatest suffix in the order given by `before`, with its period.
template <typename T, typename Before>
Split GreatestSuffix(T const* sub, std::ptrdiff_t n, Before before) {
    std::ptrdiff_t start = 0, candidate = 1, matched = 0, period = 1;
    while (candidate + matched < n) {
        T const a = sub[candidate + matched];
        T const b = sub[start + matched];
        if (a == b) {
            if (++matched == period) {
                candidate += period;
                matched = 0;
            }
        } else if (before(a, b)) {
            candidate += matched + 1;
            matched = 0;
            period = candidate - start;
        } else {
            start = candidate++;
            matched = 0;
            period = 1;
        }
    }
    return {start, period};
}

template <typename T>
Split CriticalSplit(T const* sub, std::ptrdiff_t n) {
    Split const up = GreatestSuffix(sub, n, [](T a, T b) { return a < b; });
    Split const down = GreatestSuffix(sub, n, [](T a, T b) { return a > b; });
    return up.left > down.left ? up : down;
}

// The two-way algorithm: linear time, constant space.
template <typename T>
__attribute__((noinline)) T const* FindTwoWay(T const* text, T const* end, T const* sub,
                                              std::ptrdiff_t n) {
    Split const split = CriticalSplit(sub, n);
    bool const periodic = std::equal(sub, sub + split.left, sub + split.period);
    std::ptrdiff_t const shift = periodic ? split.period : std::max(split.left, n - split.left) + 1;
    std::ptrdiff_t known = 0;  // leading characters that are matched already
    while (end - text >= n) {
        std::ptrdiff_t right = std::max(split.left, known);
        while (right < n && sub[right] == text[right]) ++right;
        if (right < n) {
            text += right - split.left + 1;
            known = 0;
            continue;
        }
        std::ptrdiff_t left = split.left;
        while (left > known && sub[left - 1] == text[left - 1]) --left;
        if (left <= known) return text;
        text += shift;
        known = periodic ? n - shift : 0;
    }
    return nullptr;
}

constexpr int kBlock = 16;  // characters
constexpr int kBlocksAtOnce = 4;

// Whether one of the places of a block holds `first` with `last` at distance `span`.
// The vectors are the compiler's: machine words where the machine has no others.
template <typename T>
bool MayMatch(T const* block, std::ptrdiff_t span, T first, T last) {
    using Lane = typename std::make_unsigned<T>::type;
    using Vector __attribute__((vector_size(16))) = Lane;
    constexpr int kLanes = 16 / sizeof(T);
    Vector const firsts = Vector{} + static_cast<Lane>(first);
    Vector const lasts = Vector{} + static_cast<Lane>(last);
    Vector hits{};
    for (int i = 0; i < kBlock; i += kLanes) {
        Vector here, there;
        std::memcpy(&here, block + i, sizeof here);
        std::memcpy(&there, block + span + i, sizeof there);
        hits |= reinterpret_cast<Vector>((here == firsts) & (there == lasts));
    }
    std::uint64_t halves[2];
    std::memcpy(halves, &hits, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

// The places from p on that a few blocks rule out are passed over. Not inlined: short texts, which
// need no blocks, would pay for its registers.
template <typename T>
__attribute__((noinline)) T const* SkipBlocks(T const* p, T const* sub, std::ptrdiff_t span) {
    for (int i = 0; i < kBlocksAtOnce; ++i, p += kBlock)
        if (MayMatch(p, span, sub[0], sub[span])) return p;
    return p;
}

}  // namespace

// Candidates are the places of the first character; after one in vain the next are looked at in
// blocks, since the call for a candidate costs more where they are frequent. When comparing has
// cost more than the text is long, the search takes over whose worst case is linear, too.
template <typename T>
T const* FindText(T const* text, T const* end, T const* sub, int n) {
    if (n == 0) return text;
    std::ptrdiff_t const span = n - 1;
    std::ptrdiff_t credit = 64 + 4 * span;
    while (end - text > span) {
        T const* const lastPlace = end - n;
        T const* const candidate = FindChar(text, lastPlace - text + 1, sub[0]);
        if (candidate == nullptr) return nullptr;
        if (candidate[span] == sub[span]) {
            std::ptrdiff_t const matched = std::mismatch(sub, sub + n, candidate).first - sub;
            if (matched == n) return candidate;
            credit += candidate - text - matched;
            if (credit < 0) return FindTwoWay(candidate + 1, end, sub, span + 1);
        }
        text = candidate + 1;
        if (lastPlace - text >= kBlocksAtOnce * kBlock) text = SkipBlocks(text, sub, span);
    }
    return nullptr;
}

template char const* FindText(char const*, char const*, char const*, int);
template wchar_t const* FindText(wchar_t const*, wchar_t const*, wchar_t const*, int);

}  // namespace qor_text
