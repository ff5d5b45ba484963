# A weak symbol in a kernel object compiled for newer processors (a template, an inline function) may be the
# copy that the linker keeps for all, and would then stop older processors.
cmake_minimum_required(VERSION 3.25)

set(kernels ${OBJECTS})
list(FILTER kernels INCLUDE REGEX "_(sse41|avx2)\\.cpp\\.o$")
if(NOT kernels)
  message(FATAL_ERROR "no kernel objects among: ${OBJECTS}")
endif()
foreach(object IN LISTS kernels)
  execute_process(COMMAND ${NM} --defined-only --format=posix ${object} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+ [WVu] [^\n]*" weak "${symbols}")
  if(weak)
    message(FATAL_ERROR "${object}: ${weak}")
  endif()
endforeach()
