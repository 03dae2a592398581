#include "complaints.h"

#include <cstdio>

#include "visible_text.h"

namespace qorlog {

void Tell(boost::string_ref about, boost::string_ref what) {
    std::string line = "qorlog: ";
    AppendVisible(about, &line);
    line += ": " + what.to_string() + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

std::string Counted(std::uint64_t number, char const* thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

}  // namespace qorlog
