# Read by ctest, see CatchTests.cmake. An executable that cannot list its tests becomes a failing test.
execute_process(COMMAND ${command} --list-test-names-only
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
string(REGEX MATCHALL "[A-Za-z0-9_]+" names "${output}")
# The exit code is the number of tests, at most 255, and reveals a truncated list.
list(LENGTH names count)
if(count GREATER 255)
    set(count 255)
endif()
if(NOT output MATCHES "^([A-Za-z0-9_]+\r?\n)+$" OR NOT result STREQUAL count)
    set(names ${target}_cannot_list_its_tests)
    set(command "${cmake}" -E echo "The list of tests broke off.")
endif()
foreach(name IN LISTS names)
    add_test(${name} "${cmake}" "-DCOMMAND=${command};${name}" -P "${CMAKE_CURRENT_LIST_DIR}/RunToEnd.cmake")
    if(properties)
        set_tests_properties(${name} PROPERTIES ${properties})
    endif()
endforeach()
