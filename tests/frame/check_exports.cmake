# The shared library shows exactly the names in exported_symbols.txt: one name too few breaks applications,
# one too many may collide with another library in their process.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} -D --defined-only --without-symbol-versions --format=posix ${LIBRARY}
  OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" listing "${listing}")
string(REPLACE "\n" ";" lines "${listing}")
# The version node itself is an absolute symbol.
list(FILTER lines EXCLUDE REGEX "^PORTRAITCUT_[0-9]+ A")
set(found)
foreach(line IN LISTS lines)
  string(REGEX REPLACE " .*" "" name "${line}")
  list(APPEND found ${name})
endforeach()

file(STRINGS ${EXPECTED} expected)
set(missing ${expected})
list(REMOVE_ITEM missing ${found})
set(unexpected ${found})
list(REMOVE_ITEM unexpected ${expected})
if(missing OR unexpected)
  message(FATAL_ERROR "missing: ${missing}\nunexpected: ${unexpected}")
endif()
