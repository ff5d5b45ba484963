# No file names a folder of the machine that it was written on.
cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${SOURCE_DIR}
  ${SOURCE_DIR}/*.cpp ${SOURCE_DIR}/*.h ${SOURCE_DIR}/*.c ${SOURCE_DIR}/*.S ${SOURCE_DIR}/*.py ${SOURCE_DIR}/*.md
  ${SOURCE_DIR}/*.txt ${SOURCE_DIR}/*.cmake ${SOURCE_DIR}/*.in ${SOURCE_DIR}/*.json ${SOURCE_DIR}/*.csv
  ${SOURCE_DIR}/Makefile ${SOURCE_DIR}/.ci/run)
list(FILTER files EXCLUDE REGEX "^(build[^/]*|out)/")
set(wrong)
foreach(file IN LISTS files)
  file(STRINGS ${SOURCE_DIR}/${file} lines REGEX "(^|[^A-Za-z0-9_.}])/(home|root|work|Users)/[A-Za-z]")
  if(lines)
    list(APPEND wrong "${file}: ${lines}")
  endif()
endforeach()
if(NOT files OR wrong)
  list(JOIN wrong "\n" wrong)
  message(FATAL_ERROR "${wrong}")
endif()
