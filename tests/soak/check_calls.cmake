# The program calls every exported function; of the exported data only functions' results matter here.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} -D --undefined-only --without-symbol-versions --format=posix ${PROGRAM}
  OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[A-Za-z_0-9]+ U" called "${listing}")
list(TRANSFORM called REPLACE " U" "")

file(STRINGS ${EXPORTED} missing)
list(FILTER missing EXCLUDE REGEX "^(DataFilesPath|NeedBreak|NeedInterrupt|VIZL_resu[1-4])$")
list(REMOVE_ITEM missing ${called})
if(missing)
  message(FATAL_ERROR "never called: ${missing}")
endif()
