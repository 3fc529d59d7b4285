# Catch2 is a header of the build machine in version 2, and sources in version 3, which is compiled here for the target.
# The header is copied, because its folder also has that machine's system headers.
if(NOT TARGET catch2_header)
    add_library(catch2_header INTERFACE)
    target_include_directories(catch2_header SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/catch2_header)
    find_path(CATCH2_INCLUDE catch2/catch.hpp NO_CMAKE_FIND_ROOT_PATH)
    if(CATCH2_INCLUDE)
        file(COPY ${CATCH2_INCLUDE}/catch2 DESTINATION ${CMAKE_BINARY_DIR}/catch2_header)
    else()
        find_path(CATCH2_SOURCES catch_amalgamated.cpp REQUIRED PATHS /usr/src/catch2 NO_CMAKE_FIND_ROOT_PATH)
        file(COPY ${CMAKE_CURRENT_LIST_DIR}/catch3/ DESTINATION ${CMAKE_BINARY_DIR}/catch2_header/catch2)
        add_library(catch2_sources STATIC ${CATCH2_SOURCES}/catch_amalgamated.cpp)
        target_include_directories(catch2_sources SYSTEM PUBLIC ${CATCH2_SOURCES})
        target_compile_definitions(catch2_sources PRIVATE CATCH_AMALGAMATED_CUSTOM_MAIN CATCH_CONFIG_NO_POSIX_SIGNALS)
        target_compile_options(catch2_sources PRIVATE -w)
        target_link_libraries(catch2_header INTERFACE catch2_sources)
    endif()
    # Precompiled because this header takes longer to compile than most tests. Files that configure Catch include it
    # themselves.
    target_precompile_headers(catch2_header INTERFACE <catch2/catch.hpp>)
endif()

# Registers each test case of an executable as a separate test, run by RunToEnd.cmake. ctest lists the test cases when
# it starts, so that a build never runs the executable. Further arguments are properties of all its tests.
function(register_catch_tests target)
    # Parsed this way, a value may be a list, such as "registered\;written_xml_folder".
    cmake_parse_arguments(PARSE_ARGV 1 properties "" "" "")
    set(list_file ${CMAKE_CURRENT_BINARY_DIR}/${target}_tests.cmake)
    if(CATCH2_INCLUDE)
        set(catch_version 2)
    else()
        set(catch_version 3)
    endif()
    file(GENERATE OUTPUT ${list_file} CONTENT "set(target ${target})
set(command ${CMAKE_CROSSCOMPILING_EMULATOR} \"$<TARGET_FILE:${target}>\")
set(catch_version ${catch_version})
set(cmake \"${CMAKE_COMMAND}\")
set(properties [=[${properties_UNPARSED_ARGUMENTS}]=])
include(\"${PROJECT_SOURCE_DIR}/tests/ListCatchTests.cmake\")
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${list_file})
endfunction()
