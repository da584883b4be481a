# Installs KxInspect beside the core: the library, its headers, its part of the CMake package, and KxInspect.pc.
install(TARGETS KxInspect EXPORT KxInspectTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/KxInspect" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KxInspectTargets NAMESPACE KxMath:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KxMath)

configure_file("${PROJECT_SOURCE_DIR}/cmake/KxInspect.pc.in" "${PROJECT_BINARY_DIR}/KxInspect.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/KxInspect.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
