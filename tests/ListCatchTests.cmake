# Read by ctest, see CatchTests.cmake. An executable that cannot list its tests is a failing test.
execute_process(COMMAND ${command} --list-test-names-only OUTPUT_VARIABLE output ERROR_VARIABLE output)
# The exit code is the number of tests, so what counts is what was listed.
string(REGEX MATCHALL "[A-Za-z0-9_]+" names "${output}")
if(NOT output MATCHES "^([A-Za-z0-9_]+\r?\n)+$")
    add_test(${target}_cannot_list_its_tests ${CMAKE_COMMAND} -E false)
    return()
endif()
foreach(name IN LISTS names)
    add_test(${name} ${command} ${name})
    if(properties)
        set_tests_properties(${name} PROPERTIES ${properties})
    endif()
endforeach()
