# Writes a program's manual page (gzipped, reproducibly) and bash completion from the
# program itself: cmake -DPROGRAM=<exe> -DNAME=<name> -DDIR=<out> -P program_docs.cmake
file(MAKE_DIRECTORY ${DIR})
execute_process(COMMAND ${PROGRAM} --man OUTPUT_FILE ${DIR}/${NAME}.1 RESULT_VARIABLE man COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} --bash-completion OUTPUT_FILE ${DIR}/${NAME}.bash COMMAND_ERROR_IS_FATAL ANY)
file(SIZE ${DIR}/${NAME}.1 size)
if(size EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} --man printed nothing")
endif()
# -n: no name or time stamp inside, so that the same page packs to the same bytes.
execute_process(COMMAND gzip -9nf ${DIR}/${NAME}.1 COMMAND_ERROR_IS_FATAL ANY)
