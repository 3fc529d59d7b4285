# Runs a sample of the object reference and compares its output with the reference:
#
#   cmake "-DCOMMAND=<command line, separated by semicolons>" -DEXPECTED=<file.txt> -P run_sample.cmake
get_filename_component(folder ${EXPECTED} DIRECTORY)
execute_process(COMMAND ${COMMAND} WORKING_DIRECTORY ${folder}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
string(REPLACE "\r" "" output "${output}")
message("${output}${errors}")
file(READ "${EXPECTED}" expected)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The sample returned ${result}.")
endif()
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "The output differs from the reference:\n${expected}")
endif()
