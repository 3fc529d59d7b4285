# 32-bit Windows.
set(CMAKE_SYSTEM_PROCESSOR x86)
set(triple i686-w64-mingw32)
set(wine wine.sh)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
