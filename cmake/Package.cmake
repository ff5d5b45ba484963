# Debian packages by cpack: libportraitcut0 (runtime), libportraitcut-dev (development) and portraitcut (the program,
# where it is built). `make deb` configures a build of its own for them, with the paths and flags of Debian's packages.
option(PORTRAITCUT_DEBIAN "Make ready for cpack to build Debian packages" OFF)
if(NOT PORTRAITCUT_DEBIAN)
  return()
endif()

set(deb_release 1)
set(deb_maintainer "libportraitcut developers <maintainers@libportraitcut.example>")
# SOURCE_DATE_EPOCH, if set, makes two builds of one commit the same.
string(TIMESTAMP deb_date "%a, %d %b %Y %H:%M:%S +0000" UTC)

set(runtime_package libportraitcut${PROJECT_VERSION_MAJOR})
set(development_package libportraitcut-dev)
set(program_package portraitcut)

# Each package tells its changes and licence in a folder of its own name.
set(debian ${PROJECT_SOURCE_DIR}/packaging/debian)
configure_file(${debian}/changelog.in changelog.Debian @ONLY)
execute_process(COMMAND gzip -9nf ${PROJECT_BINARY_DIR}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
set(components runtime development)
if(TARGET portraitcut_program)
  list(APPEND components program)
endif()
foreach(component IN LISTS components)
  set(package ${${component}_package})
  install(FILES ${debian}/copyright ${PROJECT_BINARY_DIR}/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
  configure_file(${debian}/lintian-overrides ${PROJECT_BINARY_DIR}/overrides/${package} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/overrides/${package}
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_STRIP_FILES ON)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/finish_deb.cmake)
set(CPACK_PACKAGE_NAME libportraitcut)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${deb_release})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${deb_maintainer})
set(CPACK_DEBIAN_PACKAGE_SOURCE libportraitcut)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(exactly "(= ${PROJECT_VERSION}-${deb_release})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
configure_file(${debian}/shlibs.in shlibs @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/shlibs ${debian}/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "finds faces in still pictures and cuts portraits (library)
Finds upright and tilted faces in JPEG, PNG and BMP pictures, tells forty
points and the eyes of each, and cuts portraits out. All trained data is
inside the library. It starts no threads and may be called from many.

This package has the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} ${exactly}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "finds faces in still pictures and cuts portraits (development)
Finds upright and tilted faces in JPEG, PNG and BMP pictures, tells forty
points and the eyes of each, and cuts portraits out.

This package has the headers for C and C++, and what CMake and pkg-config
need to find the library.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ${program_package})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${runtime_package} ${exactly}")
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "cuts portraits out of photos
Finds the faces in files and folders of photos and cuts portraits out of
them, in the sizes of passports, as avatars or in one's own. It tells faces,
their points and eyes as JSON or CSV, and turns photos upright by their
orientation tag first.")

include(CPack)
