// Plays random operations on strings that share, lock and outgrow their buffers, and on a plain
// model beside them; any difference in text, capacity, sharing or result aborts.
//
// An input is a sequence of bytes, each drawn as operation, string, number or character.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <qorutils/text/qor_string.h>

#include "require.h"
#include "support/replace_oracle.h"

using qor_text::CQorStringT;

namespace {

// Small draws from the fuzzer's bytes; zeros when they are used up.
class Draws {
  public:
    Draws(std::uint8_t const* data, std::size_t size) : next_(data), end_(data + size) {}

    bool AtEnd() const { return next_ == end_; }
    int Byte() { return AtEnd() ? 0 : *next_++; }
    int Below(int limit) { return Byte() % limit; }
    // From below 0 to beyond `length`.
    int Index(int length) { return Byte() % (length + 5) - 2; }

    template <typename T>
    T Character() {
        static char const alphabet[] = "aaabbAB ,\t\0\xE9";
        return static_cast<T>(static_cast<unsigned char>(alphabet[Below(sizeof(alphabet) - 1)]));
    }
    template <typename T>
    std::basic_string<T> Text(int limit) {
        std::basic_string<T> text;
        for (int n = Below(limit); n > 0; --n) text += Character<T>();
        return text;
    }

  private:
    std::uint8_t const* next_;
    std::uint8_t const* end_;
};

template <typename T>
std::basic_string<T> UpToZero(std::basic_string<T> const& text) {
    return std::basic_string<T>(text.c_str());
}

// What a string must be: a text in a buffer of some capacity that others may share.
template <typename T>
class Model {
  public:
    using Text = std::basic_string<T>;

    Text text() const { return IsNil() ? Text() : buffer_->text; }
    int Length() const { return static_cast<int>(text().size()); }
    int Capacity() const { return IsNil() ? 0 : buffer_->capacity; }
    bool IsNil() const { return buffer_ == nullptr; }
    bool IsLocked() const { return !IsNil() && buffer_->locked; }
    bool IsShared() const { return buffer_.use_count() > 1; }
    bool SharesWith(Model const& other) const { return buffer_ == other.buffer_; }
    int Refs() const {
        return IsNil() || buffer_->locked ? -1 : static_cast<int>(buffer_.use_count());
    }

    void Renew(Text const& text, int capacity) {
        buffer_.reset();
        if (capacity != 0) buffer_ = std::make_shared<Buffer>(Buffer{text, capacity, false});
    }
    void RenewExactly(Text const& text) { Renew(text, static_cast<int>(text.size())); }

    void CopyBeforeWrite() {
        if (IsShared()) RenewExactly(text());
    }
    // Once the buffer is private: other characters in it, and growth where they do not fit.
    void Edit(Text const& text) {
        CopyBeforeWrite();
        if (static_cast<int>(text.size()) > Capacity())
            RenewExactly(text);
        else if (!IsNil())
            buffer_->text = text;
    }
    void Assign(Text const& text) {
        if (IsShared())
            RenewExactly(text);
        else
            Edit(text);
    }
    void AssignString(Model const& source) {
        if (SharesWith(source)) return;
        bool const locked = IsLocked();
        if (!locked && source.Refs() >= 0) {
            buffer_ = source.buffer_;
            return;
        }
        Assign(source.text());
        if (locked && !IsNil()) buffer_->locked = true;
    }
    void CopyConstruct(Model const& source) {
        if (source.Refs() >= 0)
            buffer_ = source.buffer_;
        else
            RenewExactly(UpToZero(source.text()));
    }
    void Append(Text const& tail) {
        if (tail.empty()) return;
        if (IsShared())
            RenewExactly(text() + tail);
        else
            Edit(text() + tail);
    }
    void GetBuffer(int room) {
        if (IsShared() || Capacity() < room) Renew(text(), std::max(room, Length()));
    }
    void SetLocked(bool locked) {
        if (!IsNil()) buffer_->locked = locked;
    }
    void FreeExtra() {
        if (Length() != Capacity()) RenewExactly(text());
    }
    void Empty() {
        if (Length() == 0) return;
        if (IsLocked())
            buffer_->text.clear();
        else
            buffer_.reset();
    }

