#include <qorutils/fs/qor_ini_file.h>

#include <random>

#include "support/ini_settings.h"
#include "support/scoped_locale.h"
#include "tools/qorini_fixture.h"

namespace {

// Lines that mean something to the settings store, in all orders.
class QoriniRandom : public Qorini {
  protected:
    std::wstring Lines() {
        static wchar_t const* const kLines[] = {
            L"[A]",  L"[B] ", L"[A B]", L"[]]",  L"",    L"",    L"  ",  L"\t",           L"# c",
            L";[A]", L"/",    L"k=1",   L"l= 2", L"m =", L"k=3", L"0==", L"\u03B1=\u20AC"};
        static wchar_t const* const kBadLines[] = {L"[", L"[]", L" k=1", L"k", L"_k=1", L"=1"};
        std::wstring text = L"# c\n";
        for (unsigned count = Below(12); count > 0; --count) {
            bool const isBad = Below(40) == 0;
            text += isBad ? Any(kBadLines) : Any(kLines);
            text += Any(kLineEnds_);
        }
        return text + (Below(2) == 0 ? L"k=9" : L"");
    }

    std::string Bytes(std::wstring const& text, bool isWide) const {
        return isWide ? WideBytes(text) : qor_text::CQorStringT<char>(text.c_str()).c_str();
    }

    unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    template <std::size_t n>
    wchar_t const* Any(wchar_t const* const (&texts)[n]) {
        return texts[Below(n)];
    }

  private:
    ScopedLocale const utf8_{"C.UTF-8"};
    wchar_t const* const kLineEnds_[3] = {L"\n", L"\r\n", L"\r"};
    std::mt19937 random_{20240229};
};

TEST_F(QoriniRandom, ChecksAsRefusedWhatTheStoreRefuses) {
    constexpr int kFiles = 120;
    std::vector<std::string> arguments{"check"};
    std::string expected;
    for (int i = 0; i < kFiles; ++i) {
        std::string const name = "f" + std::to_string(i);
        directory_.MakeFile(name, Bytes(Lines(), i % 2 == 0));
        arguments.push_back(Path(name));
        expected += IniRead(directory_.WidePath(name)).succeeded ? '.' : 'R';
    }
    std::string const findings = Run(arguments).out;
    std::string found;
    for (int i = 0; i < kFiles; ++i) {
        std::string const name = "\n" + arguments[static_cast<std::size_t>(i) + 1] + ":";
        bool isRefused = false;
        for (std::size_t at = ("\n" + findings).find(name); at != std::string::npos;
             at = ("\n" + findings).find(name, at + 1))
            isRefused |= findings.find(": refused:", at) < findings.find('\n', at);
        found += isRefused ? 'R' : '.';
    }
    EXPECT_EQ(expected, found);
}

TEST_F(QoriniRandom, ChangesNothingButTheOneSetting) {
    for (int i = 0; i < 24; ++i) {
        bool const isWide = i % 2 == 0;
        std::string const content = Bytes(Lines(), isWide);
        directory_.MakeFile("f", content);
        IniRead const before(directory_.WidePath("f"));
        if (!before.succeeded) continue;

        SettingsMap expected = before.settings;
        expected[L"A"][L"k"] = L"new";
        ExpectOut("", {"set", Path("f"), "A", "k", "new"});
        IniRead const set(directory_.WidePath("f"));
        EXPECT_EQ(expected, set.settings) << content;
        EXPECT_EQ(before.encoding, set.encoding);

        expected[L"A"].erase(L"k");
        if (expected[L"A"].empty()) expected.erase(L"A");
        ExpectOut("", {"unset", Path("f"), "A", "k"});
        EXPECT_EQ(expected, IniRead(directory_.WidePath("f")).settings) << content;
        directory_.Remove("f");
    }
}

}  // namespace
