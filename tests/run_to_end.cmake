# Runs a program whose exit code and last line both have to be right:
#
#   cmake "-DCOMMAND=<command line, separated by semicolons>" -DCLOSING_LINE=<text> -DWORK_DIR=<folder> -P run_to_end.cmake
execute_process(COMMAND ${COMMAND} WORKING_DIRECTORY ${WORK_DIR}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
string(REGEX REPLACE "[\r\n]+" "\n" output "${output}")
message("${output}${errors}")
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The program ended with ${result}.")
endif()
string(LENGTH "${output}" end)
string(LENGTH "\n${CLOSING_LINE}\n" length)
math(EXPR start "${end} - ${length}")
if(start LESS 0)
    message(FATAL_ERROR "The program did not reach its end.")
endif()
string(SUBSTRING "${output}" ${start} -1 last)
if(NOT last STREQUAL "\n${CLOSING_LINE}\n")
    message(FATAL_ERROR "The program's last line is not: ${CLOSING_LINE}")
endif()
