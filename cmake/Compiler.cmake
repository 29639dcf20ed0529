# GCC 12 and older miscompile coroutines: a bare co_await as a condition crashes, and temporaries
# in the same statement as a co_await are destroyed twice.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    message(FATAL_ERROR
        "GCC ${CMAKE_CXX_COMPILER_VERSION} miscompiles coroutines (it frees temporaries twice). "
        "Build with clang 17 or newer, or GCC 13 or newer: on Debian 12 use the presets, which take clang++-19.")
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 17)
    message(FATAL_ERROR "clang ${CMAKE_CXX_COMPILER_VERSION} is too old: version 17 or newer is needed for coroutines.")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(VARNET_LLD NAMES ld.lld-19 ld.lld)
if(VARNET_LLD AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_link_options(-fuse-ld=${VARNET_LLD})
endif()

# Flags of our own code; imported targets bring theirs as system headers.
add_library(varnet_flags INTERFACE)
target_compile_options(varnet_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
target_include_directories(varnet_flags INTERFACE ${PROJECT_SOURCE_DIR})
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Lets ccache share precompiled headers between build folders.
    target_compile_options(varnet_flags INTERFACE "SHELL:-Xclang -fno-pch-timestamp")
endif()

if(VARNET_SANITIZE)
    add_compile_options(-fsanitize=${VARNET_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VARNET_SANITIZE})
endif()
