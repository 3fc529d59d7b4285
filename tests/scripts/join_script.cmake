# Joins a script test, the checks (assert.vbs, assert.js) and the call that runs the test into one file, because the
# script languages have no include:
#
#   cmake -DSCRIPT=<test.vbs or test.js> -DJOINED=<output> -P join_script.cmake
get_filename_component(extension "${SCRIPT}" LAST_EXT)
file(READ "${CMAKE_CURRENT_LIST_DIR}/assert${extension}" asserts)
file(READ "${SCRIPT}" test)
file(WRITE "${JOINED}" "${asserts}\n${test}\nRunAndQuit")
if(extension STREQUAL ".js")
    file(APPEND "${JOINED}" "();\n")
endif()
