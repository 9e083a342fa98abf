# SPDX-License-Identifier: MIT
# Language level, warnings and sanitizers, the same for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_package(Threads REQUIRED)

add_compile_options(-Wall -Wextra -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps in the concatenation of std::string that are not there (GCC bug 105651).
  add_compile_options(-Wno-restrict)
endif()
if(ORVALIS_WERROR)
  add_compile_options(-Werror)
endif()
if(ORVALIS_SANITIZE)
  add_compile_options(-fsanitize=${ORVALIS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ORVALIS_SANITIZE})
endif()
if(ORVALIS_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link) # for coverage; the fuzzers alone link libFuzzer
endif()
if(ORVALIS_COVERAGE)
  add_link_options(--coverage)
endif()

# orvalis_count_coverage(<target>): only what is shipped is counted, not the tests.
function(orvalis_count_coverage target)
  if(ORVALIS_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic -O0)
  endif()
endfunction()

option(ORVALIS_JOIN_SOURCES "Compile several sources of a target together: a whole build is faster, a change slower" OFF)

# orvalis_join_sources(<target>): headers are then read once for every eight sources.
function(orvalis_join_sources target)
  if(NOT ORVALIS_JOIN_SOURCES)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A class of an anonymous namespace is private to its source; here the compiler takes the source for a header.
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
  endif()
endfunction()

# orvalis_viewer_part(<name> SOURCES ... [LINK ...])
# One folder of the viewer as a static library that the executable and the tests link. The camera
# library is left out on purpose: the executable links the real one, tests may link another.
function(orvalis_viewer_part name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON)
  orvalis_join_sources(${name})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC Qt5::Widgets Threads::Threads ${ARG_LINK})
  orvalis_count_coverage(${name})
endfunction()
