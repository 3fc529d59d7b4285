# Flags that every target of the system is built with.
add_library(jobobjects_options INTERFACE)
target_include_directories(jobobjects_options INTERFACE ${PROJECT_SOURCE_DIR})
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(jobobjects_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        -Woverloaded-virtual -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # GCC 12 sees overlapping copies in std::string that are none.
        target_compile_options(jobobjects_options INTERFACE -Wno-restrict)
    endif()
    # Wine's backtraces cannot read DWARF 5.
    add_compile_options(-gdwarf-4)
    # What is built does not tell in which folder it was built.
    add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
if(WIN32)
    add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
    if(MINGW)
        # 32-bit callers align the stack to 4 bytes only.
        add_compile_options(-mstackrealign)
        # What other Windows compilers take for granted: the parser's searches and plain double precision.
        add_compile_options(-msse2 -mfpmath=sse)
        # Without -static the DLL would import the compiler's own runtime DLLs.
        add_link_options(-static)
        # What is built does not tell when it was built.
        add_link_options(-Wl,--no-insert-timestamp)
    endif()
endif()

# What the product alone is built with, beside the flags above.
add_library(product_options INTERFACE)
target_link_libraries(product_options INTERFACE jobobjects_options)
if(MINGW)
    # Ends the process when a buffer on the stack was overrun.
    target_compile_options(product_options INTERFACE -fstack-protector-strong)
    target_link_libraries(product_options INTERFACE stack_guard)
endif()