  private:
    struct Buffer {
        Text text;
        int capacity;
        bool locked;
    };
    std::shared_ptr<Buffer> buffer_;
};

template <typename T>
class Game {
  public:
    using String = CQorStringT<T>;
    using Text = std::basic_string<T>;

    explicit Game(Draws draws) : draws_(draws) {}

    void Play() {
        while (!draws_.AtEnd()) {
            auto const move = kMoves[static_cast<std::size_t>(draws_.Byte()) % kMoves.size()];
            at_ = static_cast<std::size_t>(draws_.Below(kStrings));
            from_ = static_cast<std::size_t>(draws_.Below(kStrings));
            (this->*move)();
            Compare();
        }
    }

  private:
    static constexpr int kStrings = 4;
    static constexpr int kLongest = 3000;

    // An argument: a text of its own, or one inside a string, the changed one perhaps.
    struct Argument {
        Text text;         // what it says
        T const* pointer;  // where it stands
    };

    String& S() { return strings_[at_]; }
    Model<T>& M() { return models_[at_]; }
    Text text() { return M().text(); }
    int Length() { return M().Length(); }

    Argument DrawArgument() {
        if (draws_.Below(3) != 0) {
            own_.push_back(draws_.template Text<T>(8));
            return {UpToZero(own_.back()), own_.back().c_str()};
        }
        auto const text = models_[from_].text();
        int const at = draws_.Below(static_cast<int>(text.size()) + 1);
        return {UpToZero(text.substr(static_cast<std::size_t>(at))), strings_[from_].c_str() + at};
    }
    T DrawCharacter() { return draws_.template Character<T>(); }

    void Compare() {
        own_.clear();
        for (std::size_t i = 0; i < kStrings; ++i) {
            String const& s = strings_[i];
            Model<T> const& model = models_[i];
            Require(Text(s.begin(), s.end()) == model.text());
            Require(s.c_str()[s.GetLength()] == T());
            Require(s.GetAllocLength() == model.Capacity());
            Require(s.GetData()->nRefs == model.Refs());
            for (std::size_t j = 0; j < i; ++j)
                Require((s.c_str() == strings_[j].c_str()) == model.SharesWith(models_[j]));
        }
        if (Length() > kLongest) Empty();
    }

    // --- Lifetime and buffers ---

    void AssignString() {
        S() = strings_[from_];
        M().AssignString(models_[from_]);
    }
    void AssignText() {
        auto const argument = DrawArgument();
        S() = argument.pointer;
        M().Assign(argument.text);
    }
    void AssignCharacter() {
        T const ch = DrawCharacter();
        S() = ch;
        M().Assign(Text(1, ch));
    }
    void CopyConstruct() {
        if (at_ == from_) return;
        S().~String();
        new (&S()) String(strings_[from_]);
        M().CopyConstruct(models_[from_]);
    }
    void MoveAssignTemporary() {
        auto const text = draws_.template Text<T>(12);
        bool const locked = M().IsLocked();
        S() = String(text.data(), static_cast<int>(text.size()));
        if (text.empty() || locked) {
            M().Assign(text);
            M().SetLocked(locked);
        } else {
            M().RenewExactly(text);
        }
    }
    void Swap() {
        swap(S(), strings_[from_]);
        std::swap(M(), models_[from_]);
    }
    void Empty() {
        S().Empty();
        M().Empty();
    }
    void GetBufferAndFill() {
        int const room = draws_.Below(60);
        T* const buffer = S().GetBuffer(room);
        M().GetBuffer(room);
        if (M().IsNil()) return;
        auto text = M().text();
        text.resize(static_cast<std::size_t>(draws_.Below(M().Capacity() + 1)), DrawCharacter());
        std::fill(buffer + Length(), buffer + M().Capacity(), T('a'));
        std::copy(text.begin(), text.end(), buffer);
        S().ReleaseBuffer(static_cast<int>(text.size()));
        M().Edit(text);
    }
    void ReleaseMeasured() {
        S().ReleaseBuffer();
        M().Edit(UpToZero(text()));
    }
    void Lock() {
        Require(S().LockBuffer() == S().c_str());
        M().GetBuffer(0);
        M().SetLocked(true);
    }
    void Unlock() {
        // Others that share the buffer would lose their count: only a locked one is unlocked.
        if (!M().IsLocked()) return;
        S().UnlockBuffer();
        M().SetLocked(false);
    }
    void FreeExtra() {
        S().FreeExtra();
        M().FreeExtra();
    }
    void Truncate() {
        int const n = draws_.Below(Length() + 1);
        S().Truncate(n);
        M().GetBuffer(n);
        M().Edit(text().substr(0, static_cast<std::size_t>(n)));
    }

