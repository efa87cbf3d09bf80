# Runs a generator (SCRIPT, by PYTHON) into the folder OUTPUT and fails unless it gives the
# COMMITTED file to the byte.

file(REMOVE_RECURSE ${OUTPUT})
execute_process(COMMAND ${PYTHON} -B ${SCRIPT} --output ${OUTPUT} COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(NAME ${COMMITTED} NAME)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUTPUT}/${NAME} ${COMMITTED}
  RESULT_VARIABLE DIFFERENT)
if(DIFFERENT)
  message(FATAL_ERROR "${NAME} is not what ${SCRIPT} gives: run it and commit the result")
endif()
