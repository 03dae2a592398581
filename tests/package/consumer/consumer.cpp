#include <qorutils/qorutils.h>

#include <cstddef>
#include <cstring>

namespace {

template <typename T>
bool StringsWork(T const* text) {
    using String = qor_text::CQorStringT<T>;
    String const empty;
    String appended;
    appended += empty;
    appended += appended;
    appended += text;
    String const copy = appended;
    appended += copy.c_str() + 1;
    appended = empty;
    return appended.IsEmpty() && copy == text && copy + copy == String(text) + text;
}

// Each operator in every combination of strings, texts and characters of both types.
template <typename T>
bool OperatorsWork(T const* text, T letter) {
    using String = qor_text::CQorStringT<T>;
    String const s(text);
    String joined = s + s + text + letter + 'c' + L'w';
    joined = text + joined;
    joined = letter + ('c' + (L'w' + joined));
    joined += 'c';
    joined += L'w';
    bool const ordered = s == text && text == s && !(s != text) && !(text != s) && s <= text &&
                         text <= s && s >= text && text >= s && !(s < text) && !(text > s) &&
                         joined < s && s > joined && joined <= s && s >= joined;
    std::ptrdiff_t const last = joined.GetLength() - 1;
    return ordered && joined[last] == T('w') && joined[static_cast<std::size_t>(last)] == T('w') &&
           joined[0u] == letter;
}

bool FormatWorks() {
    qor_text::CQorStringT<char> text;
    text.Format("%d %s", 7, "days");
    text.MakeUpper();
    return text == "7 DAYS" && text.Find("DAYS") == 2;
}

bool ConvertersWork() {
    char bytes[8];
    return do_wcstombs(bytes, L"a\u20AC", sizeof bytes) == 4 &&
           std::strcmp(bytes, "a\xE2\x82\xAC") == 0;
}

bool FileNamesWork() {
    return qor::file_names::ExtractFileNameExtFromPathName(L"/tmp/name.txt") == L"txt";
}

}  // namespace

int main() {
    bool const all_work = StringsWork("text") && StringsWork(L"text") &&
                          OperatorsWork("text", 'a') && OperatorsWork(L"text", L'a') &&
                          FormatWorks() && ConvertersWork() && FileNamesWork();
    return all_work ? 0 : 1;
}
