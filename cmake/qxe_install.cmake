# Installation: libraries, headers, CMake package and pkg-config module. Everything is found
# relative to where it lies, so that an installed tree can be moved.
include(CMakePackageConfigHelpers)

set_target_properties(qxe PROPERTIES INSTALL_RPATH "\$ORIGIN")  # libqxenumeric.so lies beside it
install(TARGETS qxe qxenumeric EXPORT qxeTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/qxe.h include/qxe_numeric.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qxe)
install(EXPORT qxeTargets NAMESPACE qxe:: DESTINATION ${package_dir})
configure_package_config_file(cmake/qxeConfig.cmake.in ${PROJECT_BINARY_DIR}/qxeConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qxeConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qxeConfig.cmake ${PROJECT_BINARY_DIR}/qxeConfigVersion.cmake
  DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
configure_file(cmake/qxe.pc.in ${PROJECT_BINARY_DIR}/qxe.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qxe.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
