# The shared library asks for nothing at run time but the picture codecs and the C and C++ runtime.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*\\[[^]\n]*" lines "${dynamic}")
if(NOT lines)
  message(FATAL_ERROR "no NEEDED entries were read")
endif()
foreach(line IN LISTS lines)
  string(REGEX REPLACE ".*\\[" "" library "${line}")
  if(NOT library MATCHES "^(libjpeg|libpng16|libz|libstdc\\+\\+|libgcc_s|libm|libc|ld-linux[a-z0-9-]*)\\.so")
    message(FATAL_ERROR "${library} is needed at run time")
  endif()
endforeach()
