# Any difference of a function, a type or a symbol fails, an addition too: the record follows by make abi-record, and
# what a removal or change does to applications is then decided and not overlooked.
cmake_minimum_required(VERSION 3.25)

# Neither lines nor folders, so that the record changes only when the interface does.
execute_process(COMMAND ${ABIDW} --headers-dir ${HEADERS} --drop-private-types --exported-interfaces-only --no-show-locs
  --no-corpus-path --no-comp-dir-path --no-elf-needed --no-architecture --out-file ${FOUND} ${LIBRARY}
  COMMAND_ERROR_IS_FATAL ANY)
if(RECORD)
  file(COPY_FILE ${FOUND} ${RECORDED})
  return()
endif()

execute_process(COMMAND ${ABIDIFF} --no-architecture ${RECORDED} ${FOUND}
  RESULT_VARIABLE result OUTPUT_VARIABLE report ERROR_VARIABLE report)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The binary interface is not the recorded one:\n${report}")
endif()
