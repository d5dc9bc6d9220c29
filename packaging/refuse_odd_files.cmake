# Run before the show is installed: copying waits for a pipe for ever, and a link would lead elsewhere there.
execute_process(COMMAND find "${SHOW_SOURCE}" -name ".*" -prune -o ! -type d ! -type f -print
    OUTPUT_VARIABLE odd OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT odd STREQUAL "")
    message(FATAL_ERROR "Only files and folders can be installed, found: ${odd}")
endif()
