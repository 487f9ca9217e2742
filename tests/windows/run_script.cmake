# Runs SCRIPT in FOLDER with the script host, on a new ledger of the tests' company.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
set(ledger ${FOLDER}/company.tsv)
execute_process(COMMAND ${EMULATOR} ${COMPANY} Z:${ledger} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${EMULATOR} ${HOST} Z:${SCRIPT} Z:${ledger} COMMAND_ERROR_IS_FATAL ANY)
