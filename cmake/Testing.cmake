# Test programs: one CTest test for each executable, run under Wine when cross-compiled.
include(CTest)

if(EXISTS /usr/src/googletest/CMakeLists.txt)
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()

set(VORLANE_TEST_ENVIRONMENT)
if(CMAKE_CROSSCOMPILING)
  set(VORLANE_WINE_PREFIX ${CMAKE_BINARY_DIR}/wine)
  set(VORLANE_TEST_ENVIRONMENT
    WINEPREFIX=${VORLANE_WINE_PREFIX} WINEDEBUG=-all "WINEDLLOVERRIDES=winspool.drv=n,b\;mscoree=\;mshtml=")
  add_test(NAME wine_prefix COMMAND ${CMAKE_SOURCE_DIR}/cmake/make-wine-prefix.sh ${VORLANE_WINE_PREFIX})
  set_tests_properties(wine_prefix PROPERTIES FIXTURES_SETUP wine_prefix TIMEOUT 300)
endif()

# Puts an existing test into the environment that every test of ours runs in.
function(vorlane_prepare_test name)
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${VORLANE_TEST_ENVIRONMENT}" TIMEOUT 900
    WORKING_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  if(CMAKE_CROSSCOMPILING)
    set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED wine_prefix)
  endif()
endfunction()

# Compiles a target as all tests are: with headers that are compiled already, and without the optimisation that the code
# under test has; tests build in half the time without.
function(vorlane_compile_as_test target)
  target_compile_options(${target} PRIVATE -O0)
  target_precompile_headers(${target} REUSE_FROM vorlane_test_main)
endfunction()

# vorlane_add_test(name SOURCES file... [LIBRARIES target...] [SHARDS number])
# SHARDS: a long program runs as so many CTest tests, name_1 and so on, each with its share of the tests.
function(vorlane_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SHARDS" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} vorlane_test_support)
  vorlane_compile_as_test(${name})
  if(NOT arg_SHARDS)
    add_test(NAME ${name} COMMAND ${name})
    vorlane_prepare_test(${name})
    return()
  endif()
  foreach(shard RANGE 1 ${arg_SHARDS})
    add_test(NAME ${name}_${shard} COMMAND ${name})
    vorlane_prepare_test(${name}_${shard})
    math(EXPR index "${shard} - 1")
    set_property(TEST ${name}_${shard} APPEND PROPERTY
      ENVIRONMENT GTEST_TOTAL_SHARDS=${arg_SHARDS} GTEST_SHARD_INDEX=${index})
  endforeach()
endfunction()
