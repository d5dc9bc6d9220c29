# `cmake --build build/<preset> --target lint`: clang-tidy over our sources, warnings are errors.

find_program(RUN_CLANG_TIDY NAMES run-clang-tidy)
if(RUN_CLANG_TIDY)
    add_custom_target(lint
        COMMAND ${RUN_CLANG_TIDY} -quiet -p ${PROJECT_BINARY_DIR} "^${PROJECT_SOURCE_DIR}/(src|bench)/"
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
        USES_TERMINAL
        VERBATIM)
endif()
