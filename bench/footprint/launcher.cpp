// launcher ROUNDS PROGRAM...: starts the programs in turn, ROUNDS times each, and prints a line for
// each start: the program, wall clock and processor time in microseconds, and page faults.

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

struct Cost {
    long long wall;
    long long processor;
    long faults;
};

long long Microseconds(timeval const& t) {
    return t.tv_sec * 1000000LL + t.tv_usec;
}

long long Now() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000LL + now.tv_nsec / 1000;
}

Cost CostOf(char* program) {
    char* arguments[] = {program, nullptr};
    long long const begin = Now();
    pid_t child;
    int status;
    rusage used;
    if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0 ||
        wait4(child, &status, 0, &used) != child || status != 0)
        throw std::runtime_error(program);
    return {Now() - begin, Microseconds(used.ru_utime) + Microseconds(used.ru_stime),
            used.ru_minflt};
}

void Run(int rounds, char** programs) {
    for (int round = 0; round < rounds; ++round) {
        for (char** program = programs; *program != nullptr; ++program) {
            Cost const cost = CostOf(*program);
            std::printf("%s %lld %lld %ld\n", *program, cost.wall, cost.processor, cost.faults);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: launcher ROUNDS PROGRAM...\n", stderr);
        return 2;
    }
    try {
        Run(std::atoi(argv[1]), argv + 2);
    } catch (std::runtime_error const& failed) {
        std::fprintf(stderr, "launcher: %s does not start and end as it should\n", failed.what());
        return 1;
    }
}
