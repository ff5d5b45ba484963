# What an application needs: the shared library, the public headers, the CMake package and the .pc file.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/portraitcut)

install(TARGETS portraitcut EXPORT portraitcutTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES api/vizl_api.h api/pc_api.h api/portraitcut.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/portraitcut
  COMPONENT development)
install(EXPORT portraitcutTargets NAMESPACE portraitcut:: DESTINATION ${package_dir} COMPONENT development)

configure_package_config_file(cmake/portraitcutConfig.cmake.in portraitcutConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
# Before 1.0 a new minor version may change the interface.
write_basic_package_version_file(portraitcutConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/portraitcutConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/portraitcutConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The .pc file finds its tree from where it lies itself, so the tree may be moved.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" pc_to_prefix ${pc_to_prefix})
configure_file(cmake/portraitcut.pc.in portraitcut.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/portraitcut.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)
