// Copying, passing and appending.

#include <qorutils/text/qor_string.h>

#include <atomic>
#include <cstring>

#include "cases.h"
#include "peers.h"

namespace {

template <typename String>
__attribute__((noinline)) std::size_t Pass(String s) {
    benchmark::DoNotOptimize(s);
    return 0;
}

template <typename String>
void CopyCases(std::string const& size, char const* subject, String const& text) {
    Case("copy/" + size, subject, [text] { return String(text); });
    Case("pass/" + size, subject, [text] { return Pass(text); });
}

// What the sharing rule itself costs: the count goes up, and down with a look at what is left.
std::atomic<int> references(1);

int TwoAtomics() {
    references.fetch_add(1);
    benchmark::ClobberMemory();
    return references.fetch_sub(1);
}

template <typename T>
void RegisterCopies(std::string const& size, std::size_t length) {
    auto const text = Words<std::basic_string<T>>(length);
    CopyCases(size, "qorutils", qor_text::CQorStringT<T>(text.c_str()));
    CopyCases(size, "std", text);
    Case("copy/" + size, "floor: two atomics", TwoAtomics);
    Case("pass/" + size, "floor: two atomics", TwoAtomics);
}

constexpr int kAppends = 1000;

template <typename T>
void RegisterAppends(std::string const& type) {
    using Qor = qor_text::CQorStringT<T>;
    using Std = std::basic_string<T>;
    auto const piece = Literal<T>("sixteen letters.");
    std::size_t const room = kAppends * piece.size();

    Qor qor;
    qor.GetBuffer(static_cast<int>(room));
    Case("append char, room/" + type, "qorutils", [qor, room]() mutable {
        qor.GetBuffer(static_cast<int>(room));
        qor.ReleaseBuffer(0);
        for (int i = 0; i < kAppends; ++i) qor += T('x');
        return qor.GetLength();
    });
    Case("append text, room/" + type, "qorutils", [qor, room, piece]() mutable {
        qor.GetBuffer(static_cast<int>(room));
        qor.ReleaseBuffer(0);
        for (int i = 0; i < kAppends; ++i) qor += piece.c_str();
        return qor.GetLength();
    });

    Qor const qorPiece(piece.c_str());
    Case("append string, room/" + type, "qorutils", [qor, room, qorPiece]() mutable {
        qor.GetBuffer(static_cast<int>(room));
        qor.ReleaseBuffer(0);
        for (int i = 0; i < kAppends; ++i) qor += qorPiece;
        return qor.GetLength();
    });

    Std standard;
    Case("append string, room/" + type, "std", [standard, room, piece]() mutable {
        standard.reserve(room);
        standard.clear();
        for (int i = 0; i < kAppends; ++i) standard += piece;
        return standard.size();
    });
    Case("append char, room/" + type, "std", [standard, room]() mutable {
        standard.reserve(room);
        standard.clear();
        for (int i = 0; i < kAppends; ++i) standard += T('x');
        return standard.size();
    });
    Case("append text, room/" + type, "std", [standard, room, piece]() mutable {
        standard.reserve(room);
        standard.clear();
        for (int i = 0; i < kAppends; ++i) standard += piece.c_str();
        return standard.size();
    });

    for (std::size_t size : {64u, 4096u}) {
        auto const text = Words<Std>(size);
        std::string const group = "append, no room/" + type + "/" + SizeName(size);
        Case(group, "qorutils", [text] {
            Qor longer(text.c_str(), static_cast<int>(text.size()));
            longer += T('x');
            return longer;
        });
        Case(group, "floor: exact blocks", [text] {
            std::size_t const bytes = text.size() * sizeof(T);
            char* const block = static_cast<char*>(::operator new[](bytes + sizeof(T) + 12));
            std::memcpy(block + 12, text.data(), bytes);
            benchmark::DoNotOptimize(block);
            char* const longer = static_cast<char*>(::operator new[](bytes + 2 * sizeof(T) + 12));
            std::memcpy(longer + 12, block + 12, bytes);
            benchmark::DoNotOptimize(longer);
            ::operator delete[](block);
            ::operator delete[](longer);
            return 0;
        });
        Case(group, "std", [text] {
            Std longer(text);
            longer += T('x');
            return longer;
        });
    }
}

#ifdef QORUTILS_BENCH_QT
void RegisterQt() {
    for (std::size_t size : {64u, 4096u}) {
        auto const text = QString::fromStdString(Words<std::string>(size));
        CopyCases("wchar_t/" + SizeName(size), "QString", text);
        Case("append, no room/wchar_t/" + SizeName(size), "QString", [text] {
            QString longer(text.constData(), text.size());
            longer += QLatin1Char('x');
            return longer;
        });
    }
    auto const piece = QString::fromLatin1("sixteen letters.");
    QString string;
    Case("append char, room/wchar_t", "QString", [string]() mutable {
        string.reserve(16 * kAppends);
        string.resize(0);
        for (int i = 0; i < kAppends; ++i) string += QLatin1Char('x');
        return string.size();
    });
    Case("append string, room/wchar_t", "QString", [string, piece]() mutable {
        string.reserve(16 * kAppends);
        string.resize(0);
        for (int i = 0; i < kAppends; ++i) string += piece;
        return string.size();
    });
}
#endif

#ifdef QORUTILS_BENCH_WX
void RegisterWx() {
    for (std::size_t size : {64u, 4096u}) {
        wxString const text(Words<std::wstring>(size));
        CopyCases("wchar_t/" + SizeName(size), "wxString", text);
        Case("append, no room/wchar_t/" + SizeName(size), "wxString", [text] {
            wxString longer(text);  // a copy of the characters
            longer += L'x';
            return longer;
        });
    }
    wxString string;
    Case("append char, room/wchar_t", "wxString", [string]() mutable {
        string.reserve(16 * kAppends);
        string.Truncate(0);
        for (int i = 0; i < kAppends; ++i) string += L'x';
        return string.length();
    });
    Case("append text, room/wchar_t", "wxString", [string]() mutable {
        string.reserve(16 * kAppends);
        string.Truncate(0);
        for (int i = 0; i < kAppends; ++i) string += L"sixteen letters.";
        return string.length();
    });
}
#endif

}  // namespace

int main(int argc, char** argv) {
    for (std::size_t size : {64u, 4096u}) {
        RegisterCopies<char>("char/" + SizeName(size), size);
        RegisterCopies<wchar_t>("wchar_t/" + SizeName(size), size);
    }
    RegisterAppends<char>("char");
    RegisterAppends<wchar_t>("wchar_t");
#ifdef QORUTILS_BENCH_QT
    RegisterQt();
#endif
#ifdef QORUTILS_BENCH_WX
    RegisterWx();
#endif
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
