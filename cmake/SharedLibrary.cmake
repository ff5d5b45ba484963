add_library(portraitcut SHARED $<TARGET_OBJECTS:portraitcut_objects>)
target_link_libraries(portraitcut PRIVATE portraitcut_flags JPEG::JPEG PNG::PNG ZLIB::ZLIB Threads::Threads)
target_include_directories(portraitcut PUBLIC
  $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/api> $<INSTALL_INTERFACE:include/portraitcut>)
set_target_properties(portraitcut PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
  LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map)
target_link_options(portraitcut PRIVATE
  -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map -Wl,--no-undefined -Wl,--as-needed)
add_library(portraitcut::portraitcut ALIAS portraitcut)
