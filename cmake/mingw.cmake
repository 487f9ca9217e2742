# The compilers with POSIX threads: the others lack std::mutex. Everything is linked in, so that a file is enough.
set(CMAKE_C_COMPILER ${prefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${prefix}-g++-posix)
set(CMAKE_RC_COMPILER ${prefix}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -static")
string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -static")
# What is built here runs here too.
set(TSV_WINE wine CACHE STRING "The Wine that runs these programs")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine.sh ${CMAKE_BINARY_DIR}/wine ${TSV_WINE})
