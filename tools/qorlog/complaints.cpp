#include "complaints.h"

#include <cstdio>

#include "escaped_text.h"

namespace qorlog {

void Tell(boost::string_ref what) {
    std::string line = "qorlog: ";
    AppendVisible(what, &line);
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void Tell(std::string const& about, std::string const& what) {
    Tell(about + ": " + what);
}

}  // namespace qorlog