    // --- Editing ---

    void SetAt() {
        if (Length() == 0) return;
        int const at = draws_.Below(Length());
        T const ch = DrawCharacter();
        auto changed = text();
        changed[static_cast<std::size_t>(at)] = ch;
        S().SetAt(at, ch);
        M().Edit(changed);
    }
    void AppendString() {
        S() += strings_[from_];
        M().Append(models_[from_].text());
    }
    void AppendText() {
        auto const argument = DrawArgument();
        S() += argument.pointer;
        M().Append(argument.text);
    }
    void AppendCharacter() {
        T const ch = DrawCharacter();
        S() += ch;
        M().Append(Text(1, ch));
    }
    void Join() {
        auto const joined = text() + models_[from_].text();
        String const sum = S() + strings_[from_];
        Require(Text(sum.begin(), sum.end()) == joined);
        Require(sum.GetAllocLength() == static_cast<int>(joined.size()));
    }
    void InsertText() {
        auto const argument = DrawArgument();
        int const index = draws_.Index(Length());
        auto changed = text();
        changed.insert(Clamp(index), argument.text);
        Require(S().Insert(index, argument.pointer) == static_cast<int>(changed.size()));
        if (!argument.text.empty()) M().Edit(changed);
    }
    void InsertCharacter() {
        T const ch = DrawCharacter();
        int const index = draws_.Index(Length());
        auto changed = text();
        changed.insert(Clamp(index), 1, ch);
        Require(S().Insert(index, ch) == static_cast<int>(changed.size()));
        M().Edit(changed);
    }
    void Delete() {
        int const index = draws_.Index(Length());
        int const count = draws_.Index(Length());
        int const before = Length();
        Require(S().Delete(index, count) == before);
        if (std::max(index, 0) >= before || count <= 0) return;
        M().Edit(text().erase(Clamp(index), static_cast<std::size_t>(count)));
    }
    void Remove() {
        T const ch = DrawCharacter();
        auto changed = text();
        changed.erase(std::remove(changed.begin(), changed.end(), ch), changed.end());
        Require(S().Remove(ch) == Length() - static_cast<int>(changed.size()));
        M().Edit(changed);
    }
    void ReplaceCharacter() {
        T const from = DrawCharacter();
        T const to = DrawCharacter();
        auto changed = text();
        auto const count = std::count(changed.begin(), changed.end(), from);
        std::replace(changed.begin(), changed.end(), from, to);
        Require(S().Replace(from, to) == (from == to ? 0 : count));
        if (from != to) M().Edit(changed);
    }
    void ReplaceText() {
        auto const from = DrawArgument();
        auto const to = DrawArgument();
        std::vector<T> buffer(S().c_str(), S().c_str() + S().GetAllocLength() + 1);
        ReplaceOracle<T> oracle(buffer, Length(), M().IsShared());
        int const count = oracle.Replace(from.text.c_str(), to.text.c_str());
        Require(S().Replace(from.pointer, to.pointer) == count);
        if (count != 0) M().Edit(oracle.Text());
    }
    void Reverse() {
        auto changed = text();
        std::reverse(changed.begin(), changed.begin() + RunLength());
        S().MakeReverse();
        M().Edit(changed);
    }
    void FoldCase() {
        bool const upper = draws_.Below(2) == 0;
        auto changed = text();
        for (T& ch : changed) {
            if (ch == T()) break;
            if (upper && ch >= T('a') && ch <= T('z')) ch = static_cast<T>(ch - 32);
            if (!upper && ch >= T('A') && ch <= T('Z')) ch = static_cast<T>(ch + 32);
        }
        upper ? S().MakeUpper() : S().MakeLower();
        M().Edit(changed);
    }
    void TrimSpace() {
        Trim(Text{T(' '), T('\t')}, [this](int) { return &S().Trim(); });
    }
    void TrimCharacter() {
        T const ch = DrawCharacter();
        if (ch == T()) return;
        Trim(Text(1, ch), [this, ch](int) { return &S().Trim(ch); });
    }
    void TrimSet() {
        auto const argument = DrawArgument();
        // The set would change under the first of the two halves.
        auto const set = argument.text;
        Trim(set, [this, &set](int) { return &S().Trim(set.c_str()); });
    }
    template <typename Action>
    void Trim(Text const& set, Action trim) {
        auto changed = text();
        auto const isKept = [&set](T ch) { return set.find(ch) == Text::npos; };
        auto const run = changed.begin() + RunLength();
        auto last = run;
        while (last != changed.begin() && !isKept(last[-1])) --last;
        if (last != run) changed.erase(last, changed.end());
        changed.erase(changed.begin(), std::find_if(changed.begin(), changed.end(), isKept));
        Require(trim(0) == &S());
        M().Edit(changed);
    }
    void Format() {
        auto const argument = DrawArgument();
        int const number = draws_.Byte();
        auto formatted = argument.text + T('|');
        for (char const digit : std::to_string(number)) formatted += static_cast<T>(digit);
        FormatTextAndNumber(argument.pointer, number);
        int const length = static_cast<int>(formatted.size());
        bool const fits = sizeof(T) == 1 || length < 2048;
        M().GetBuffer(fits ? length + 1 : 0);
        M().Edit(fits ? formatted : UpToZero(text()));
    }
    void FormatTextAndNumber(T const* text, int number);

