# Runs one sample of the object reference and compares what it prints with the output that the reference shows:
#
#   cmake "-DCOMMAND=<command line, separated by semicolons>" -DEXPECTED=<file.txt> -P run_sample.cmake
get_filename_component(folder ${EXPECTED} DIRECTORY)
execute_process(COMMAND ${COMMAND} WORKING_DIRECTORY ${folder}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
string(REPLACE "\r" "" output "${output}")
message("${output}${errors}")
file(READ "${EXPECTED}" expected)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The sample ended with ${result}.")
endif()
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "The sample did not print what the reference shows:\n${expected}")
endif()
