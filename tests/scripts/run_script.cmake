# Runs one script test:
#
#   cmake -DEMULATOR=<command or empty> -DSCRIPT=<test.vbs or test.js> -P run_script.cmake
#
# A test passes if its last line is "PASSED <n> checks" and its exit code is 7, which the script host never returns
# itself. The script languages have no include, so the test and the checks (assert.vbs, assert.js) are joined into one
# file in the current folder.
get_filename_component(name "${SCRIPT}" NAME)
get_filename_component(extension "${SCRIPT}" LAST_EXT)
file(READ "${CMAKE_CURRENT_LIST_DIR}/assert${extension}" asserts)
file(READ "${SCRIPT}" test)
file(WRITE "${name}" "${asserts}\n${test}\nRunAndQuit")
if(extension STREQUAL ".js")
    file(APPEND "${name}" "();\n")
endif()

set(COMMAND ${EMULATOR} cscript //nologo ${name})
set(CLOSING_LINE "PASSED [1-9][0-9]* checks")
set(EXIT_CODE 7)
include(${CMAKE_CURRENT_LIST_DIR}/../RunToEnd.cmake)
