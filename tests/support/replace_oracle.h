// The replacement of substrings done plainly, one move of the remainder per match: what
// CQorStringT::Replace must give, to the last character, however it gets there.
#ifndef QORUTILS_TESTS_SUPPORT_REPLACE_ORACLE_H_
#define QORUTILS_TESTS_SUPPORT_REPLACE_ORACLE_H_

#include <cstddef>
#include <string>
#include <vector>

template <typename T>
class ReplaceOracle {
  public:
    // `characters` fills the buffer: capacity + 1 of them, a terminator at index `length`.
    // `length` of them are text. A shared buffer counts as one without spare room.
    ReplaceOracle(std::vector<T> characters, int length, bool shared)
        : characters_(std::move(characters)), length_(length) {
        if (shared) characters_.resize(static_cast<std::size_t>(length_) + 1);
    }

    // Returns the number of replacements.
    int Replace(T const* oldText, T const* newText) {
        if (oldText == nullptr || *oldText == T()) return 0;
        old_ = oldText;
        if (newText != nullptr) new_ = newText;
        int const count = CountMatches();
        if (count == 0) return 0;
        int const resultLength = length_ + count * Difference();
        int const recordedLength = MakeRoom(resultLength);
        ReplaceMatches(recordedLength);
        length_ = resultLength;
        return count;
    }

    std::basic_string<T> Text() const {
        return std::basic_string<T>(characters_.begin(), characters_.begin() + length_);
    }
    int Capacity() const { return static_cast<int>(characters_.size()) - 1; }

  private:
    int OldLength() const { return static_cast<int>(old_.size()); }
    int NewLength() const { return static_cast<int>(new_.size()); }
    int Difference() const { return NewLength() - OldLength(); }
    T& At(int i) { return characters_.at(static_cast<std::size_t>(i)); }

    bool MatchesAt(int i) {
        for (T const ch : old_)
            if (At(i++) != ch) return false;
        return true;
    }

    // The first match at or after i in the zero-terminated run there, or -1.
    int FindInRun(int i) {
        for (; At(i) != T(); ++i)
            if (MatchesAt(i)) return i;
        return -1;
    }

    int PastZero(int i) {
        while (At(i) != T()) ++i;
        return i + 1;
    }

    int CountMatches() {
        int count = 0;
        for (int i = 0; i < length_; i = PastZero(i))
            for (int match; (match = FindInRun(i)) >= 0; ++count) i = match + OldLength();
        return count;
    }

    // Returns the length that the buffer's header holds afterwards.
    int MakeRoom(int resultLength) {
        if (Capacity() >= resultLength) return length_;
        std::vector<T> grown(static_cast<std::size_t>(resultLength) + 1, T('?'));
        for (int i = 0; i < length_; ++i) grown[static_cast<std::size_t>(i)] = At(i);
        grown.back() = T();
        characters_ = std::move(grown);
        return resultLength;
    }

    void ReplaceMatches(int recordedLength) {
        int running = length_;
        for (int i = 0; i < recordedLength; i = PastZero(i)) {
            for (int match; (match = FindInRun(i)) >= 0; i = match + NewLength()) {
                ReplaceMatch(match, running - (match + OldLength()));
                running += Difference();
            }
        }
    }

    void ReplaceMatch(int match, int balance) {
        int const tail = match + OldLength();
        std::basic_string<T> moved = new_;
        for (int i = 0; i < balance; ++i) moved += At(tail + i);
        moved += T();
        for (T const ch : moved) At(match++) = ch;
    }

    std::vector<T> characters_;
    int length_;
    std::basic_string<T> old_;
    std::basic_string<T> new_;
};

#endif  // QORUTILS_TESTS_SUPPORT_REPLACE_ORACLE_H_
