# The source must compile as it is, and fail with the message given here for each of its macros.
get_target_property(include_dirs Qt6::Core INTERFACE_INCLUDE_DIRECTORIES)
list(APPEND include_dirs ${PROJECT_SOURCE_DIR}/include)
list(TRANSFORM include_dirs PREPEND -I)
set(check_syntax ${CMAKE_CXX_COMPILER} -std=c++20 -fPIC -fsyntax-only ${include_dirs}
    ${CMAKE_CURRENT_SOURCE_DIR}/misuse.cpp)
set(no_copy "(discards qualifiers|no matching constructor)") # g++|clang

kxmath_add_packaging_test(misuse.none COMMAND ${check_syntax} -Werror)

function(kxmath_add_misuse_test macro message)
    kxmath_add_packaging_test(misuse.${macro} COMMAND ${check_syntax} -D${macro})
    set_tests_properties(packaging.misuse.${macro} PROPERTIES PASS_REGULAR_EXPRESSION "error: [^\n]*${message}")
endfunction()

kxmath_add_misuse_test(COPY_CONST_CLOUD "${no_copy}")
kxmath_add_misuse_test(COPY_CONST_PROFILE "${no_copy}")
kxmath_add_misuse_test(APPEND_TO_LIST "${no_copy}")
kxmath_add_misuse_test(COPY_INTERPOLANT "deleted (function|constructor)")
kxmath_add_misuse_test(ASSIGN_INTERPOLANT "deleted (function|operator)")
kxmath_add_misuse_test(CHAIN_POINTS "(no match for|no viable)")
kxmath_add_misuse_test(SIZE_Z_OF_XY "no member named 'size_z'")
kxmath_add_misuse_test(GET_INDEX_Z_OF_XY "no member named 'getIndexZ'")
kxmath_add_misuse_test(TRIM_OF_XYZRGB "no member named 'trim'")
kxmath_add_misuse_test(GET_INDEX_X_OF_XYZRGB "no member named 'getIndexX'")
kxmath_add_misuse_test(RESIZE_OF_XYZRGB "no member named 'resize'")
kxmath_add_misuse_test(ROTATE_XY_OF_XYZRGB "no member named 'rotateXY'")
