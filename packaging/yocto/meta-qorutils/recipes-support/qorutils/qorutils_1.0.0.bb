SUMMARY = "MFC and Win32 style strings and utilities for 32-bit ARM Linux"
SECTION = "libs"
# The owners have not chosen a licence yet; this is the value for that.
LICENSE = "CLOSED"

DEPENDS = "boost"

# Set outside this recipe: QORUTILS_GIT, the repository as HOST/PATH, and SRCREV:pn-qorutils, the
# commit. Neither has a default: a build must not change because somebody pushed.
QORUTILS_GIT_PROTOCOL ?= "https"
QORUTILS_GIT_BRANCH ?= "main"
SRC_URI = "git://${QORUTILS_GIT};protocol=${QORUTILS_GIT_PROTOCOL};branch=${QORUTILS_GIT_BRANCH} \
           file://run-ptest"
S = "${WORKDIR}/git"

inherit cmake pkgconfig ptest

python () {
    if not d.getVar('QORUTILS_GIT'):
        raise bb.parse.SkipRecipe('QORUTILS_GIT is not set')
    if d.getVar('SRCREV') in (None, 'INVALID'):
        raise bb.parse.SkipRecipe('SRCREV:pn-qorutils is not set')
}

# The library calls open64 and its kin by name, which musl has taken out.
COMPATIBLE_HOST:libc-musl = "null"

# A public header carries struct stat as it is without these two on 32-bit machines, and refuses
# them. Boost must have been built without _TIME_BITS, too: see packaging/README.md.
CXXFLAGS:append = " -U_FILE_OFFSET_BITS -U_TIME_BITS"
INSANE_SKIP:${PN} += "32bit-time"
INSANE_SKIP:${PN}-tools += "32bit-time"

PACKAGECONFIG ??= "tools ${@bb.utils.contains('PTEST_ENABLED', '1', 'tests', '', d)}"
PACKAGECONFIG[tools] = "-DQORUTILS_BUILD_TOOLS=ON,-DQORUTILS_BUILD_TOOLS=OFF"
# The tests run the example programs.
PACKAGECONFIG[tests] = "-DQORUTILS_BUILD_TESTS=ON -DQORUTILS_BUILD_EXAMPLES=ON, \
                        -DQORUTILS_BUILD_TESTS=OFF -DQORUTILS_BUILD_EXAMPLES=OFF, \
                        googletest"

# The pretty-printers have a package of their own: gdb mostly runs on another machine.
PACKAGE_BEFORE_PN = "${PN}-tools ${PN}-gdb"
FILES:${PN}-tools = "${bindir}"
FILES:${PN}-gdb = "${datadir}/gdb"

do_install_ptest() {
    cmake --install ${B} --component tests --prefix ${D}${PTEST_PATH}
}

# localedef makes locales for the tests, and touch of coreutils knows dates after 2038.
RDEPENDS:${PN}-ptest += "coreutils locale-base-c localedef tzdata-asia"
# The tests remember where they were built, and look beside themselves all the same.
INSANE_SKIP:${PN}-ptest += "32bit-time buildpaths"
