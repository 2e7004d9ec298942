# Cross-compiles for 32-bit Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# The tests run under a Wine of their own, which get_wine32.sh brings; without it they are built and stay disabled.
if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/../build/wine32/contents)
  set(ORVANE_WINE ${CMAKE_CURRENT_LIST_DIR}/wine.sh x86)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${ORVANE_WINE} run)
endif()
