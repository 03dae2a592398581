// A locale with Turkish case rules, made for the test: machines seldom have one installed.
#ifndef QORUTILS_TESTS_SUPPORT_TURKISH_LOCALE_H_
#define QORUTILS_TESTS_SUPPORT_TURKISH_LOCALE_H_

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "support/scoped_locale.h"

// While the object lives, the category LC_CTYPE (no other) can be set to name(), if localedef (of
// the runtime's own tools) is there to make it. Its character set has one byte per character:
// ASCII, and four letters more. The lower case of I is dotless.
//
//     byte  character
//     C4    U+00C4, upper case of
//     E4    U+00E4
//     DD    U+0130, upper case of i
//     FD    U+0131, lower case of I
//
// Not for tests that run threads meanwhile: it changes the environment.
class TurkishLocale {
  public:
    TurkishLocale() : directory_(MakeDirectory()) {
        char const* const path = std::getenv("LOCPATH");
        hadPath_ = path != nullptr;
        if (hadPath_) previousPath_ = path;
        WriteCharacterSet();
        WriteDefinition();
        std::string const options =
            " -c -f " + directory_ + "/charset -i " + directory_ + "/source ";
        // Its status says nothing: it is 1 for mere warnings, of what a locale may also define.
        Run("localedef" + options + directory_ + "/" + name() + " >" + directory_ + "/log 2>&1");
        setenv("LOCPATH", directory_.c_str(), 1);
        exists_ = CanBeLoaded();
    }
    ~TurkishLocale() {
        if (hadPath_)
            setenv("LOCPATH", previousPath_.c_str(), 1);
        else
            unsetenv("LOCPATH");
        // A destructor must not throw, and leftovers do no harm.
        if (std::system(("rm -r " + directory_).c_str()) != 0) std::perror("rm");
    }
    TurkishLocale(TurkishLocale const&) = delete;
    TurkishLocale& operator=(TurkishLocale const&) = delete;

    bool exists() const { return exists_; }
    // Plain "turkish" is an alias of another locale on many machines.
    char const* name() const { return "turkish_case"; }

  private:
    static std::string MakeDirectory() {
        char path[] = "/tmp/qorutils_locale_XXXXXX";
        if (mkdtemp(path) == nullptr) throw std::runtime_error("no temporary directory");
        return path;
    }

    static void Run(std::string const& command) {
        if (std::system(command.c_str()) == -1) throw std::runtime_error("no shell");
    }

    bool CanBeLoaded() const {
        ScopedLocale const restorer("C");
        return std::setlocale(LC_CTYPE, name()) != nullptr;
    }

    void WriteCharacterSet() const {
        std::ofstream(directory_ + "/charset") << "<code_set_name> TURKISH\n"
                                                  "<comment_char> %\n"
                                                  "<escape_char> /\n"
                                                  "<mb_cur_min> 1\n"
                                                  "<mb_cur_max> 1\n"
                                                  "CHARMAP\n"
                                                  "<U0000>..<U007F> /x00 control and ASCII\n"
                                                  "<U00C4> /xc4 A with diaeresis\n"
                                                  "<U00E4> /xe4 a with diaeresis\n"
                                                  "<U0130> /xdd I with dot\n"
                                                  "<U0131> /xfd dotless i\n"
                                                  "END CHARMAP\n";
    }

    void WriteDefinition() const {
        std::string toUpper = "(<U0069>,<U0130>);(<U0131>,<U0049>);(<U00E4>,<U00C4>)";
        std::string toLower = "(<U0130>,<U0069>);(<U0049>,<U0131>);(<U00C4>,<U00E4>)";
        for (unsigned letter = 'A'; letter <= 'Z'; ++letter) {
            if (letter == 'I') continue;
            toUpper += Pair(letter + 32, letter);
            toLower += Pair(letter, letter + 32);
        }
        std::ofstream(directory_ + "/source")
            << "LC_CTYPE\n"
               "upper <U0041>..<U005A>;<U00C4>;<U0130>\n"
               "lower <U0061>..<U007A>;<U00E4>;<U0131>\n"
               "toupper "
            << toUpper << "\ntolower " << toLower << "\nEND LC_CTYPE\n";
    }

    static std::string Pair(unsigned from, unsigned to) {
        char text[24];
        std::snprintf(text, sizeof text, ";(<U%04X>,<U%04X>)", from, to);
        return text;
    }

    std::string directory_;
    bool hadPath_ = false;
    std::string previousPath_;
    bool exists_ = false;
};

#endif  // QORUTILS_TESTS_SUPPORT_TURKISH_LOCALE_H_
