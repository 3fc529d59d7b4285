# Runs one script test:
#
#   cmake -DEMULATOR=<command or empty> -DSCRIPT=<test.vbs or test.js> -DWORK_DIR=<folder> -P run_script.cmake
#
# The script host returns 0 for a script that broke off, even for one that it could not parse. So a test has
# passed only when its last line is "PASSED <n> checks" and it quit with the code 7, which nothing else
# returns. The script languages have no include: the checks (assert.vbs, assert.js) are put around the test.
get_filename_component(name "${SCRIPT}" NAME)
get_filename_component(extension "${SCRIPT}" LAST_EXT)
file(READ "${CMAKE_CURRENT_LIST_DIR}/assert${extension}" asserts)
file(READ "${SCRIPT}" test)
file(WRITE "${WORK_DIR}/${name}" "${asserts}\n${test}\nRunAndQuit")
if(extension STREQUAL ".js")
    file(APPEND "${WORK_DIR}/${name}" "();\n")
endif()

execute_process(COMMAND ${EMULATOR} cscript //nologo "${name}" WORKING_DIRECTORY "${WORK_DIR}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
string(REPLACE "\r" "" output "${output}")
message("${output}${errors}")
if(NOT result EQUAL 7)
    message(FATAL_ERROR "${name} quit with ${result}, not with 7: it failed or broke off.")
endif()
if(NOT output MATCHES "(^|\n)PASSED [1-9][0-9]* checks\n$")
    message(FATAL_ERROR "${name} did not print its closing line.")
endif()