    // --- Looking ---

    void FindText() {
        auto const argument = DrawArgument();
        int const start = draws_.Below(Length() + 2);
        int const found = S().Find(argument.pointer, start);
        if (start > Length()) return Require(found == -1);
        auto const rest = UpToZero(text().substr(static_cast<std::size_t>(start)));
        auto const at = rest.find(argument.text);
        Require(found == (at == Text::npos ? -1 : start + static_cast<int>(at)));
    }
    void FindCharacter() {
        T const ch = DrawCharacter();
        int const start = draws_.Below(Length() + 2);
        int const found = S().Find(ch, start);
        if (start >= Length()) return Require(found == -1);
        auto const rest = UpToZero(text().substr(static_cast<std::size_t>(start))) + T();
        auto const at = rest.find(ch);
        Require(found == (at == Text::npos ? -1 : start + static_cast<int>(at)));
        auto const last = (UpToZero(text()) + T()).rfind(ch);
        Require(S().ReverseFind(ch) == (last == Text::npos ? -1 : static_cast<int>(last)));
    }
    void FindSet() {
        auto const set = DrawArgument();
        auto const seen = UpToZero(text());
        auto const first = seen.find_first_of(set.text);
        auto const other = seen.find_first_not_of(set.text);
        Require(S().FindOneOf(set.pointer) == (first == Text::npos ? -1 : static_cast<int>(first)));
        Require(S().SpanExcluding(set.pointer) == seen.substr(0, first).c_str());
        Require(S().SpanIncluding(set.pointer) ==
                seen.substr(0, std::min(other, seen.size())).c_str());
    }
    void Extract() {
        int const first = draws_.Index(Length());
        int const count = draws_.Index(Length());
        auto const part = text().substr(Clamp(first), static_cast<std::size_t>(std::max(count, 0)));
        String const mid = S().Mid(first, count);
        bool const whole = first <= 0 && static_cast<int>(part.size()) == Length();
        Require(Text(mid.begin(), mid.end()) == Extracted(part, whole));
        Require((mid.c_str() == S().c_str()) == (M().IsNil() || (whole && !M().IsLocked())));
    }
    // The whole of a locked string is copied as a zero-terminated text.
    Text Extracted(Text const& part, bool whole) {
        return whole && M().IsLocked() ? UpToZero(part) : part;
    }
    void Tokenize() {
        auto const delims = DrawArgument();
        int start = draws_.Index(Length());
        int const before = start;
        String const token = S().Tokenize(delims.pointer, start);
        if (before < 0) return Require(token.IsEmpty() && start == before);
        auto const rest = text().substr(Clamp(before));
        if (delims.text.empty() && !rest.empty())
            return Require(Text(token.begin(), token.end()) == Extracted(rest, before == 0) &&
                           start == before);
        auto const isDelimiter = [&delims](T ch) {
            return ch != T() && delims.text.find(ch) != Text::npos;
        };
        auto const begin = std::find_if_not(rest.begin(), rest.end(), isDelimiter);
        if (begin == rest.end()) return Require(token.IsEmpty() && start == -1);
        auto const end =
            std::find_if(begin, rest.end(), [&](T ch) { return ch == T() || isDelimiter(ch); });
        Require(Text(token.begin(), token.end()) == Text(begin, end));
        Require(start == before + static_cast<int>(end - rest.begin()) + 1);
    }
    void CompareTexts() {
        auto const argument = DrawArgument();
        auto const seen = UpToZero(text());
        int const result = S().Compare(argument.pointer);
        int const expected = seen.compare(argument.text);
        Require((result < 0) == (expected < 0) && (result == 0) == (expected == 0));
        Require((S() == argument.pointer) == (seen == argument.text));
        Require((S().CompareNoCase(argument.pointer) == 0) ==
                (Folded(seen) == Folded(argument.text)));
    }

