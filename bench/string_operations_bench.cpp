// Searching, replacing, trimming, splitting, case and formatting.

#include <qorutils/text/qor_string.h>
#include <strings.h>

#include <cctype>
#include <cwctype>

#include "cases.h"
#include "peers.h"

namespace {

constexpr std::size_t kSizes[] = {64, 4096, 1 << 20};

int Fold(char c) {
    return std::toupper(static_cast<unsigned char>(c));
}
wint_t Fold(wchar_t c) {
    return std::towupper(static_cast<wint_t>(c));
}

int NoCase(char const* a, char const* b) {
    return strcasecmp(a, b);
}
int NoCase(wchar_t const* a, wchar_t const* b) {
    return wcscasecmp(a, b);
}

char const* AnyOf(char const* text, char const* set) {
    return std::strpbrk(text, set);
}
wchar_t const* AnyOf(wchar_t const* text, wchar_t const* set) {
    return std::wcspbrk(text, set);
}

template <typename String>
String ReplaceAll(String const& text, String const& from, String const& to) {
    String result;
    std::size_t copied = 0;
    for (std::size_t at; (at = text.find(from, copied)) != String::npos;
         copied = at + from.size()) {
        result.append(text, copied, at - copied);
        result += to;
    }
    result.append(text, copied, String::npos);
    return result;
}

// As callers write them: literals.
int FindAbsent(qor_text::CQorStringT<char> const& text) {
    return text.Find("lengthy ");
}
int FindAbsent(qor_text::CQorStringT<wchar_t> const& text) {
    return text.Find(L"lengthy ");
}
std::size_t FindAbsent(std::string const& text) {
    return text.find("lengthy ");
}
std::size_t FindAbsent(std::wstring const& text) {
    return text.find(L"lengthy ");
}

template <typename T>
void RegisterSearches(std::string const& type, std::size_t size) {
    auto const text = Words<std::basic_string<T>>(size);
    qor_text::CQorStringT<T> const qor(text.c_str());
    auto const set = Literal<T>("z|#Z");
    std::string const in = "/" + type + "/" + SizeName(size);

    Case("Find char" + in, "qorutils", [qor] { return qor.Find(T('z')); });
    Case("Find char" + in, "std", [text] { return text.find(T('z')); });
    Case("Find text" + in, "qorutils", [qor] { return FindAbsent(qor); });
    Case("Find text" + in, "std", [text] { return FindAbsent(text); });
    Case("ReverseFind" + in, "qorutils", [qor] { return qor.ReverseFind(T('z')); });
    Case("ReverseFind" + in, "std", [text] { return text.rfind(T('z')); });
    Case("FindOneOf" + in, "qorutils", [qor, set] { return qor.FindOneOf(set.c_str()); });
    Case("FindOneOf" + in, "std", [text, set] { return text.find_first_of(set); });
    Case("FindOneOf" + in, "C library", [qor, set] { return AnyOf(qor.c_str(), set.c_str()); });
}

struct Replacement {
    char const* name;
    char const* from;
    char const* to;
};

constexpr Replacement kReplacements[] = {
    {"growing", "the", "another"},
    {"shrinking", "buffer ", "b"},
    {"same size", "shared", "common"},
};

template <typename T>
void RegisterReplaces(std::string const& type, std::size_t size) {
    auto const text = Words<std::basic_string<T>>(size);
    qor_text::CQorStringT<T> const qor(text.c_str());
    for (Replacement const& r : kReplacements) {
        auto const from = Literal<T>(r.from), to = Literal<T>(r.to);
        std::string const group =
            std::string("Replace ") + r.name + "/" + type + "/" + SizeName(size);
        Case(group, "qorutils", [qor, from, to] {
            qor_text::CQorStringT<T> changed(qor);
            changed.Replace(from.c_str(), to.c_str());
            return changed;
        });
        Case(group, "std", [text, from, to] { return ReplaceAll(text, from, to); });
    }
}

template <typename T>
void RegisterTrim(std::string const& in, std::basic_string<T> const& text) {
    auto const spaces = Literal<T>("        ");
    auto const padded = spaces + text + spaces;
    Case("Trim" + in, "qorutils", [padded] {
        qor_text::CQorStringT<T> line(padded.c_str());
        line.Trim();
        return line;
    });
    Case("Trim" + in, "std", [padded] {
        std::basic_string<T> line(padded.c_str());
        line.erase(line.find_last_not_of(T(' ')) + 1);
        line.erase(0, line.find_first_not_of(T(' ')));
        return line;
    });
}

template <typename T>
void RegisterTokenize(std::string const& in, std::basic_string<T> const& text) {
    qor_text::CQorStringT<T> const qor(text.c_str());
    auto const delimiters = Literal<T>(" ,");
    Case("Tokenize" + in, "qorutils", [qor, delimiters] {
        int length = 0;
        for (int start = 0; start != -1;)
            length += qor.Tokenize(delimiters.c_str(), start).GetLength();
        return length;
    });
    Case("Tokenize" + in, "std", [text, delimiters] {
        std::size_t length = 0;
        std::size_t begin = text.find_first_not_of(delimiters);
        while (begin != std::basic_string<T>::npos) {
            std::size_t const end = text.find_first_of(delimiters, begin);
            auto token = text.substr(begin, end - begin);
            benchmark::DoNotOptimize(token);
            length += token.size();
            begin = text.find_first_not_of(delimiters, end);
        }
        return length;
    });
}

template <typename T>
void RegisterCaseFolding(std::string const& in, std::basic_string<T> const& text) {
    qor_text::CQorStringT<T> const qor(text.c_str());
    Case("MakeUpper" + in, "qorutils", [qor] {
        qor_text::CQorStringT<T> folded(qor);
        folded.MakeUpper();
        return folded;
    });
    Case("MakeUpper" + in, "std", [text] {
        std::basic_string<T> folded(text);
        for (T& c : folded) c = static_cast<T>(Fold(c));
        return folded;
    });

    qor_text::CQorStringT<T> upper(qor);
    upper.MakeUpper();
    Case("CompareNoCase" + in, "qorutils", [qor, upper] { return qor.CompareNoCase(upper); });
    Case("CompareNoCase" + in, "C library", [qor, upper] { return NoCase(qor, upper); });
}

template <typename T>
void RegisterEdits(std::string const& type, std::size_t size) {
    auto const text = Words<std::basic_string<T>>(size);
    std::string const in = "/" + type + "/" + SizeName(size);
    RegisterTrim(in, text);
    RegisterTokenize(in, text);
    RegisterCaseFolding(in, text);
}

void RegisterFormats() {
    for (std::size_t size : {16u, 200u, 1500u}) {
        auto const text = Words<std::string>(size);
        std::string const group = "Format/char/" + SizeName(size);
        Case(group, "qorutils", [text] {
            qor_text::CQorStringT<char> line;
            line.Format("%d items, %5.2f: %s", 42, 2.5, text.c_str());
            return line;
        });
        Case(group, "formatting twice", [text] {
            int const length =
                std::snprintf(nullptr, 0, "%d items, %5.2f: %s", 42, 2.5, text.c_str());
            std::string line(static_cast<std::size_t>(length), '\0');
            std::snprintf(&line[0], line.size() + 1, "%d items, %5.2f: %s", 42, 2.5, text.c_str());
            return line;
        });
        auto const wide = Words<std::wstring>(size);
        Case("Format/wchar_t/" + SizeName(size), "qorutils", [wide] {
            qor_text::CQorStringT<wchar_t> line;
            line.Format(L"%d items, %5.2f: %ls", 42, 2.5, wide.c_str());
            return line;
        });
        Case("Format/wchar_t/" + SizeName(size), "formatting twice", [wide] {
            wchar_t probe[2048];
            int const length =
                std::swprintf(probe, 2048, L"%d items, %5.2f: %ls", 42, 2.5, wide.c_str());
            std::wstring line(static_cast<std::size_t>(length), L'\0');
            std::swprintf(&line[0], line.size() + 1, L"%d items, %5.2f: %ls", 42, 2.5,
                          wide.c_str());
            return line;
        });
        // Without a number that only the C library writes.
        std::string const whole = "Format whole numbers/wchar_t/" + SizeName(size);
        Case(whole, "qorutils", [wide] {
            qor_text::CQorStringT<wchar_t> line;
            line.Format(L"%d of %ls received", 42, wide.c_str());
            return line;
        });
        Case(whole, "formatting once", [wide] {
            wchar_t text[2048];
            int const length = std::swprintf(text, 2048, L"%d of %ls received", 42, wide.c_str());
            return std::wstring(text, static_cast<std::size_t>(length));
        });
    }
}

#ifdef QORUTILS_BENCH_QT
void RegisterQt(std::size_t size) {
    auto const text = QString::fromStdString(Words<std::string>(size));
    std::string const in = "/wchar_t/" + SizeName(size);
    auto const absent = QString::fromLatin1("lengthy ");
    Case("Find char" + in, "QString", [text] { return text.indexOf(QLatin1Char('z')); });
    Case("Find text" + in, "QString", [text, absent] { return text.indexOf(absent); });
    Case("ReverseFind" + in, "QString", [text] { return text.lastIndexOf(QLatin1Char('z')); });
    for (Replacement const& r : kReplacements) {
        auto const from = QString::fromLatin1(r.from), to = QString::fromLatin1(r.to);
        Case(std::string("Replace ") + r.name + in, "QString", [text, from, to] {
            QString changed(text);
            changed.replace(from, to);
            return changed;
        });
    }
    QString const padded = QString(8, QLatin1Char(' ')) + text + QString(8, QLatin1Char(' '));
    Case("Trim" + in, "QString", [padded] {
        QString line(padded.constData());
        return std::move(line).trimmed();
    });
    Case("Tokenize" + in, "QString",
         [text] { return text.split(QLatin1Char(' '), Qt::SkipEmptyParts).size(); });
    Case("MakeUpper" + in, "QString", [text] { return text.toUpper(); });
    QString const upper = text.toUpper();
    Case("CompareNoCase" + in, "QString",
         [text, upper] { return text.compare(upper, Qt::CaseInsensitive); });
}

void RegisterQtFormats() {
    for (std::size_t size : {16u, 200u, 1500u}) {
        auto const text = Words<std::string>(size);
        Case("Format/char/" + SizeName(size), "QString",
             [text] { return QString::asprintf("%d items, %5.2f: %s", 42, 2.5, text.c_str()); });
    }
}
#endif

#ifdef QORUTILS_BENCH_WX
void RegisterWx(std::size_t size) {
    wxString const text(Words<std::wstring>(size));
    std::string const in = "/wchar_t/" + SizeName(size);
    Case("Find char" + in, "wxString", [text] { return text.Find(L'z'); });
    Case("Find text" + in, "wxString", [text] { return text.Find(L"lengthy "); });
    Case("ReverseFind" + in, "wxString", [text] { return text.Find(L'z', true); });
    Case("FindOneOf" + in, "wxString", [text] { return text.find_first_of(L"z|#Z"); });
    for (Replacement const& r : kReplacements) {
        wxString const from(r.from), to(r.to);
        Case(std::string("Replace ") + r.name + in, "wxString", [text, from, to] {
            wxString changed(text);
            changed.Replace(from, to);
            return changed;
        });
    }
    wxString const padded = wxString(L' ', 8) + text + wxString(L' ', 8);
    Case("Trim" + in, "wxString", [padded] {
        wxString line(padded.wc_str());
        line.Trim(true).Trim(false);
        return line;
    });
    Case("Tokenize" + in, "wxString", [text] {
        std::size_t length = 0;
        wxStringTokenizer tokens(text, L" ,", wxTOKEN_STRTOK);
        while (tokens.HasMoreTokens()) length += tokens.GetNextToken().length();
        return length;
    });
    Case("MakeUpper" + in, "wxString", [text] { return text.Upper(); });
    wxString const upper = text.Upper();
    Case("CompareNoCase" + in, "wxString", [text, upper] { return text.CmpNoCase(upper); });
}

void RegisterWxFormats() {
    for (std::size_t size : {16u, 200u, 1500u}) {
        auto const text = Words<std::wstring>(size);
        Case("Format/wchar_t/" + SizeName(size), "wxString",
             [text] { return wxString::Format(L"%d items, %5.2f: %ls", 42, 2.5, text.c_str()); });
        Case("Format whole numbers/wchar_t/" + SizeName(size), "wxString",
             [text] { return wxString::Format(L"%d of %ls received", 42, text.c_str()); });
    }
}
#endif

}  // namespace

int main(int argc, char** argv) {
    for (std::size_t size : kSizes) {
        RegisterSearches<char>("char", size);
        RegisterSearches<wchar_t>("wchar_t", size);
        RegisterReplaces<char>("char", size);
        RegisterReplaces<wchar_t>("wchar_t", size);
        RegisterEdits<char>("char", size);
        RegisterEdits<wchar_t>("wchar_t", size);
#ifdef QORUTILS_BENCH_QT
        RegisterQt(size);
#endif
#ifdef QORUTILS_BENCH_WX
        RegisterWx(size);
#endif
    }
    RegisterFormats();
#ifdef QORUTILS_BENCH_QT
    RegisterQtFormats();
#endif
#ifdef QORUTILS_BENCH_WX
    RegisterWxFormats();
#endif
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
