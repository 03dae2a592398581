// The first byte of an input tells which pieces of a path are null, the rest is five texts, each up
// to a zero: a path, and the pieces. All is compared with the rules transcribed over standard
// strings.

#include <qorutils/fs/cfile.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "require.h"

namespace {

using base::CFile;
using String = qor_text::CQorStringT<wchar_t>;

constexpr std::size_t kLargestInput = 4096;

bool IsSame(std::wstring const& expected, String const& found) {
    return expected == std::wstring(found.begin(), found.end());
}

// ---- The rules ----

std::wstring WithBackslashes(std::wstring text) {
    for (wchar_t& c : text)
        if (c == L'/') c = L'\\';
    return text;
}

struct Pieces {
    std::wstring drive, dir, name, ext;
};

// Where there is none, the text begins behind its end.
std::size_t BehindLastSeparator(std::wstring const& text) {
    std::size_t const separator = text.rfind(L'\\');
    return separator == std::wstring::npos ? 0 : separator + 1;
}

Pieces Split(std::wstring const& path) {
    Pieces pieces;
    std::wstring rest = WithBackslashes(path);
    std::size_t const colon = rest.find(L':');
    if (colon != std::wstring::npos) {
        pieces.drive = rest.substr(0, colon + 1);
        rest.erase(0, colon + 1);
    }
    std::size_t const dot = rest.rfind(L'.');
    if (dot != std::wstring::npos && dot >= BehindLastSeparator(rest)) {
        pieces.ext = rest.substr(dot);
        rest.erase(dot);
    }
    pieces.name = rest.substr(BehindLastSeparator(rest));
    pieces.dir = rest.substr(0, BehindLastSeparator(rest));
    return pieces;
}

void Append(std::wstring& path, wchar_t const* piece) {
    if (piece == nullptr) return;
    if (!path.empty()) path += L'\\';
    path += piece;
}

std::wstring Make(wchar_t const* drive, wchar_t const* dir, wchar_t const* name,
                  wchar_t const* ext) {
    std::wstring path = drive == nullptr ? L"" : drive;
    Append(path, dir);
    Append(path, name);
    if (ext != nullptr && *ext != L'\0') {
        if (*ext != L'.') path += L'.';
        path += ext;
    }
    path = WithBackslashes(path);
    for (std::size_t i; (i = path.find(L"\\\\")) != std::wstring::npos;) path.erase(i, 1);
    return path;
}

std::wstring Update(std::wstring const& path, wchar_t const* newName) {
    if (path.empty()) return newName == nullptr ? L"" : newName;
    Pieces const pieces = Split(path);
    return Make(pieces.drive.c_str(), pieces.dir.c_str(), newName, nullptr);
}

// ---- Checks ----

void CheckSplit(std::wstring const& path) {
    Pieces const expected = Split(path);
    String drive(L"old"), dir(L"old"), name(L"old"), ext(L"old");
    CFile::SplitPath(path.c_str(), drive, dir, name, ext);
    Require(IsSame(expected.drive, drive));
    Require(IsSame(expected.dir, dir));
    Require(IsSame(expected.name, name));
    Require(IsSame(expected.ext, ext));
    Require(IsSame(WithBackslashes(path), drive + dir + name + ext));

    String source(path.c_str());
    CFile::SplitPath(source, drive, source, name, ext);
    Require(IsSame(expected.drive, drive));
    Require(IsSame(expected.dir, source));
    Require(IsSame(expected.name, name));
    Require(IsSame(expected.ext, ext));
}

void CheckMake(wchar_t const* drive, wchar_t const* dir, wchar_t const* name, wchar_t const* ext) {
    std::wstring const expected = Make(drive, dir, name, ext);
    String path(L"old");
    CFile::MakePath(path, drive, dir, name, ext);
    Require(IsSame(expected, path));
    Require(path.Find(L"\\\\") == -1 && path.Find(L'/') == -1);

    String result(name);
    CFile::MakePath(result, drive, dir, name == nullptr ? nullptr : result.c_str(), ext);
    Require(IsSame(expected, result));
}

void CheckUpdate(std::wstring const& path, wchar_t const* newName) {
    std::wstring const expected = Update(path, newName);
    String result(L"old");
    CFile::UpdateFileName(path.c_str(), newName, result);
    Require(IsSame(expected, result));
    CFile::UpdateFileName(result = path.c_str(), newName, result);
    Require(IsSame(expected, result));
    result = newName;
    CFile::UpdateFileName(path.c_str(), newName == nullptr ? nullptr : result.c_str(), result);
    Require(IsSame(expected, result));
}

// ---- The input ----

// A byte is the character of that code, but the last ones are separators, and -1.
class Texts {
  public:
    Texts(std::uint8_t const* bytes, std::size_t n) : next_(bytes), end_(bytes + n) {}

    std::wstring Next() {
        wchar_t const others[] = {L'\\', L'/', L':', L'.', -1};
        std::wstring text;
        for (; next_ < end_ && *next_ != 0; ++next_)
            text += *next_ < 251 ? static_cast<wchar_t>(*next_) : others[*next_ - 251];
        if (next_ < end_) ++next_;
        return text;
    }

  private:
    std::uint8_t const* next_;
    std::uint8_t const* end_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size == 0 || size > kLargestInput) return 0;
    Texts texts(input + 1, size - 1);
    std::wstring const path = texts.Next();
    std::wstring pieces[4];
    wchar_t const* given[4];
    for (int i = 0; i < 4; ++i) {
        pieces[i] = texts.Next();
        given[i] = (input[0] >> i & 1) != 0 ? nullptr : pieces[i].c_str();
    }
    CheckSplit(path);
    CheckMake(given[0], given[1], given[2], given[3]);
    CheckUpdate(path, given[2]);
    return 0;
}
