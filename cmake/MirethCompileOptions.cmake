# Warnings and sanitizers. Every target of ours links `mireth_options`; nothing of it is installed.
option(MIRETH_WERROR "Treat warnings as errors" OFF)

add_library(mireth_options INTERFACE)
target_compile_options(mireth_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor
  $<$<BOOL:${MIRETH_WERROR}>:-Werror>)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 reports false positives of these inside its own standard library and in coroutine frames.
  target_compile_options(mireth_options INTERFACE
    -Wno-maybe-uninitialized -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Clang reports what GCC's standard library calls inside its own stable sorts; GCC keeps watch over our calls.
  target_compile_options(mireth_options INTERFACE -Wno-deprecated-declarations)
endif()

if(MIRETH_SANITIZER STREQUAL "address")
  set(_sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(MIRETH_SANITIZER STREQUAL "thread")
  set(_sanitize -fsanitize=thread -fno-omit-frame-pointer)
elseif(MIRETH_SANITIZER STREQUAL "fuzzer")
  set(_sanitize -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(NOT MIRETH_SANITIZER STREQUAL "none")
  message(FATAL_ERROR "MIRETH_SANITIZER is '${MIRETH_SANITIZER}'; it may be none, address, thread or fuzzer")
endif()
if(_sanitize)
  target_compile_options(mireth_options INTERFACE ${_sanitize})
  target_link_options(mireth_options INTERFACE ${_sanitize})
endif()

# Clones of this repository share what they compile, wherever they lie.
if(MIRETH_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(CCACHE_PROGRAM ccache)
  if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE_PROGRAM})
  endif()
endif()
