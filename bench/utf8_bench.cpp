// UTF-8 to and from wide characters, into a buffer that is there. The peers that have no UTF-32
// convert to and from the UTF-16 that they work with.

#include <qorutils/text/utf8.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <vector>

#include "cases.h"
#include "peers.h"

#ifdef QORUTILS_BENCH_GLIB
#include <glib.h>
#endif

#ifdef QORUTILS_BENCH_ICU
#include <unicode/ustring.h>
#endif

#ifdef QORUTILS_BENCH_UTFCPP
#include <utf8.h>
#endif

namespace {

struct Script {
    char const* name;
    wchar_t const* sample;
};

constexpr Script kScripts[] = {
    {"ASCII", L"The quick brown fox jumps over the lazy dog, 0123456789 times. "},
    {"Latin", L"Größe, Füße, être naïve, año, señor, Übermut, garçon, smörgåsbord. "},
    {"Cyrillic", L"Съешь же ещё этих мягких французских булок, да выпей чаю. "},
    {"CJK", L"天地玄黄宇宙洪荒日月盈昃辰宿列張寒来暑往秋収冬蔵閏余成歳律呂調陽。"},
    {"emoji", L"😀😃😄😁😆😅🤣😂🙂🙃😉😊😇🥰😍🤩😘😗😚😙"},
};

// About `bytes` bytes of UTF-8, whole characters.
std::wstring WideText(wchar_t const* sample, std::size_t bytes) {
    std::size_t const sampleChars = std::wcslen(sample);
    std::size_t const sampleBytes = do_wcstombs(nullptr, sample, 0);
    std::wstring text;
    for (std::size_t i = 0; i < bytes * sampleChars / sampleBytes; ++i)
        text += sample[i % sampleChars];
    return text;
}

std::string Utf8(std::wstring const& wide) {
    std::string text(do_wcstombs(nullptr, wide.c_str(), 0), '\0');
    do_wcstombs(&text[0], wide.c_str(), static_cast<unsigned int>(text.size()));
    return text;
}

void RegisterDecoders(std::string const& in, std::wstring const& wide) {
    std::string const text = Utf8(wide);
    std::vector<wchar_t> room(text.size() + 1);
    Case("UTF-8 in" + in, "qorutils", [text, room]() mutable {
        return do_mbstowcs(room.data(), text.c_str(), static_cast<unsigned int>(room.size()));
    });
    Case("UTF-8 in" + in, "glibc", [text, room]() mutable {
        std::mbstate_t state{};
        char const* source = text.c_str();
        return std::mbsrtowcs(room.data(), &source, room.size(), &state);
    });
#ifdef QORUTILS_BENCH_ICU
    Case("UTF-8 in" + in, "ICU", [text, to = std::vector<UChar>(text.size() + 1)]() mutable {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(to.data(), static_cast<int32_t>(to.size()), &length, text.data(),
                      static_cast<int32_t>(text.size()), &error);
        return length;
    });
#endif
#ifdef QORUTILS_BENCH_GLIB
    Case("UTF-8 in" + in, "GLib", [text] {
        glong length = 0;
        g_free(g_utf8_to_ucs4(text.data(), static_cast<glong>(text.size()), nullptr, &length,
                              nullptr));
        return length;
    });
#endif
#ifdef QORUTILS_BENCH_QT
    Case("UTF-8 in" + in, "QString",
         [text] { return QString::fromUtf8(text.data(), static_cast<int>(text.size())); });
#endif
#ifdef QORUTILS_BENCH_UTFCPP
    Case("UTF-8 in" + in, "utfcpp", [text, room]() mutable {
        return utf8::utf8to32(text.begin(), text.end(), room.begin()) - room.begin();
    });
#endif
}

void RegisterEncoders(std::string const& in, std::wstring const& wide) {
    std::size_t const size = Utf8(wide).size();
    std::vector<char> room(size + 1);
    Case("UTF-8 out" + in, "qorutils", [wide, room]() mutable {
        return do_wcstombs(room.data(), wide.c_str(), static_cast<unsigned int>(room.size()));
    });
    Case("UTF-8 out" + in, "glibc", [wide, room]() mutable {
        std::mbstate_t state{};
        wchar_t const* source = wide.c_str();
        return std::wcsrtombs(room.data(), &source, room.size(), &state);
    });
#ifdef QORUTILS_BENCH_ICU
    std::vector<UChar> utf16(size + 1);
    int32_t utf16Length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromWCS(utf16.data(), static_cast<int32_t>(utf16.size()), &utf16Length, wide.data(),
                 static_cast<int32_t>(wide.size()), &error);
    Case("UTF-8 out" + in, "ICU", [utf16, utf16Length, room]() mutable {
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        u_strToUTF8(room.data(), static_cast<int32_t>(room.size()), &length, utf16.data(),
                    utf16Length, &status);
        return length;
    });
#endif
#ifdef QORUTILS_BENCH_GLIB
    Case("UTF-8 out" + in, "GLib", [wide] {
        glong length = 0;
        g_free(g_ucs4_to_utf8(reinterpret_cast<gunichar const*>(wide.data()),
                              static_cast<glong>(wide.size()), nullptr, &length, nullptr));
        return length;
    });
#endif
#ifdef QORUTILS_BENCH_QT
    QString const string = QString::fromStdWString(wide);
    Case("UTF-8 out" + in, "QString", [string] { return string.toUtf8(); });
#endif
#ifdef QORUTILS_BENCH_UTFCPP
    Case("UTF-8 out" + in, "utfcpp", [wide, room]() mutable {
        return utf8::utf32to8(wide.begin(), wide.end(), room.begin()) - room.begin();
    });
#endif
}

}  // namespace

int main(int argc, char** argv) {
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) {
        std::fprintf(stderr, "the locale C.UTF-8 is missing: glibc would not convert UTF-8\n");
        return 1;
    }
    for (Script const& script : kScripts) {
        for (std::size_t size : {64u, 4096u, 1u << 20}) {
            std::string const in = std::string("/") + script.name + "/" + SizeName(size);
            std::wstring const wide = WideText(script.sample, size);
            RegisterDecoders(in, wide);
            RegisterEncoders(in, wide);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
