#include "options.h"

#include <unistd.h>

#include <cstdlib>
#include <memory>

#include <boost/program_options.hpp>

#include "log_files.h"

namespace qorlog {

namespace {

namespace po = boost::program_options;

po::options_description Known() {
    po::options_description known;
    auto add = known.add_options();
    add("help,h", "");
    add("version,V", "");
    add("program,p", po::value<std::string>(), "");
    add("dir,d", po::value<std::string>(), "");
    add("follow,f", "");
    add("since,s", po::value<std::string>(), "");
    add("until,u", po::value<std::string>(), "");
    add("grep,e", po::value<std::string>(), "");
    add("ignore-case,i", "");
    add("checks,c", "");
    add("wall,w", "");
    add("json,j", "");
    add("color", po::value<std::string>(), "");
    add("file", po::value<std::vector<std::string>>(), "");
    return known;
}

po::variables_map Parse(int argc, char** argv) {
    namespace style = po::command_line_style;
    po::options_description const known = Known();
    po::positional_options_description files;
    files.add("file", -1);
    po::variables_map found;
    try {
        po::store(po::command_line_parser(argc, argv)
                      .options(known)
                      .positional(files)
                      .style(style::unix_style & ~style::allow_guessing)
                      .run(),
                  found);
    } catch (po::error const& error) {
        throw UsageError(error.what());
    }
    return found;
}

std::string TextOf(po::variables_map const& found, char const* name) {
    return found.count(name) != 0 ? found[name].as<std::string>() : std::string();
}

TimeBound BoundOf(po::variables_map const& found, char const* name) {
    TimeBound bound;
    if (found.count(name) != 0 && !ParseTimeBound(TextOf(found, name), &bound))
        throw UsageError("'" + TextOf(found, name) + "' is no time: it is written as 12.5, " +
                         "1:02:03 or 2026-11-22 10:00:00");
    return bound;
}

std::shared_ptr<Pattern const> PatternOf(po::variables_map const& found) {
    if (found.count("grep") == 0) return nullptr;
    try {
        return std::make_shared<Pattern const>(TextOf(found, "grep"),
                                               found.count("ignore-case") != 0);
    } catch (std::invalid_argument const& reason) {
        throw UsageError("'" + TextOf(found, "grep") + "': " + reason.what());
    }
}

bool IsSet(char const* variable) {
    char const* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool IsDumb() {
    char const* const terminal = std::getenv("TERM");
    return terminal == nullptr || std::string(terminal) == "dumb";
}

Look LookOf(po::variables_map const& found) {
    bool const isTerminal = isatty(STDOUT_FILENO) == 1;
    std::string const color = found.count("color") != 0 ? TextOf(found, "color") : "auto";
    if (color != "auto" && color != "always" && color != "never")
        throw UsageError("'" + color + "' is no colour: auto, always or never");
    Look look;
    look.isJson = found.count("json") != 0;
    look.hasCalendarTimes = found.count("wall") != 0;
    look.isColoured =
        color == "always" || (color == "auto" && isTerminal && !IsSet("NO_COLOR") && !IsDumb());
    look.isHarmless = isTerminal || look.isColoured;
    return look;
}

void RequireSense(Options const& options, bool isProgramGiven, bool isDirectoryGiven) {
    if (!options.files.empty() && (isProgramGiven || isDirectoryGiven))
        throw UsageError("--program and --dir are for when no file is named");
    if (options.follows && options.files.size() > 1)
        throw UsageError("--follow goes with one file");
    if (isProgramGiven && options.program.empty()) throw UsageError("'' is no name of a program");
    if (options.program.find('/') != std::string::npos)
        throw UsageError("'" + options.program + "' is no name of a program: use --dir, too");
}

}  // namespace

char const kHelp[] =
    R"(usage: qorlog [OPTION]... [FILE]...
Prints logs as UTF-8 text: the files, or the newest log of a program.

which log, when no FILE is named ("-" is standard input):
  -p, --program NAME   the newest of NAME1.log.txt to NAME10.log.txt;
                       without it, of the program that logged last
  -d, --dir DIR        where they are; without it, $TMPDIR or /tmp
  -f, --follow         goes on as lines come, and over to the log of the next start

which lines:
  -s, --since TIME     from this time on
  -u, --until TIME     up to this time
                       TIME since the start: 12.5, 2:03, 1:02:03
                       or UTC: 2026-11-22, '2026-11-22 10:00', 2026-11-22T10:00:30
  -e, --grep REGEX     whose message matches this extended regular expression
  -i, --ignore-case    whatever the case
  -c, --checks         of failed checks

how they look:
  -w, --wall           with the time of day, UTC, for the time since the start
  -j, --json           each as a JSON object
      --color WHEN     auto, always or never

  -h, --help           shows this
  -V, --version        shows the version

Exit status: 0, 1 when something was wrong with a file, 2 for wrong arguments.
)";

Options ParseOptions(int argc, char** argv) {
    po::variables_map const found = Parse(argc, argv);
    Options options;
    options.wantsHelp = found.count("help") != 0;
    options.wantsVersion = found.count("version") != 0;
    if (found.count("file") != 0) options.files = found["file"].as<std::vector<std::string>>();
    options.program = TextOf(found, "program");
    bool const isDirectoryGiven = found.count("dir") != 0;
    options.directory = isDirectoryGiven ? TextOf(found, "dir") : DefaultDirectory();
    options.follows = found.count("follow") != 0;
    options.filter.since = BoundOf(found, "since");
    options.filter.until = BoundOf(found, "until");
    options.filter.checksOnly = found.count("checks") != 0;
    options.filter.pattern = PatternOf(found);
    options.look = LookOf(found);
    RequireSense(options, found.count("program") != 0, isDirectoryGiven);
    return options;
}

}  // namespace qorlog
