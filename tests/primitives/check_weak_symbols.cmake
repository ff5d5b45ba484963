# usage: cmake -DNM=nm -DOBJECTS="a.o;b.o" -P check_weak_symbols.cmake
# The linker keeps one of several weak definitions of a function. If that one was compiled for a newer
# processor, an old processor runs into instructions that it lacks, so objects with raised processor flags
# must define none.
set(seen 0)
foreach(object IN LISTS OBJECTS)
  if(NOT object MATCHES "_(sse41|avx2)\\.cpp\\.o(bj)?$")
    continue()
  endif()
  math(EXPR seen "${seen} + 1")
  execute_process(COMMAND ${NM} --defined-only ${object} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[0-9a-f]+ [VWuvw] [^\n]*" weak "${symbols}")
  if(weak)
    message(SEND_ERROR "${object} defines weak symbols:\n${weak}")
  endif()
endforeach()
if(seen EQUAL 0)
  message(FATAL_ERROR "no kernel objects were given")
endif()
message(STATUS "${seen} objects looked through")
