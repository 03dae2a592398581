#!/usr/bin/env bash
# recipes_are_wellformed.sh ROOT
# The Yocto layer and the Buildroot package below ROOT/packaging read as their tools read them, as
# far as that shows without these, and agree with the rest of the tree.
# Needs make, shellcheck and python3-kconfiglib.
set -euo pipefail

root=$1
layer=$root/packaging/yocto/meta-qorutils
recipes=$layer/recipes-support/qorutils
external=$root/packaging/buildroot
package=$external/package/qorutils
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

version=$(sed -n 's/.*VERSION_STRING "\([0-9.]*\)".*/\1/p' "$root/qorutils/export.h")
recipe=$recipes/qorutils_$version.bb

Fail() {
    echo "$*" >&2
    exit 1
}

# Debian's own, which finds the modules of Debian's packages.
Python() { PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 - "$@"; }

# --- Yocto --------------------------------------------------------------------------------------

# Every statement is one of BitBake's, its Python compiles, and its names are known: a misspelt
# one would be taken for a variable that nobody asks for.
MetadataIsRead() {
    Python "$recipe" "$layer/conf/layer.conf" >"$work/functions.sh" <<'EOF'
import re, sys

ASSIGNMENT = re.compile(
    r'([A-Za-z0-9_.${}:-]+)(?:\[\w+\])?\s*(?:\?\?=|\?=|\+=|\.=|=)\s*"([^"]*)"$')
FUNCTION = re.compile(r'^(python )?[\w:]*\s*\(\) \{\n(.*?)^\}\n', re.M | re.S)
KNOWN = set('''BBFILES BBFILE_COLLECTIONS BBFILE_PATTERN_qorutils BBFILE_PRIORITY_qorutils BBPATH
    LAYERDEPENDS_qorutils LAYERRECOMMENDS_qorutils LAYERSERIES_COMPAT_qorutils
    COMPATIBLE_HOST CXXFLAGS DEPENDS FILES INSANE_SKIP LICENSE PACKAGECONFIG PACKAGE_BEFORE_PN
    QORUTILS_GIT_BRANCH QORUTILS_GIT_PROTOCOL RDEPENDS S SECTION SRC_URI SUMMARY'''.split())

print('#!/bin/sh')
for path in sys.argv[1:]:
    text = open(path).read().replace('\\\n', ' ')
    for python, body in FUNCTION.findall(text):
        if python:
            compile('if True:\n' + body, path, 'exec')
        else:
            print(body)
    for line in FUNCTION.sub('', text).splitlines():
        if not line or line.startswith('#') or re.match(r'inherit( \w+)+$', line):
            continue
        assignment = ASSIGNMENT.match(line)
        if not assignment:
            sys.exit(f'{path}: not understood: {line}')
        name, value = assignment.groups()
        if name.split(':')[0] not in KNOWN:
            sys.exit(f'{path}: unknown: {name}')
        for expression in re.findall(r'\$\{@(.*?)\}', value):
            compile(expression, path, 'eval')
EOF
    # The variables of a function are BitBake's.
    shellcheck --exclude=SC2154,SC2086 "$work/functions.sh"
    shellcheck "$recipes/files/run-ptest"
}

LocalFilesExist() {
    local file
    while read -r file; do
        [ -x "$recipes/files/${file#file://}" ] || Fail "no program for $file"
    done < <(grep -oE 'file://[^ "]+' "$recipe")
}

RecipeSplitsIntoKnownPackages() {
    local split name
    split=$(sed -n 's/^PACKAGE_BEFORE_PN = //p' "$recipe")
    while read -r name; do
        [[ $split == *"${name#FILES:}"* ]] || Fail "no package for $name"
    done < <(grep -oE '^FILES:\$\{PN\}-[a-z]+' "$recipe")
}

