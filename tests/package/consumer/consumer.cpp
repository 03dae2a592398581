#include <qorutils/qorutils.h>

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
    bool const all_work = StringsWork("text") && StringsWork(L"text") && FormatWorks() &&
                          ConvertersWork() && FileNamesWork();
    return all_work ? 0 : 1;
}
