# The user's program in the oldest and in the newest language standard, with warnings that a careful user switches on.
enable_testing()
foreach(standard IN ITEMS 17 23)
    set(program consumer${standard})
    add_executable(${program} ${CMAKE_CURRENT_LIST_DIR}/main.cpp)
    set_target_properties(${program} PROPERTIES CXX_STANDARD ${standard})
    target_compile_definitions(${program} PRIVATE EXPECTED_STANDARD=${standard})
    target_compile_options(${program} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
        -Wdouble-promotion -Wshadow -Wdeprecated-copy -Werror)
    target_link_libraries(${program} PRIVATE KxMath::KxMath)
    add_test(NAME ${program} COMMAND ${program})
endforeach()
