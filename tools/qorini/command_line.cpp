#include "command_line.h"

#include <qorutils/export.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <sstream>

#include <boost/program_options.hpp>

namespace qorini {

namespace {

namespace po = boost::program_options;

struct Command {
    char const* name;
    char const* synopsis;
    char const* summary;
    char const* details;
    std::size_t fewest;  // operands
    std::size_t most;
    // A value may begin with '-': behind the first operand there are no options.
    bool takesOptionsBehind;
    ExitStatus (*run)(Request const& request, std::string* out);
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

constexpr Command kCommands[] = {
    {"get", "FILE SECTION KEY", "prints a value",
     "Prints the value of KEY in [SECTION]. The SECTION '' holds the keys outside any section.\n",
     3, 3, false, Get},
    {"set", "FILE SECTION KEY VALUE", "changes or adds a value",
     "Gives KEY in [SECTION] the VALUE. A missing file, section or key is added; all other lines\n"
     "stay as they are. What cannot be read back exactly is not written.\n",
     4, 4, false, Set},
    {"unset", "FILE SECTION [KEY]", "removes a key or a section",
     "Removes KEY from [SECTION], or the whole section. All comments stay.\n", 2, 3, false, Unset},
    {"sections", "FILE", "lists the sections",
     "Prints the names of the sections that have keys. An empty line stands for the keys outside\n"
     "any section.\n",
     1, 1, false, ListSections},
    {"keys", "FILE SECTION", "lists the keys of a section", "Prints the keys of [SECTION].\n", 2, 2,
     false, ListKeys},
    {"check", "[--rewrite] FILE...", "says which lines a program does not get as they stand",
     "Prints FILE:LINE: and what is wrong for each line that the settings store refuses, passes\n"
     "over, merges, overwrites or changes. The status is 1 when there is one.\n",
     1, kAnyNumber, true, CheckFiles},
    {"convert", "FILE [--to utf16|8bit] [-o OUT]", "changes the encoding",
     "Converts FILE, or FILE into OUT, from 8-bit text in the locale's encoding to the library's\n"
     "UTF-16, which has 32 bits a character, or back. Without --to: to the other of the two.\n",
     1, 1, true, Convert},
};

Complaint UsageComplaint(std::string const& what, std::string const& command) {
    return Complaint(what + "; see 'qorini " + command + "--help'", kUsage);
}

void RefuseEmpty(std::string const& word) {
    if (word.empty()) throw po::error("the value of an option is empty");
}

po::typed_value<std::string>* WordInto(std::string* word) {
    return po::value(word)->notifier(RefuseEmpty);
}

po::options_description OptionsOf(Command const& command, Request* request) {
    po::options_description options("Options");
    auto add = options.add_options();
    std::string const name = command.name;
    if (name == "check")
        add("rewrite", po::bool_switch(&request->ofRewriting),
            "also what is lost or moves when a program writes the settings");
    if (name == "convert") {
        add("to", WordInto(&request->encoding)->value_name("ENCODING"), "utf16 or 8bit");
        add("output,o", WordInto(&request->output)->value_name("OUT"),
            "the file to write; FILE itself without this");
    }
    add("help,h", "this text");
    return options;
}

std::string HelpOn(Command const& command, po::options_description const& options) {
    std::ostringstream text;
    text << "usage: qorini " << command.name << ' ' << command.synopsis << "\n\n"
         << command.details << '\n'
         << options;
    return text.str();
}

std::string Help() {
    std::string text =
        "usage: qorini COMMAND ...\n\n"
        "Reads and changes settings files as a program with the settings store of qorutils "
        "does.\n\n";
    for (Command const& command : kCommands) {
        std::string const words = std::string(command.name) + " " + command.synopsis;
        text += "  " + words + std::string(words.size() < 40 ? 40 - words.size() : 1, ' ') +
                command.summary + "\n";
    }
    return text +
           "\n'qorini COMMAND --help' tells more. --version prints the version.\n"
           "Status: 0 done, 1 not found or something to report, 2 wrong usage, 3 refused or "
           "failed.\n";
}

// The first word that is no option, and no word of one.
std::size_t FirstOperand(std::vector<std::string> const& words) {
    auto const isOperand = [](std::string const& word) {
        return word.size() < 2 || word[0] != '-' || word == "--";
    };
    auto const found = std::find_if(words.begin(), words.end(), isOperand);
    bool const isTerminator = found != words.end() && *found == "--";
    return static_cast<std::size_t>(found - words.begin()) + (isTerminator ? 1 : 0);
}

// The options put their values where OptionsOf said, the operands go to the request, too. Whether
// help is wanted.
bool Parse(Command const& command, std::vector<std::string> const& words,
           po::options_description const& options, Request* request) {
    constexpr int kStyle =
        po::command_line_style::default_style & ~po::command_line_style::allow_guessing;
    try {
        auto const parsed = po::command_line_parser(words).options(options).style(kStyle).run();
        po::variables_map given;
        po::store(parsed, given);
        po::notify(given);
        request->operands = po::collect_unrecognized(parsed.options, po::include_positional);
        return given.count("help") > 0;
    } catch (po::error const& error) {
        throw UsageComplaint(error.what(), std::string(command.name) + " ");
    }
}

ExitStatus RunCommand(Command const& command, std::vector<std::string> const& words,
                      std::string* out) {
    Request request;
    auto const options = OptionsOf(command, &request);
    std::size_t const split = command.takesOptionsBehind ? words.size() : FirstOperand(words);
    auto const rest = words.begin() + static_cast<std::ptrdiff_t>(split);
    if (Parse(command, {words.begin(), rest}, options, &request)) {
        *out += HelpOn(command, options);
        return kOk;
    }
    request.operands.insert(request.operands.end(), rest, words.end());
    if (request.operands.size() < command.fewest || request.operands.size() > command.most)
        throw UsageComplaint(std::string(command.name) + " takes " + command.synopsis,
                             std::string(command.name) + " ");
    return command.run(request, out);
}

}  // namespace

ExitStatus Run(std::vector<std::string> const& words, std::string* out) {
    if (words.empty()) throw UsageComplaint("there is no command", "");
    bool const isHelp = words[0] == "--help" || words[0] == "-h" || words[0] == "help";
    bool const isHelpOnOne = isHelp && words.size() > 1;
    if (isHelp && !isHelpOnOne) {
        *out += Help();
        return kOk;
    }
    if (words[0] == "--version") {
        *out += "qorini " QORUTILS_VERSION_STRING "\n";
        return kOk;
    }

    std::string const& name = words[isHelpOnOne ? 1 : 0];
    auto const command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                      [&name](Command const& each) { return each.name == name; });
    if (command == std::end(kCommands)) throw UsageComplaint("'" + name + "' is not a command", "");
    if (isHelpOnOne) return RunCommand(*command, {"--help"}, out);
    return RunCommand(*command, {words.begin() + 1, words.end()}, out);
}

}  // namespace qorini
