# Adds a test that runs a program, whose last line must match closing_line, a regular expression (RunToEnd.cmake).
# Further arguments are the command line, starting with the emulator if any.
function(add_program_test name closing_line)
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} "-DCOMMAND=${ARGN}" "-DCLOSING_LINE=${closing_line}"
        -P ${PROJECT_SOURCE_DIR}/tests/RunToEnd.cmake)
endfunction()

# The same for a Catch program that runs all its test cases in one process.
function(add_catch_program_test name)
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} "-DCOMMAND=${ARGN}" -P ${PROJECT_SOURCE_DIR}/tests/RunToEnd.cmake)
endfunction()
