# Debian packages of what is installed: script/package makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qorutils)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# Empty, or it would be put before each component's own summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENTS_ALL runtime development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE qorutils)

file(STRINGS packaging/debian/changelog changelog_head LIMIT_COUNT 1)
string(REGEX MATCH "\\(${PROJECT_VERSION}-([0-9]+)\\)" debian_version "${changelog_head}")
if(NOT debian_version)
    message(FATAL_ERROR "packaging/debian/changelog does not begin with ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_1})
file(STRINGS packaging/debian/changelog changelog_tail REGEX "^ -- .*>")
list(GET changelog_tail 0 changelog_tail)
string(REGEX REPLACE "^ -- (.*>).*" "\\1" CPACK_DEBIAN_PACKAGE_MAINTAINER "${changelog_tail}")

if(CMAKE_SYSTEM_PROCESSOR STREQUAL "armv7l")
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
    # Dependencies are worked out from the target's own packages.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
        ${CMAKE_FIND_ROOT_PATH}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}
        ${CMAKE_FIND_ROOT_PATH}/lib/${CMAKE_LIBRARY_ARCHITECTURE})
endif()
set(debian_architecture ${CPACK_DEBIAN_PACKAGE_ARCHITECTURE})
if(NOT debian_architecture)
    execute_process(COMMAND dpkg --print-architecture
        OUTPUT_VARIABLE debian_architecture OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
endif()
set(debian_library libqorutils${PROJECT_VERSION_MAJOR})
set(debian_this "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/qorutils)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_OBJCOPY_EXECUTABLE ${CMAKE_OBJCOPY})
set(CPACK_READELF_EXECUTABLE ${CMAKE_READELF})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${debian_library})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"MFC and Win32 style strings and utilities
Reference-counted strings, files, times, settings and a log in the manner of
MFC and Win32, for programs that move from Windows to embedded Linux.

This package has the shared library.")
set(library_control ${PROJECT_SOURCE_DIR}/packaging/debian/${debian_library})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${library_control}/shlibs
    ${library_control}/triggers
    ${library_control}/${debian_architecture}/symbols)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqorutils-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${debian_library} ${debian_this}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"MFC and Win32 style strings and utilities, development files
Reference-counted strings, files, times, settings and a log in the manner of
MFC and Win32, for programs that move from Windows to embedded Linux.

This package has the headers, what CMake and pkg-config look for, and the
pretty-printers that gdb loads by itself.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME qorutils-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${debian_library} ${debian_this}")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION
"log reader and settings editor for qorutils programs
qorlog shows a program's log, which is UTF-32, as UTF-8: as it grows, since a
time, or only failed checks.

qorini reads, checks, changes and converts settings files.")

# What every package says about itself.
function(compress source packed)
    execute_process(COMMAND gzip -9n -c ${PROJECT_SOURCE_DIR}/${source}
        OUTPUT_FILE ${PROJECT_BINARY_DIR}/${packed} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
compress(packaging/debian/changelog changelog.Debian.gz)
compress(CHANGELOG.md changelog.gz)
foreach(component RUNTIME DEVELOPMENT TOOLS)
    string(TOLOWER ${component} name)
    install(
        FILES packaging/debian/copyright
            ${PROJECT_BINARY_DIR}/changelog.gz
            ${PROJECT_BINARY_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME}
        COMPONENT ${name})
endforeach()

include(CPack)
