# The user's program in the oldest and in the newest language standard, with warnings that a careful user switches on.
enable_testing()
function(add_consumer source library standard)
    set(program ${source}${standard})
    add_executable(${program} ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${source}.cpp)
    set_target_properties(${program} PROPERTIES CXX_STANDARD ${standard})
    target_compile_definitions(${program} PRIVATE EXPECTED_STANDARD=${standard})
    target_compile_options(${program} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
        -Wdouble-promotion -Wshadow -Wdeprecated-copy -Werror)
    target_link_libraries(${program} PRIVATE ${library})
    add_test(NAME ${program} COMMAND ${program})
endfunction()

foreach(standard IN ITEMS 17 23)
    add_consumer(main KxMath::KxMath ${standard})
    if(TARGET KxMath::Inspect)
        add_consumer(inspect KxMath::Inspect ${standard})
    endif()
endforeach()
