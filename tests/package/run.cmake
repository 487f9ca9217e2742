# Installs the build into a folder of its own and builds clients against it: by the CMake package, shared and static,
# and the README's example by pkg-config. Then the README's scenario is run.
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

include(${ROOT}/tests/readme.cmake)
readme_block(example "### From C++" cpp)
file(WRITE ${root}/example.cpp "${example}")
set(ENV{PKG_CONFIG_PATH} ${installed}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs tsvlib2 OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${COMPILER} ${root}/example.cpp -o ${root}/example ${flags})

# The scenario: on the command line in one ledger; from C++ in another, made by the same commands up to the first entry.
if(NOT TESOVIA)
  return()
endif()
set(ENV{TESOVIA_SENHA} segredo)
set(ENV{LD_LIBRARY_PATH} ${installed}/${LIBDIR})
cmake_path(GET TESOVIA PARENT_PATH commands)
readme_block(typed "### On the command line" sh)
string(REGEX REPLACE "export PATH=[^\n]*" "export PATH=${commands}:$PATH" typed "${typed}")
readme_block(statement "### On the command line" text)
file(WRITE ${root}/typed/commands.sh "${typed}")
run_and_expect(${root}/typed "${statement}" sh -e commands.sh)

string(REGEX REPLACE "\ntesovia lancar.*" "" masters "${typed}")
readme_block(lines "both print" text)
file(WRITE ${root}/programmed/commands.sh "${masters}")
run_and_expect(${root}/programmed "" sh -e commands.sh)
run_and_expect(${root}/programmed "${lines}" ${root}/example)

readme_block(more "## More of the command" sh)
set(settings "PATH=${commands}:$PATH TESOVIA_ARQUIVO=livro.tesovia TESOVIA_USUARIO=ana")
file(WRITE ${root}/typed/more.sh "export ${settings}\n${more}")
run_and_expect(${root}/typed "" sh -e more.sh)
