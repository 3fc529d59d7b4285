# Runs a program as a test:
#
#   cmake "-DCOMMAND=<command line, separated by semicolons>" ["-DCLOSING_LINE=<regex>"] [-DEXIT_CODE=<n>]
#         -P RunToEnd.cmake
#
# A program passes if it returns EXIT_CODE (default 0) and its last line matches CLOSING_LINE (default: Catch's summary
# of a run with at least one assertion and no failure). The exit code alone proves nothing: the script host returns 0
# for an aborted script, and Wine can end a program early with 0.
if(NOT DEFINED CLOSING_LINE)
    set(CLOSING_LINE "All tests passed [(][1-9][0-9]* assertions? in [1-9][0-9]* test cases?[)]")
endif()
if(NOT DEFINED EXIT_CODE)
    set(EXIT_CODE 0)
endif()

execute_process(COMMAND ${COMMAND} RESULT_VARIABLE result OUTPUT_VARIABLE output ECHO_OUTPUT_VARIABLE)
if(NOT result STREQUAL EXIT_CODE)
    message(FATAL_ERROR "The program ended with ${result}, not with ${EXIT_CODE}.")
endif()
string(REPLACE "\r" "" output "${output}")
if(NOT output MATCHES "(^|\n)${CLOSING_LINE}\n+$")
    message(FATAL_ERROR "The program ended without its closing line.")
endif()
