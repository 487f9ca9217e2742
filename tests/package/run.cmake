# Installs the build into a folder of its own and builds clients against it: by the CMake package, shared and static, and
# the README's example by pkg-config.
set(root ${BUILD}/package)
set(installed ${root}/installed)
file(REMOVE_RECURSE ${root})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${installed})
run(${CMAKE_COMMAND} -S ${ROOT}/tests/package -B ${root}/client -G Ninja -D CMAKE_PREFIX_PATH=${installed}
    -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_BUILD_TYPE=Debug)
run(${CMAKE_COMMAND} --build ${root}/client)
run(${root}/client/client)
run(${root}/client/client_static)

file(READ ${ROOT}/README.md readme)
string(REGEX MATCH "```cpp\n([^`]+)```" example "${readme}")
file(WRITE ${root}/example.cpp "${CMAKE_MATCH_1}")
set(ENV{PKG_CONFIG_PATH} ${installed}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs tsvlib2 OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${COMPILER} ${root}/example.cpp -o ${root}/example ${flags})
