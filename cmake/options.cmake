# Compiler options shared by every target of the project.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(vornik_options INTERFACE)
target_include_directories(vornik_options INTERFACE ${PROJECT_SOURCE_DIR})

# Stored results are 32-bit floats and must not depend on the optimiser: no contraction, no fast math.
target_compile_options(vornik_options INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow)
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
