// What the benchmark programs share: how a case is named, and the texts they work on.
//
// A case is called "group|subject". `run` prints one row for every group: the library's time
// divided by that of the best other subject.

#ifndef QORUTILS_BENCH_CASES_H_
#define QORUTILS_BENCH_CASES_H_

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>

// Registers `body`, whose result is kept from being optimised away.
template <typename Body>
void Case(std::string const& group, char const* subject, Body body) {
    benchmark::RegisterBenchmark((group + "|" + subject).c_str(),
                                 [body](benchmark::State& state) mutable {
                                     for (auto _ : state) benchmark::DoNotOptimize(body());
                                 });
}

// Where files go: TMPDIR, or else memory, as waiting for a disk would hide all else.
inline std::string FolderForFiles() {
    char const* const folder = std::getenv("TMPDIR");
    return folder != nullptr ? folder : "/dev/shm";
}

inline std::string SizeName(std::size_t size) {
    return size >= 1u << 20   ? std::to_string(size >> 20) + "MiB"
           : size >= 1u << 10 ? std::to_string(size >> 10) + "KiB"
                              : std::to_string(size) + "B";
}

// English-like words and spaces, the same in every run, without 'z', 'Z', '|' and '#'.
template <typename String>
String Words(std::size_t size) {
    static char const* const kWords[] = {"the",   "of",     "string", "and",   "buffer", "a",
                                         "Value", "device", "is",     "Linux", "shared", "to",
                                         "copy",  "in",     "Counts", "text",  "write",  "length"};
    std::minstd_rand random(7);
    String text;
    while (text.size() < size) {
        for (char const* p = kWords[random() % 18]; *p != '\0'; ++p)
            text += static_cast<typename String::value_type>(*p);
        text += typename String::value_type(' ');
    }
    text.resize(size);
    return text;
}

// A zero-terminated literal in either character type.
template <typename T>
std::basic_string<T> Literal(char const* text) {
    return std::basic_string<T>(text, text + std::char_traits<char>::length(text));
}

#endif  // QORUTILS_BENCH_CASES_H_
