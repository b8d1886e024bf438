# Takes what only a debugger reads out of the static libraries, as is done with the programs.
file(GLOB_RECURSE archives "${CPACK_TEMPORARY_DIRECTORY}/*.a")
if(archives)
  execute_process(COMMAND strip --strip-debug ${archives} COMMAND_ERROR_IS_FATAL ANY)
endif()
