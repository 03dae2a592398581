// A locale that writes numbers otherwise.
#ifndef QORUTILS_TESTS_SUPPORT_NUMERIC_LOCALE_H_
#define QORUTILS_TESTS_SUPPORT_NUMERIC_LOCALE_H_

#include <clocale>
#include <stdexcept>
#include <string>

#include "support/made_locale.h"
#include "support/scoped_locale.h"

// While the object lives, the categories LC_NUMERIC and LC_CTYPE are those of the locale, and all
// others those of "C". The decimal point is ','; the digits of the locale are U+0660 to U+0669, as
// bytes B0 to B9; U+2003, byte A0, is white space.
// Not for tests that run threads meanwhile: it changes the environment.
class NumericLocale {
  public:
    NumericLocale() {
        for (int const category : {LC_CTYPE, LC_NUMERIC})
            if (std::setlocale(category, made_.name()) == nullptr)
                throw std::runtime_error(std::string("cannot set the locale ") + made_.name());
    }
    NumericLocale(NumericLocale const&) = delete;
    NumericLocale& operator=(NumericLocale const&) = delete;

  private:
    MadeLocale const made_{"numeric_test",
                           "<U2003> /xa0 em space\n"
                           "<U0660>..<U0669> /xb0 digits\n",
                           "LC_CTYPE\n"
                           "upper <U0041>..<U005A>\n"
                           "lower <U0061>..<U007A>\n"
                           "space <U0009>..<U000D>;<U0020>;<U2003>\n"
                           "digit <U0030>..<U0039>;<U0660>..<U0669>\n"
                           "outdigit <U0660>..<U0669>\n"
                           "END LC_CTYPE\n"
                           "LC_NUMERIC\n"
                           "decimal_point \"<U002C>\"\n"
                           "thousands_sep \"\"\n"
                           "grouping -1\n"
                           "END LC_NUMERIC\n"};
    ScopedLocale const restorer_{"C"};
};

#endif  // QORUTILS_TESTS_SUPPORT_NUMERIC_LOCALE_H_
