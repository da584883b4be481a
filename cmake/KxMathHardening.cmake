# What makes faults in memory harder to use: canaries on the stack, checked string functions, programs at random
# addresses, and tables of addresses that are read-only once a program runs. A project that includes this one brings its
# own flags.
if(PROJECT_IS_TOP_LEVEL)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    add_compile_options(-fstack-protector-strong)
    # Only with optimisation: without it the checks are left out with a warning, and sanitizers have their own.
    add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    add_link_options(LINKER:-z,relro,-z,now)
endif()
