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
    # Wine's backtraces cannot read DWARF 5.
    add_compile_options(-gdwarf-4)
    # Reproducible builds: no build folder in the output.
    add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
if(WIN32)
    add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
    if(MINGW)
        # 32-bit Windows callers align the stack to 4 bytes only.
        add_compile_options(-mstackrealign)
        # The default of other Windows compilers. The parser's searches use SSE2, and double arithmetic is not rounded
        # twice as on the x87.
        add_compile_options(-msse2 -mfpmath=sse)
        # Without -static the DLL would import the compiler's own runtime DLLs.
        add_link_options(-static)
        # Reproducible builds: no build time in the output.
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
