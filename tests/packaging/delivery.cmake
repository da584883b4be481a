# The library as it is delivered: what it exports and needs, what is installed, and programs that use it.
set(src ${CMAKE_CURRENT_SOURCE_DIR})
set(bin ${CMAKE_CURRENT_BINARY_DIR})

# A list that a script prints must be the checked-in one: NAME.txt, printed by NAME.sh without what is behind a point.
function(kxmath_add_list_test name how_to_update)
    string(REGEX REPLACE "\\..*" "" script "${name}")
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "NEEDS" "ARGUMENTS")
    kxmath_add_packaging_test(${name} NEEDS "${arg_NEEDS}"
        COMMAND ${src}/compareList.sh ${src}/${name}.txt ${how_to_update} ${src}/${script}.sh ${arg_ARGUMENTS})
endfunction()

kxmath_add_list_test(exportedSymbols scripts/update-symbols ARGUMENTS $<TARGET_FILE:KxMath>)
kxmath_add_list_test(exportedSymbols.KxInspect scripts/update-symbols ARGUMENTS $<TARGET_FILE:KxInspect>)
kxmath_add_list_test(dynamicSection "an editor" ARGUMENTS $<TARGET_FILE:KxMath>)
kxmath_add_list_test(dynamicSection.KxInspect "an editor" ARGUMENTS $<TARGET_FILE:KxInspect>)

find_package(Python3 REQUIRED COMPONENTS Interpreter)
kxmath_add_packaging_test(hardening
    COMMAND Python3::Interpreter ${src}/hardening.py --canaries $<TARGET_FILE:KxMath> --canaries $<TARGET_FILE:kxmath>
        --checked $<TARGET_FILE:kxmath> $<TARGET_FILE:KxMath> $<TARGET_FILE:KxInspect> $<TARGET_FILE:kxmath>
        ${PROJECT_BINARY_DIR}/tests)

kxmath_add_packaging_test(abi COMMAND Python3::Interpreter -B ${src}/abiTest.py ${PROJECT_SOURCE_DIR})
set_tests_properties(packaging.abi PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped:")

# Two installed libraries: that of this build, and one of the other compiler, built without any option.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    find_program(KXMATH_CLANG clang++ REQUIRED)
    set(compilers GNU Clang)
    set(GNU_compiler ${CMAKE_CXX_COMPILER})
    set(Clang_compiler ${KXMATH_CLANG})
else()
    find_program(KXMATH_GNU g++ REQUIRED)
    set(compilers Clang GNU)
    set(Clang_compiler ${CMAKE_CXX_COMPILER})
    set(GNU_compiler ${KXMATH_GNU})
endif()
list(GET compilers 0 own)
list(GET compilers 1 other)
kxmath_add_packaging_test(install.${own} SETS_UP ${own}_library
    COMMAND ${src}/install.sh ${CMAKE_COMMAND} ${PROJECT_BINARY_DIR} ${bin}/${own})
kxmath_add_packaging_test(install.${other} SETS_UP ${other}_library
    COMMAND ${src}/plainBuild.sh ${CMAKE_COMMAND} ${PROJECT_SOURCE_DIR} ${bin}/build-${other} ${bin}/${other}
        ${${other}_compiler})
kxmath_add_list_test(installedFiles "an editor" NEEDS ${other}_library ARGUMENTS ${bin}/${other})

# Programs of either compiler with the library of either.
set(run_programs ${CMAKE_CTEST_COMMAND} --no-tests=error --output-on-failure)
foreach(library IN LISTS compilers)
    foreach(program IN LISTS compilers)
        kxmath_add_packaging_test(findPackage.${program}ProgramWith${library}Library NEEDS ${library}_library
            COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${src}/consumer ${bin}/consumer-${program}-${library}
                --build-generator Ninja
                --build-options -DCMAKE_CXX_COMPILER=${${program}_compiler} -DCMAKE_PREFIX_PATH=${bin}/${library}
                --test-command ${run_programs})
    endforeach()
endforeach()

foreach(program IN LISTS compilers)
    kxmath_add_packaging_test(pkgConfig.${program} NEEDS ${own}_library
        COMMAND ${src}/pkgConfig.sh ${${program}_compiler} ${bin}/${own} ${bin}/moved-${program}
            ${src}/consumer/main.cpp)

    # The warning about -ffast-math appears, can be silenced, and leaves other programs alone (see misuse.none).
    set(check_fast_math ${${program}_compiler} -std=c++17 -fPIC -fsyntax-only -ffast-math ${include_dirs}
        ${src}/misuse.cpp)
    kxmath_add_packaging_test(fastMath.${program} COMMAND ${check_fast_math})
    set_tests_properties(packaging.fastMath.${program} PROPERTIES PASS_REGULAR_EXPRESSION "warning: [^\n]*NaN")
    kxmath_add_packaging_test(fastMathAllowed.${program} COMMAND ${check_fast_math} -DKXMATH_ALLOW_FAST_MATH -Werror)
endforeach()

# As part of another project, and without precompiled headers: each source includes what it uses.
kxmath_add_packaging_test(subproject
    COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${src}/subproject ${bin}/subproject
        --build-generator Ninja
        --build-options -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER} -DKXMATH_SOURCE=${PROJECT_SOURCE_DIR}
            -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON
            -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
        --test-command ${run_programs})
