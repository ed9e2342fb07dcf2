# The warnings that every target of the project is built with, and nobody else's.

add_library(orv_warnings INTERFACE)
target_compile_options(orv_warnings INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wsuggest-override
    # clang counts changes of sign among conversions, g++ does not; the rule here is that of g++.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>
    $<$<BOOL:${ORV_WARNINGS_AS_ERRORS}>:-Werror>)
