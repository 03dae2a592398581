// A locale with Turkish case rules.
#ifndef QORUTILS_TESTS_SUPPORT_TURKISH_LOCALE_H_
#define QORUTILS_TESTS_SUPPORT_TURKISH_LOCALE_H_

#include <cstdio>
#include <string>

#include "support/made_locale.h"

// While the object lives, the category LC_CTYPE (no other) can be set to name(). Its character set
// has one byte per character: ASCII, and four letters more. The lower case of I is dotless.
//
//     byte  character
//     C4    U+00C4, upper case of
//     E4    U+00E4
//     DD    U+0130, upper case of i
//     FD    U+0131, lower case of I
//
// Not for tests that run threads meanwhile: it changes the environment.
class TurkishLocale : public MadeLocale {
  public:
    // Plain "turkish" is an alias of another locale on many machines.
    TurkishLocale() : MadeLocale("turkish_case", Characters(), Definition()) {}

  private:
    static std::string Characters() {
        return "<U00C4> /xc4 A with diaeresis\n"
               "<U00E4> /xe4 a with diaeresis\n"
               "<U0130> /xdd I with dot\n"
               "<U0131> /xfd dotless i\n";
    }

    static std::string Definition() {
        std::string toUpper = "(<U0069>,<U0130>);(<U0131>,<U0049>);(<U00E4>,<U00C4>)";
        std::string toLower = "(<U0130>,<U0069>);(<U0049>,<U0131>);(<U00C4>,<U00E4>)";
        for (unsigned letter = 'A'; letter <= 'Z'; ++letter) {
            if (letter == 'I') continue;
            toUpper += Pair(letter + 32, letter);
            toLower += Pair(letter, letter + 32);
        }
        return "LC_CTYPE\n"
               "upper <U0041>..<U005A>;<U00C4>;<U0130>\n"
               "lower <U0061>..<U007A>;<U00E4>;<U0131>\n"
               "toupper " +
               toUpper + "\ntolower " + toLower + "\nEND LC_CTYPE\n";
    }

    static std::string Pair(unsigned from, unsigned to) {
        char text[24];
        std::snprintf(text, sizeof text, ";(<U%04X>,<U%04X>)", from, to);
        return text;
    }
};

#endif  // QORUTILS_TESTS_SUPPORT_TURKISH_LOCALE_H_
