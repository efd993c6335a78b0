# The version as callers read it.
set(velmorcore_patch "${PROJECT_VERSION_PATCH}")
if(velmorcore_patch LESS 10)
    set(velmorcore_patch "0${velmorcore_patch}")
endif()
set(VELMORCORE_VERSION
    "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${velmorcore_patch}.${PROJECT_VERSION_TWEAK}")

# The commit that this tree was configured from; forty zeros outside a checkout.
set(VELMORCORE_VERSION_HASH "0000000000000000000000000000000000000000")
find_package(Git QUIET)
if(GIT_FOUND)
    execute_process(
        COMMAND "${GIT_EXECUTABLE}" rev-parse HEAD
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        OUTPUT_VARIABLE velmorcore_head OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET
        RESULT_VARIABLE velmorcore_head_result)
    string(LENGTH "${velmorcore_head}" velmorcore_head_length)
    if(velmorcore_head_result EQUAL 0 AND velmorcore_head_length EQUAL 40)
        set(VELMORCORE_VERSION_HASH "${velmorcore_head}")
    endif()
endif()
