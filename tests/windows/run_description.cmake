# The description that the server carries is the one that clients were promised.
execute_process(COMMAND ${EMULATOR} ${DESCRIBE} Z:${LIBRARY} OUTPUT_VARIABLE described COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r" "" described "${described}")
file(READ ${EXPECTED} expected)
if(NOT described STREQUAL expected)
  message(FATAL_ERROR "The description differs from ${EXPECTED}:\n${described}")
endif()
