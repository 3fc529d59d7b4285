# Catch2 is a header of the build machine, in a folder with that machine's system headers. Only Catch's headers are
# copied, so a cross compiler does not find the others.
if(NOT TARGET catch2_header)
    file(COPY ${CATCH2_INCLUDE}/catch2 DESTINATION ${CMAKE_BINARY_DIR}/catch2_header)
    add_library(catch2_header INTERFACE)
    target_include_directories(catch2_header SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/catch2_header)
endif()

# Precompiles Catch's header for these targets, because it takes longer to compile than most tests. They share one
# precompiled header, which takes 84 MB. Files that configure Catch include it themselves.
function(precompile_catch)
    if(NOT TARGET precompiled_catch)
        file(WRITE ${CMAKE_BINARY_DIR}/precompiled_catch.cpp "")
        add_library(precompiled_catch OBJECT ${CMAKE_BINARY_DIR}/precompiled_catch.cpp)
        target_link_libraries(precompiled_catch PRIVATE catch2_header jobobjects_options)
        target_precompile_headers(precompiled_catch PRIVATE <catch2/catch.hpp>)
    endif()
    foreach(target IN LISTS ARGN)
        target_precompile_headers(${target} REUSE_FROM precompiled_catch)
    endforeach()
endfunction()

# Registers each test case of an executable as a separate test, run by RunToEnd.cmake. ctest lists the test cases when
# it starts, so that a build never runs the executable. Further arguments are properties of all its tests.
function(register_catch_tests target)
    # Parsed this way, a value may be a list, such as "registered\;written_xml_folder".
    cmake_parse_arguments(PARSE_ARGV 1 properties "" "" "")
    set(list_file ${CMAKE_CURRENT_BINARY_DIR}/${target}_tests.cmake)
    file(GENERATE OUTPUT ${list_file} CONTENT "set(target ${target})
set(command ${CMAKE_CROSSCOMPILING_EMULATOR} \"$<TARGET_FILE:${target}>\")
set(cmake \"${CMAKE_COMMAND}\")
set(properties [=[${properties_UNPARSED_ARGUMENTS}]=])
include(\"${PROJECT_SOURCE_DIR}/tests/ListCatchTests.cmake\")
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${list_file})
endfunction()
