# 32-bit Windows, with Debian's mingw-w64: what the classic automation clients and the legacy engine need.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(prefix i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
# Exported functions are called by their plain names, not by those with the size of their arguments.
string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -Wl,--enable-stdcall-fixup")
# Exceptions find their handlers by address, and a function's cold part may be empty: it would stand where another one
# begins, and hide it, so that a refused operation would end the program.
set(CMAKE_CXX_FLAGS_INIT -fno-reorder-blocks-and-partition)
