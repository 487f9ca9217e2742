# Installs the build into a folder of its own, builds the client there by CMake package and by pkg-config, and runs it.
set(root ${BUILD}/package)
file(REMOVE_RECURSE ${root})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${root}/installed)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${root}/client -G Ninja -D CMAKE_PREFIX_PATH=${root}/installed
    -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_BUILD_TYPE=Debug)
run(${CMAKE_COMMAND} --build ${root}/client)
run(${root}/client/client)
run(${root}/client/client_static)
