# 64-bit Windows.
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(triple x86_64-w64-mingw32)
set(wine wine64.sh)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
