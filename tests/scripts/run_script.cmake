# Runs one script test:
#
#   cmake -DEMULATOR=<command or empty> -DSCRIPT=<test.vbs or test.js> -P run_script.cmake
#
# A test passes if its last line is "PASSED <n> checks" and its exit code is 7, which the script host never returns
# itself.
get_filename_component(name "${SCRIPT}" NAME)
set(JOINED ${name}) # in the current folder
include(${CMAKE_CURRENT_LIST_DIR}/join_script.cmake)

set(COMMAND ${EMULATOR} cscript //nologo ${name})
set(CLOSING_LINE "PASSED [1-9][0-9]* checks")
set(EXIT_CODE 7)
include(${CMAKE_CURRENT_LIST_DIR}/../RunToEnd.cmake)
