# Compiler settings shared by every target of this tree.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

option(VELMORCORE_WERROR "Treat warnings as errors" OFF)
set(VELMORCORE_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them (address,undefined or thread)")

add_library(velmorcore_settings INTERFACE)
target_compile_options(velmorcore_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(VELMORCORE_WERROR)
    target_compile_options(velmorcore_settings INTERFACE -Werror)
endif()
# __FILE__ goes into log lines: keep it relative, so that no path of the build machine gets into the product.
target_compile_options(velmorcore_settings INTERFACE "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
if(VELMORCORE_SANITIZE)
    target_compile_options(velmorcore_settings INTERFACE
        -fsanitize=${VELMORCORE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velmorcore_settings INTERFACE -fsanitize=${VELMORCORE_SANITIZE})
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(velmorcore_settings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wthread-safety>)
endif()

# What distributions build with. A sanitizer brings checks of its own, which the fortified functions would hide
# the memory accesses from.
if(NOT VELMORCORE_SANITIZE AND NOT MSVC)
    include(CheckCXXCompilerFlag)
    target_compile_options(velmorcore_settings INTERFACE -fstack-protector-strong
        # Only with optimisation, which a build without a type doesn't have.
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
    # Not on every processor.
    foreach(flag -fstack-clash-protection -fcf-protection)
        string(MAKE_C_IDENTIFIER "velmorcore_has${flag}" velmorcore_has_flag)
        check_cxx_compiler_flag(${flag} ${velmorcore_has_flag})
        if(${velmorcore_has_flag})
            target_compile_options(velmorcore_settings INTERFACE ${flag})
        endif()
    endforeach()
endif()
if(UNIX AND NOT APPLE)
    target_link_options(velmorcore_settings INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
