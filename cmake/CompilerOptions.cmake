# Flags for every target.
add_library(jobobjects_options INTERFACE)
target_include_directories(jobobjects_options INTERFACE ${PROJECT_SOURCE_DIR})
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(jobobjects_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        -Woverloaded-virtual -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # GCC 12 falsely reports overlapping copies in std::string.
        target_compile_options(jobobjects_options INTERFACE -Wno-restrict)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # stable_sort of GCC 12's library calls a function that the standard deprecates.
        target_compile_options(jobobjects_options INTERFACE -Wno-deprecated-declarations)
    endif()
    # Wine's backtraces cannot read DWARF 5.
    add_compile_options(-gdwarf-4)
    # Reproducible builds: keeps the path of the source folder out of the output.
    add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
if(WIN32)
    add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
    if(MINGW)
        if(CMAKE_SIZEOF_VOID_P EQUAL 4)
            # Callers on 32-bit Windows align the stack to 4 bytes, where GCC expects 16.
            add_compile_options(-mstackrealign)
            # Other Windows compilers do this by default. The parser's searches use SSE2, and the x87 would round
            # doubles twice.
            add_compile_options(-msse2 -mfpmath=sse)
        endif()
        # Without -static the DLL would import the compiler's own runtime DLLs.
        add_link_options(-static)
        # Reproducible builds: keeps the build time out of the output.
        add_link_options(-Wl,--no-insert-timestamp)
    endif()
endif()

# Additional flags for the product only.
add_library(product_options INTERFACE)
target_link_libraries(product_options INTERFACE jobobjects_options)
if(MINGW)
    # Ends the process on a stack buffer overrun.
    target_compile_options(product_options INTERFACE -fstack-protector-strong)
    target_link_libraries(product_options INTERFACE stack_guard)
endif()
