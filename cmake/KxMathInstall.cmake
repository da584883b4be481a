# Installs the library, its headers, the CMake package and KxMath.pc.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KxMath")
install(TARGETS KxMath EXPORT KxMathTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/KxMath" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KxMathTargets NAMESPACE KxMath:: DESTINATION ${package_dir})

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KxMathConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KxMathConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KxMathConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KxMathConfig.cmake" "${PROJECT_BINARY_DIR}/KxMathConfigVersion.cmake"
    DESTINATION ${package_dir})

include(KxMathPkgConfig)
kxmath_install_pc(KxMath)
