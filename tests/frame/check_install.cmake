# Installs the library and builds against the installed copy as an application would: once through
# find_package, once through pkg-config, and the examples.
cmake_minimum_required(VERSION 3.25)

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE code)
  if(NOT code EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}: ${code}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(project ${SOURCE_DIR}/tests/consumer ${SOURCE_DIR}/examples)
  cmake_path(GET project FILENAME name)
  run(${CMAKE_COMMAND} -S ${project} -B ${WORK_DIR}/${name} -G Ninja
    -D CMAKE_PREFIX_PATH=${prefix} -D CMAKE_C_COMPILER=${C_COMPILER} -D CMAKE_CXX_COMPILER=${CXX_COMPILER})
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/${name})
endforeach()
run(${WORK_DIR}/consumer/consumer ${VERSION})

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
run(${PKG_CONFIG} --modversion portraitcut)
string(STRIP "${output}" version)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "the .pc file tells version ${version}, not ${VERSION}")
endif()
run(${PKG_CONFIG} --cflags --libs portraitcut)
separate_arguments(flags UNIX_COMMAND "${output}")
run(${C_COMPILER} -std=c99 -pedantic-errors -Wall -Werror ${SOURCE_DIR}/tests/consumer/consumer.c
  -o ${WORK_DIR}/consumer_pc ${flags} -Wl,-rpath,${prefix}/${LIBDIR})
run(${WORK_DIR}/consumer_pc ${VERSION})
