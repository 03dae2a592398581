# Warnings for everything that is built here; a user of the library does not inherit them.
if(PROJECT_IS_TOP_LEVEL)
    add_compile_options(
        -Wall
        -Wextra
        -Wpedantic
        -Wshadow
        -Wcast-qual
        -Wformat-security
        -Wnon-virtual-dtor
        -Woverloaded-virtual
        -Wundef
        -Wunused)
else()
    # Nor does the library inherit those of a project that it is part of, which may be errors there.
    add_compile_options(-w)
endif()
# Notes on a change of calling conventions that is older than the library, not warnings.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-psabi)
endif()
