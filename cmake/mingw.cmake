# Common to the toolchain files of 32-bit and 64-bit Windows, which set `triple` and `wine`: GCC with the win32 thread
# model. The posix model's static runtime leaks thread-local slots and handles when the library is unloaded; this one
# does not, together with runtime/.
set(CMAKE_SYSTEM_NAME Windows)
# WINDOWS_COMPILER=clang compiles with Clang, with the headers and libraries of that GCC.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WINDOWS_COMPILER)
set(gcc ${triple}-g++-win32)
if(WINDOWS_COMPILER STREQUAL clang)
    execute_process(COMMAND ${gcc} -print-libgcc-file-name
        OUTPUT_VARIABLE libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    cmake_path(GET libgcc PARENT_PATH gcc_folder)
    set(CMAKE_CXX_COMPILER clang++-19)
    set(CMAKE_CXX_COMPILER_TARGET ${triple})
    string(JOIN " " CMAKE_CXX_FLAGS_INIT -nostdinc++ -isystem ${gcc_folder}/include/c++
        -isystem ${gcc_folder}/include/c++/${triple})
    # The linker warns of type information that both compilers emit, in sections of different size.
    set(link_flags "-B${gcc_folder} -L${gcc_folder} -Wl,--no-warnings")
    set(CMAKE_EXE_LINKER_FLAGS_INIT ${link_flags})
    set(CMAKE_SHARED_LINKER_FLAGS_INIT ${link_flags})
else()
    set(CMAKE_CXX_COMPILER ${gcc})
endif()
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
# Header-only libraries come from the host.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/${wine})
