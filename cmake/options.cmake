# Compiler options shared by every target of the project.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# What differs between systems is in sources of their own, <name>_posix.cpp and <name>_win32.cpp.
if(WIN32)
    set(VORNIK_SYSTEM win32)
else()
    set(VORNIK_SYSTEM posix)
endif()

add_library(vornik_options INTERFACE)
target_include_directories(vornik_options INTERFACE ${PROJECT_SOURCE_DIR})

# Stored results are 32-bit floats and must not depend on the optimiser: no contraction, no fast math.
target_compile_options(vornik_options INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow)
if(WIN32)
    # The OpenGL headers bring in the whole system's, with fewer macros after this.
    target_compile_definitions(vornik_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN _USE_MATH_DEFINES)
endif()
if(VORNIK_WARNINGS_AS_ERRORS)
    target_compile_options(vornik_options INTERFACE -Werror)
endif()
if(VORNIK_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(vornik_options INTERFACE ${sanitizers})
    target_link_options(vornik_options INTERFACE ${sanitizers})
endif()
if(VORNIK_FUZZ)
    target_compile_options(vornik_options INTERFACE -fsanitize=fuzzer-no-link,float-cast-overflow)
endif()
