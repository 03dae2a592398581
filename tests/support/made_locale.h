// A locale made for the test: machines seldom have the one installed that a test needs.
#ifndef QORUTILS_TESTS_SUPPORT_MADE_LOCALE_H_
#define QORUTILS_TESTS_SUPPORT_MADE_LOCALE_H_

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "support/scoped_locale.h"
#include "support/scoped_variable.h"

// While the object lives, the locale can be set by its name, in the categories that its definition
// gives, LC_CTYPE among them, and in no other. Its character set has one byte per character: ASCII,
// and what `characters` adds. Both texts are as localedef, a program of the C library, reads them.
// The constructor throws what localedef said if it makes no locale of them.
// Not for tests that run threads meanwhile: it changes the environment.
class MadeLocale {
  public:
    MadeLocale(std::string const& name, std::string const& characters,
               std::string const& definition)
        : name_(name), path_("LOCPATH", directory_.path.c_str()) {
        Write("charset", "<code_set_name> " + name +
                             "\n<comment_char> %\n<escape_char> /\n<mb_cur_min> 1\n<mb_cur_max> 1\n"
                             "CHARMAP\n<U0000>..<U007F> /x00 control and ASCII\n" +
                             characters + "END CHARMAP\n");
        Write("source", definition);
        // Its status says nothing: it is 1 for mere warnings, of what a locale may also define.
        int const status =
            std::system(("cd " + directory_.path + " && localedef -c -f charset -i source ./" +
                         name + " >log 2>&1")
                            .c_str());
        if (status == -1 || !CanBeLoaded())
            throw std::runtime_error("cannot make the locale " + name + ": " + Log());
    }
    MadeLocale(MadeLocale const&) = delete;
    MadeLocale& operator=(MadeLocale const&) = delete;

    char const* name() const { return name_.c_str(); }

  private:
    struct Directory {
        Directory() : path("/tmp/qorutils_locale_XXXXXX") {
            if (mkdtemp(&path[0]) == nullptr) throw std::runtime_error("no temporary directory");
        }
        ~Directory() {
            // A destructor must not throw, and leftovers do no harm.
            if (std::system(("rm -r " + path).c_str()) != 0) std::perror("rm");
        }
        Directory(Directory const&) = delete;
        Directory& operator=(Directory const&) = delete;

        std::string path;
    };

    void Write(char const* file, std::string const& content) const {
        std::ofstream(directory_.path + "/" + file) << content;
    }

    std::string Log() const {
        std::ostringstream log;
        log << std::ifstream(directory_.path + "/log").rdbuf();
        return log.str();
    }

    bool CanBeLoaded() const {
        ScopedLocale const restorer("C");
        return std::setlocale(LC_CTYPE, name()) != nullptr;
    }

    std::string const name_;
    Directory const directory_;
    ScopedVariable const path_;
};

#endif  // QORUTILS_TESTS_SUPPORT_MADE_LOCALE_H_
