// Runs a built program as a user does: arguments in; text, complaints and status out.
// QORUTILS_EMULATOR is the command that runs programs of the target (or nothing) where they were
// built; the build defines it.
#ifndef QORUTILS_TESTS_SUPPORT_RUN_PROGRAM_H_
#define QORUTILS_TESTS_SUPPORT_RUN_PROGRAM_H_

#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/built_file.h"

struct Outcome {
    int status;  // -1: it did not exit
    std::string out;
    std::string complaints;
};

// For the shell.
inline std::string Quoted(std::string const& argument) {
    std::string quoted = "'";
    for (char const c : argument) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// The beginning of a shell command that runs the program, wherever it lies now.
inline std::string Started(std::string const& program) {
    return (InstalledTests() == nullptr ? QORUTILS_EMULATOR " " : "") + Quoted(BuiltFile(program));
}

// What the program writes to stderr passes through a file of this name, which is removed.
inline Outcome RunProgram(std::string const& program, std::vector<std::string> const& arguments,
                          std::string const& complaintsPath) {
    std::string command = Started(program);
    for (std::string const& argument : arguments) command += " " + Quoted(argument);
    command += " 2>" + Quoted(complaintsPath);

    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    std::string out;
    char block[4096];
    while (std::size_t const n = std::fread(block, 1, sizeof block, pipe)) out.append(block, n);
    int const status = pclose(pipe);

    std::ifstream file(complaintsPath, std::ios::binary);
    std::string const complaints{std::istreambuf_iterator<char>(file),
                                 std::istreambuf_iterator<char>()};
    std::remove(complaintsPath.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, complaints};
}

#endif  // QORUTILS_TESTS_SUPPORT_RUN_PROGRAM_H_