    static Text Folded(Text text) {
        for (T& ch : text)
            if (ch >= T('A') && ch <= T('Z')) ch = static_cast<T>(ch + 32);
        return text;
    }
    std::ptrdiff_t RunLength() { return static_cast<std::ptrdiff_t>(UpToZero(text()).size()); }
    std::size_t Clamp(int index) {
        return static_cast<std::size_t>(std::max(0, std::min(index, Length())));
    }

    using Move = void (Game::*)();
    static std::array<Move, 37> const kMoves;

    Draws draws_;
    std::array<String, kStrings> strings_;
    std::array<Model<T>, kStrings> models_;
    std::deque<Text> own_;
    std::size_t at_ = 0;
    std::size_t from_ = 0;
};

template <typename T>
std::array<typename Game<T>::Move, 37> const Game<T>::kMoves = {{
    &Game::AssignString,
    &Game::AssignText,
    &Game::AssignCharacter,
    &Game::CopyConstruct,
    &Game::MoveAssignTemporary,
    &Game::Swap,
    &Game::Empty,
    &Game::GetBufferAndFill,
    &Game::ReleaseMeasured,
    &Game::Lock,
    &Game::Unlock,
    &Game::FreeExtra,
    &Game::Truncate,
    &Game::SetAt,
    &Game::AppendString,
    &Game::AppendText,
    &Game::AppendCharacter,
    &Game::Join,
    &Game::InsertText,
    &Game::InsertCharacter,
    &Game::Delete,
    &Game::Remove,
    &Game::ReplaceCharacter,
    &Game::ReplaceText,
    &Game::Reverse,
    &Game::FoldCase,
    &Game::TrimSpace,
    &Game::TrimCharacter,
    &Game::TrimSet,
    &Game::Format,
    &Game::FindText,
    &Game::FindCharacter,
    &Game::FindSet,
    &Game::Extract,
    &Game::Tokenize,
    &Game::CompareTexts,
    &Game::AppendString,  // once more, so that texts grow past the 2048 of Format
}};

template <>
void Game<char>::FormatTextAndNumber(char const* text, int number) {
    S().Format("%s|%d", text, number);
}
template <>
void Game<wchar_t>::FormatTextAndNumber(wchar_t const* text, int number) {
    S().Format(L"%ls|%d", text, number);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Game<char>(Draws(data, size)).Play();
    Game<wchar_t>(Draws(data, size)).Play();
    return 0;
}
