# Compiles through ccache where it is installed: the presets share most of their objects between branches and builds.
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE} CACHE STRING "")
endif()
