#!/usr/bin/env bash
# Sourced by the scripts beside it: takes fenced blocks out of the README.

# README LANGUAGE WORD: the first block of the language that has the word in it.
ReadmeBlock() {
    awk -v fence='```' -v language="$2" -v word="$3" '
        inside && $0 == fence { if (index(block, word)) { printf "%s", block; exit }; inside = 0 }
        inside { block = block $0 "\n" }
        $0 == fence language { inside = 1; block = "" }' "$1"
}

# README WORD: the block of text directly behind the first block of commands that has the word in it.
ReadmeOutput() {
    awk -v fence='```' -v word="$2" '
        isOutput && $0 == fence { exit }
        isOutput
        isNext && $0 == fence "text" { isOutput = 1 }
        isNext && $0 != "" && !isOutput { exit }
        inside && $0 == fence { inside = 0; isNext = index(block, word) }
        inside { block = block $0 "\n" }
        $0 == fence "sh" { inside = 1; block = "" }' "$1"
}
