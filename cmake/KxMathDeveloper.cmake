# What all targets of this project share while it is worked on: warnings, and the build type for sanitizers.

# -DCMAKE_BUILD_TYPE=ASAN: float-cast-overflow is not part of -fsanitize=undefined and has to be named. A project that
# includes this one brings its own build types.
if(PROJECT_IS_TOP_LEVEL)
    # Not in the cache: there project() has already put empty flags for a build type that it does not know.
    set(CMAKE_CXX_FLAGS_ASAN
        "-O1 -g1 -fno-omit-frame-pointer -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -D_GLIBCXX_ASSERTIONS")
    set(CMAKE_EXE_LINKER_FLAGS_ASAN "-fsanitize=address,undefined")
    set(CMAKE_SHARED_LINKER_FLAGS_ASAN "-fsanitize=address,undefined")
    # -DCMAKE_BUILD_TYPE=TSAN: for the one test that runs threads, see scripts/threads.
    set(CMAKE_CXX_FLAGS_TSAN "-O1 -g1 -fno-omit-frame-pointer -fsanitize=thread")
    set(CMAKE_EXE_LINKER_FLAGS_TSAN "-fsanitize=thread")
    set(CMAKE_SHARED_LINKER_FLAGS_TSAN "-fsanitize=thread")
    # -DCMAKE_BUILD_TYPE=FUZZ, with clang: the same, and what libFuzzer needs to see which code an input reaches.
    set(CMAKE_CXX_FLAGS_FUZZ
        "-O1 -gline-tables-only -fno-omit-frame-pointer -fsanitize=fuzzer-no-link,address,undefined,float-cast-overflow -fno-sanitize-recover=all -D_GLIBCXX_ASSERTIONS")
    set(CMAKE_EXE_LINKER_FLAGS_FUZZ "-fsanitize=address,undefined")
    set(CMAKE_SHARED_LINKER_FLAGS_FUZZ "-fsanitize=fuzzer-no-link,address,undefined")
endif()

# Linked privately. Without KXMATH_DEVELOPER it adds nothing, so that a new compiler breaks nobody's build.
add_library(KxMathWarnings INTERFACE)
if(KXMATH_DEVELOPER)
    target_compile_options(KxMathWarnings INTERFACE -Wall -Wextra -Wconversion -Wdouble-promotion -Werror)
endif()
