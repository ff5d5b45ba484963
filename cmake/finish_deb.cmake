# What cpack can't do: libraries are made known by a trigger alone, not by scripts that call ldconfig too, and library
# packages of several architectures may be installed side by side. dpkg-deb also gives all files the time of
# SOURCE_DATE_EPOCH at most, if it is set.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree ${CPACK_TEMPORARY_DIRECTORY}/finish)
  file(REMOVE_RECURSE ${tree})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
  file(READ ${tree}/DEBIAN/control control)
  if(control MATCHES "Section: lib")
    string(REPLACE "Section: lib" "Multi-Arch: same\nSection: lib" control "${control}")
    file(WRITE ${tree}/DEBIAN/control "${control}")
  endif()
  execute_process(COMMAND dpkg-deb --root-owner-group --build ${tree} ${package} OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
