# Installs KxInspect beside the core: the library, its headers, its part of the CMake package, and KxInspect.pc.
install(TARGETS KxInspect EXPORT KxInspectTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/KxInspect" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/schema" DESTINATION ${CMAKE_INSTALL_DATADIR}/kxmath)
install(EXPORT KxInspectTargets NAMESPACE KxMath:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KxMath)

include(KxMathPkgConfig)
kxmath_install_pc(KxInspect)
