# How the build is made fast from cold on a small machine: a faster linker, the big targets
# compiled in batches of files, and the Qt headers they all include precompiled once per target.
# Each can be switched off; a build with TAGMOOR_UNITY=OFF and TAGMOOR_PCH=OFF is the plain one
# that shows a missing include.
option(TAGMOOR_UNITY "Compile the libraries, the programs and the tests in batches of files" ON)
set(TAGMOOR_UNITY_BATCH 8 CACHE STRING "How many files one batch of a unity build holds")
option(TAGMOOR_PCH "Precompile the Qt headers of the biggest targets" ON)
option(TAGMOOR_OPTIMIZE_TESTS "Optimise the tests' own code as the build type says" OFF)
option(TAGMOOR_FULL_DEBUG_INFO "Full debug information (-g) in a RelWithDebInfo build" OFF)
set(TAGMOOR_LINKER auto CACHE STRING "The linker: auto (mold, then lld, then the default), mold, lld or default")
set_property(CACHE TAGMOOR_LINKER PROPERTY STRINGS auto mold lld default)

# The linker. The default one takes seconds over each test binary's debug information; mold and
# lld a fraction of that. A named one that the compiler cannot use stops the configuration.
include(CheckLinkerFlag)
set(_tagmoor_linkers ${TAGMOOR_LINKER})
if(TAGMOOR_LINKER STREQUAL "auto")
  set(_tagmoor_linkers mold lld)
elseif(TAGMOOR_LINKER STREQUAL "default")
  set(_tagmoor_linkers)
endif()
foreach(linker ${_tagmoor_linkers})
  check_linker_flag(CXX -fuse-ld=${linker} TAGMOOR_HAS_LINKER_${linker})
  if(TAGMOOR_HAS_LINKER_${linker})
    add_link_options(-fuse-ld=${linker})
    message(STATUS "Linking with ${linker}")
    break()
  elseif(NOT TAGMOOR_LINKER STREQUAL "auto")
    message(FATAL_ERROR "TAGMOOR_LINKER=${linker}, but the compiler cannot link with it")
  endif()
endforeach()

# A RelWithDebInfo build carries line tables only (-g1): enough for backtraces, the sanitizers'
# reports and profiles, at three quarters of the compile time of full information.
# TAGMOOR_FULL_DEBUG_INFO=ON gives a debugger the variables too.
if(NOT TAGMOOR_FULL_DEBUG_INFO)
  add_compile_options($<$<CONFIG:RelWithDebInfo>:-g1>)
endif()

# A precompiled header is only taken from the compiler cache when ccache is told that the
# header's own timestamps and macros may be ignored.
if(TAGMOOR_PCH AND CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache")
  find_program(TAGMOOR_ENV env REQUIRED)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TAGMOOR_ENV}
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()

# tagmoor_speed_up(TARGET [UNITY] [PCH header...]): a unity build of TARGET and a precompiled
# header of the headers named. Files with definitions of their own stay out of the batches.
function(tagmoor_speed_up target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "UNITY" "" "PCH")
  if(arg_UNITY AND TAGMOOR_UNITY)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON
      UNITY_BUILD_BATCH_SIZE ${TAGMOOR_UNITY_BATCH})
    # GCC takes every file of a batch but the first for a header, and warns of a class that
    # holds a type of the file's anonymous namespace, which is fine in a source file.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
  endif()
  if(arg_PCH AND TAGMOOR_PCH)
    target_precompile_headers(${target} PRIVATE ${arg_PCH})
  endif()
endfunction()

# tagmoor_test_code(TARGET...): the tests' own code is compiled without optimisation. It drives a
# core that is optimised and runs for moments, while the optimiser takes two thirds of its
# compile time (GoogleTest's and Qt Test's macros expand to much code). The sanitizers check it
# all the same; TAGMOOR_OPTIMIZE_TESTS=ON compiles it as the build type says.
function(tagmoor_test_code)
  if(NOT TAGMOOR_OPTIMIZE_TESTS)
    foreach(target ${ARGN})
      target_compile_options(${target} PRIVATE -O0)
    endforeach()
  endif()
endfunction()