# The tests on a device start in the same environments as those of the build.
EnvironmentsAgree() {
    diff -u --label tests/CMakeLists.txt --label run-ptest \
        <(sed -nE 's/^ +"([^|"]+)\|(LC_ALL[^"]*)"\)?$/\1 \2/p' "$root/tests/CMakeLists.txt" |
            sed 's/\\;/ /') \
        <(sed -n 's/^RunIn //p' "$recipes/files/run-ptest")
}

# run-ptest in a folder with a program that fails east of UTC, and one that never does.
RunPtestTells() {
    local folder=$work/ptest status=0
    mkdir "$folder"
    cp "$recipes/files/run-ptest" "$folder"
    cat >"$folder/steady_tests" <<'EOF'
#!/bin/sh
[ "$QORUTILS_TESTS_DIR/steady_tests" -ef "$0" ] && echo output
EOF
    cat >"$folder/eastern_tests" <<'EOF'
#!/bin/sh
[ "$LC_ALL $TZ" != "C.UTF-8 Asia/Kolkata" ]
EOF
    chmod +x "$folder"/*_tests
    (cd / && env -u TZ "$folder/run-ptest") >"$work/told" || status=$?
    [ "$status" -eq 1 ] || Fail "run-ptest ended with $status"
    diff -u --label expected --label told - <(grep -v '^output$' "$work/told") <<'EOF'
PASS: time_zone_is_installed
PASS: eastern_tests/C
PASS: steady_tests/C
PASS: eastern_tests/C.UTF-8
PASS: steady_tests/C.UTF-8
PASS: eastern_tests/xx_XX.UTF-8
PASS: steady_tests/xx_XX.UTF-8
FAIL: eastern_tests/Asia-Kolkata
PASS: steady_tests/Asia-Kolkata
EOF
    rm "$folder/eastern_tests"
    "$folder/run-ptest" >/dev/null || Fail "run-ptest fails without a failure"
}

# --- Buildroot ----------------------------------------------------------------------------------

# What the menu asks of the rest of Buildroot.
MakeSmallBuildroot() {
    local name
    for name in INSTALL_LIBSTDCPP USE_WCHAR TOOLCHAIN_HAS_THREADS TOOLCHAIN_HAS_ATOMIC STATIC_LIBS \
        TOOLCHAIN_HAS_GCC_BUG_64735 TOOLCHAIN_GCC_AT_LEAST_5 TOOLCHAIN_USES_GLIBC TIME_BITS_64; do
        printf 'config BR2_%s\n\tbool "%s"\n' "$name" "$name"
    done
    cat <<'EOF'
config BR2_PACKAGE_BOOST
	bool "boost"
	depends on BR2_INSTALL_LIBSTDCPP && BR2_USE_WCHAR && BR2_TOOLCHAIN_HAS_THREADS
if BR2_PACKAGE_BOOST
config BR2_PACKAGE_BOOST_FILESYSTEM
	bool "filesystem"
	depends on BR2_TOOLCHAIN_HAS_ATOMIC
config BR2_PACKAGE_BOOST_PROGRAM_OPTIONS
	bool "program_options"
config BR2_PACKAGE_BOOST_SYSTEM
	bool "system"
config BR2_PACKAGE_BOOST_THREAD
	bool "thread"
	depends on BR2_TOOLCHAIN_HAS_ATOMIC && !BR2_TOOLCHAIN_HAS_GCC_BUG_64735
endif
source "$BR2_EXTERNAL_QORUTILS_PATH/Config.in"
EOF
}

# With all that is needed the package can be chosen, and brings every Boost library that CMake asks
# for; without any one it cannot, and a comment says why.
MenuOffersWhatCanBeBuilt() {
    MakeSmallBuildroot >"$work/Config.in"
    KCONFIG_WARN_UNDEF=y CONFIG_='' BR2_EXTERNAL_QORUTILS_PATH=$external \
        Python "$work/Config.in" "$root/qorutils/CMakeLists.txt" "$root/tools/CMakeLists.txt" <<'EOF'
import re, sys
import kconfiglib

NEEDED = '''BR2_INSTALL_LIBSTDCPP BR2_USE_WCHAR BR2_TOOLCHAIN_HAS_THREADS BR2_TOOLCHAIN_HAS_ATOMIC
    BR2_TOOLCHAIN_GCC_AT_LEAST_5 BR2_TOOLCHAIN_USES_GLIBC'''.split()
HARMFUL = 'BR2_TOOLCHAIN_HAS_GCC_BUG_64735 BR2_STATIC_LIBS BR2_TIME_BITS_64'.split()
# No choice of the user's would help against these: nothing is said.
SILENT = {'BR2_TOOLCHAIN_HAS_ATOMIC', 'BR2_TOOLCHAIN_HAS_GCC_BUG_64735'}

menu = kconfiglib.Kconfig(sys.argv[1], warn_to_stderr=False)
symbols = menu.syms
package = symbols['BR2_PACKAGE_QORUTILS']

def comments():
    return [c.prompt[0] for c in menu.comments if kconfiglib.expr_value(c.prompt[1])]

def expect(condition, text):
    if not condition:
        sys.exit(f'Config.in: {text}')

def boost_of(path):
    asked = re.search(r'find_package\(Boost [\d.]+ REQUIRED COMPONENTS ([\w ]+)\)', open(path).read())
    return ['BR2_PACKAGE_BOOST'] + ['BR2_PACKAGE_BOOST_' + n.upper() for n in asked[1].split()]

def provide(name, is_right):
    symbols[name].set_value('y' if is_right == (name in NEEDED) else 'n')

for name in NEEDED + HARMFUL:
    provide(name, True)
expect(package.visibility == 2 and not comments(), 'cannot be chosen with all that is needed')
for path, chosen in (sys.argv[2], package), (sys.argv[3], symbols['BR2_PACKAGE_QORUTILS_TOOLS']):
    chosen.set_value('y')
    for name in boost_of(path):
        expect(symbols[name].str_value == 'y', f'{name} is not selected')
for name in NEEDED + HARMFUL:
    provide(name, False)
    expect(package.visibility == 0, f'can be chosen in spite of {name}')
    expect(len(comments()) == (name not in SILENT), f'{len(comments())} comments about {name}')
    provide(name, True)
expect(not menu.warnings, '\n'.join(menu.warnings))
EOF
}

# What the package gives to Buildroot's machinery: Make [VARIABLE=VALUE]... prints it.
Make() {
    # Make includes no file with a blank in its path.
    ln -sfn "$external" "$work/external"
    cat >"$work/Makefile" <<'EOF'
qstrip = $(strip $(subst ",,$(1)))
cmake-package = given := $(filter-out QORUTILS_SOURCE,$(filter QORUTILS_%,$(.VARIABLES)))
TARGET_CXXFLAGS = -O2 -D_FILE_OFFSET_BITS=64
QORUTILS_SOURCE = archive
BR2_EXTERNAL_QORUTILS_PATH = $(EXTERNAL)
include $(EXTERNAL)/external.mk
all: ; @:$(foreach name,$(sort $(given)),$(info $(name)=$($(name))))
EOF
    make --no-print-directory -f "$work/Makefile" EXTERNAL="$work/external" \
        BR_BUILDING=y BR2_PACKAGE_QORUTILS=y "$@"
}

MakefileGivesWhatWasChosen() {
    local chosen=('BR2_PACKAGE_QORUTILS_GIT="URL"' 'BR2_PACKAGE_QORUTILS_REVISION="commit"')
    diff -u --label expected --label given - <(Make "${chosen[@]}" BR2_PACKAGE_QORUTILS_TOOLS=y \
        --warn-undefined-variables QORUTILS_OVERRIDE_SRCDIR= 2>&1) <<'EOF'
QORUTILS_CONF_OPTS=-DCMAKE_CXX_FLAGS="-O2 -D_FILE_OFFSET_BITS=64 -U_FILE_OFFSET_BITS" -DQORUTILS_BUILD_TESTS=OFF -DQORUTILS_BUILD_EXAMPLES=OFF -DQORUTILS_BUILD_TOOLS=ON
QORUTILS_DEPENDENCIES=boost
QORUTILS_INSTALL_STAGING=YES
QORUTILS_OVERRIDE_SRCDIR=
QORUTILS_REDISTRIBUTE=NO
QORUTILS_SITE=URL
QORUTILS_SITE_METHOD=git
QORUTILS_VERSION=commit
EOF
    Make "${chosen[@]}" >"$work/given"
    grep -q -- -DQORUTILS_BUILD_TOOLS=OFF "$work/given" || Fail "tools are built unasked"

    local missing
    for missing in "${chosen[@]}"; do
        missing=${missing%%=*}
        ! Make "${chosen[@]}" "$missing=\"\"" >"$work/said" 2>&1 || Fail "no $missing is no error"
        grep -q "$missing is not set" "$work/said" || Fail "nothing is said of $missing"
    done
    Make QORUTILS_OVERRIDE_SRCDIR=/folder >/dev/null
}

# By its name Buildroot tells the tree where it lies.
ExternalTreeIsNamed() {
    local name
    name=$(sed -n 's/^name: //p' "$external/external.desc")
    [ -n "$name" ] || Fail "external.desc gives no name"
    grep -q '^desc: .' "$external/external.desc" || Fail "external.desc gives no description"
    grep -q "BR2_EXTERNAL_${name}_PATH" "$external/Config.in" || Fail "Config.in knows no $name"
}

# As Buildroot's developers ask for: tabs of eight columns, help texts of at most 72.
BuildrootLayoutIsKept() {
    awk '
        function Complain(text) { print FILENAME ":" FNR ": " text; bad = 1 }
        /[ \t]$/ { Complain("white space at the end") }
        /^ / { Complain("spaces before the statement") }
        FILENAME ~ /Config\.in$/ {
            if (/^[^\t]/) help = 0
            if (help && $0 != "" && !/^\t  [^ ]/) Complain("help begins with a tab and two spaces")
            if (!help && /^\t+ /) Complain("spaces before the statement")
            if (help && length($0) + 7 > 72) Complain("help beyond column 72")
            if (/^\thelp$/) help = 1
        }
        FILENAME ~ /\.mk$/ && length($0) > 80 { Complain("beyond column 80") }
        FILENAME ~ /qorutils\.mk$/ && FNR <= 5 { title = title $0 "\n" }
        END {
            rule = sprintf("%80s", "")
            gsub(/ /, "#", rule)
            if (title != rule "\n#\n# qorutils\n#\n" rule "\n") {
                print "qorutils.mk: no title"
                bad = 1
            }
            exit bad
        }' "$external"/Config.in "$external"/external.* "$package"/*
}

# --- Both ---------------------------------------------------------------------------------------

OptionsExist() {
    local option
    while read -r option; do
        grep -q "^option(${option#D} " "$root/CMakeLists.txt" || Fail "CMake has no ${option#D}"
    done < <(grep -ohE 'DQORUTILS_[A-Z_]+' "$recipe" "$package/qorutils.mk" | sort -u)
}

[ -n "$version" ] || Fail "no version in qorutils/export.h"
[ -f "$recipe" ] || Fail "no recipe for version $version"
for check in MetadataIsRead LocalFilesExist RecipeSplitsIntoKnownPackages EnvironmentsAgree \
    RunPtestTells MenuOffersWhatCanBeBuilt MakefileGivesWhatWasChosen ExternalTreeIsNamed \
    BuildrootLayoutIsKept OptionsExist; do
    echo "$check"
    "$check"
done
