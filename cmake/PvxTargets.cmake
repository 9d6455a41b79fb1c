# The build's rules in one place: language, warnings, where results lie, and one function for each kind of target.
# Every folder is one target and takes all the sources that lie directly in it.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Programs and the libraries they load lie side by side, so that a build folder works from wherever it is put.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH $ORIGIN)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Without leave it takes no source that uses compiled headers.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(PvxOptions INTERFACE)
target_compile_options(PvxOptions INTERFACE
  -Wall -Wextra -Wshadow -Wconversion
  # The same scene has to give the same bytes on every machine, so no fused operations behind our back.
  -ffp-contract=off
  $<$<BOOL:${PVX_WERROR}>:-Werror>)
target_include_directories(PvxOptions INTERFACE ${CMAKE_SOURCE_DIR})
if(PVX_SANITIZE)
  target_compile_options(PvxOptions INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # With the sanitizers' code in between, the compiler loses track of values in the standard library's headers.
    -Wno-maybe-uninitialized)
  target_link_options(PvxOptions INTERFACE -fsanitize=address,undefined)
endif()

if(PVX_GLOBAL_POOLS)
  if(PVX_SANITIZE)
    message(FATAL_ERROR "PVX_GLOBAL_POOLS and PVX_SANITIZE both want the allocation functions: choose one")
  endif()
  # The pools replace the allocation functions of every program, whether it uses pools by name or not.
  set(PVX_PROGRAM_DEPS Memory)
endif()

# What there is once in a process lies in its program, which shows it to the modules it loads (PROCESS below).
string(APPEND CMAKE_EXE_LINKER_FLAGS " -rdynamic")
# So does the C++ library, inside the program or loaded with it, and modules don't ask for one. A program with its own
# has it whole, since a module may need any of it. The sanitizers want to see the shared one everywhere.
if(NOT PVX_SANITIZE)
  set(PVX_OWN_RUNTIME -static-libstdc++ LINKER:--whole-archive,-l:libstdc++.a,--no-whole-archive)
  set(PVX_MODULE_RUNTIME -nodefaultlibs)
  # All but that one, behind everything that needs them; a program asks for them anyway.
  string(APPEND CMAKE_CXX_STANDARD_LIBRARIES " -lm -lgcc_s -lgcc -lc")
endif()

# With a small scene the loader's work is a good part of a program's time. In this form it moves addresses the fastest.
add_link_options(LINKER:-z,pack-relative-relocs)

# The headers are most of a compilation; a batch reads them once. More sources a batch leave a core idle at a folder's end.
set(PVX_UNITY_BATCH 12)

function(pvx_sources out)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  set(${out} ${sources} PARENT_SCOPE)
endfunction()

# Compiles the target's sources several at a time, so what is local to one of them has a name of its own in its folder.
function(pvx_unity name)
  if(PVX_UNITY)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${PVX_UNITY_BATCH})
    # What is local to a source looks to the compiler as if a header held it.
    target_compile_options(${name} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()

# pvx_library(NAME [STATIC|MODULE|OBJECT|PROCESS] [DEPS target...] [PRIVATE_DEPS target...])
# From a static library the linker takes what somebody refers to; of an OBJECT one it takes all, and so keeps static
# objects that register themselves. They go into the targets that name it as their own dependency, and into no others.
# A PROCESS one has a state that there must be once in a process: its objects (NAMEObjects) go into every program that
# depends on it, by whatever way, and into nothing else; modules find it in the program that loads them.
function(pvx_library name)
  cmake_parse_arguments(ARG "STATIC;MODULE;OBJECT;PROCESS" "" "DEPS;PRIVATE_DEPS" ${ARGN})
  set(kind STATIC)
  if(ARG_MODULE)
    set(kind MODULE)
  elseif(ARG_OBJECT)
    set(kind OBJECT)
  elseif(ARG_PROCESS)
    pvx_process_library(${name} DEPS ${ARG_DEPS} PRIVATE_DEPS ${ARG_PRIVATE_DEPS})
    return()
  endif()
  pvx_sources(sources)
  if(NOT sources)
    # A folder of headers alone.
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE PvxOptions ${ARG_DEPS})
    return()
  endif()
  add_library(${name} ${kind} ${sources})
  pvx_unity(${name})
  target_link_libraries(${name} PUBLIC PvxOptions ${ARG_DEPS} PRIVATE ${ARG_PRIVATE_DEPS})
  if(ARG_MODULE)
    pvx_module(${name})
  endif()
endfunction()

function(pvx_process_library name)
  cmake_parse_arguments(ARG "" "" "DEPS;PRIVATE_DEPS" ${ARGN})
  pvx_sources(sources)
  add_library(${name}Objects OBJECT ${sources})
  pvx_unity(${name}Objects)
  target_link_libraries(${name}Objects PUBLIC PvxOptions ${ARG_DEPS} PRIVATE ${ARG_PRIVATE_DEPS})

  # The type asked for is that of whoever links the library.
  set(in_program $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
  add_library(${name} INTERFACE)
  target_link_libraries(${name} INTERFACE PvxOptions ${ARG_DEPS})
  foreach(dependency IN ITEMS $<TARGET_OBJECTS:${name}Objects> LISTS ARG_PRIVATE_DEPS)
    target_link_libraries(${name} INTERFACE $<${in_program}:${dependency}>)
  endforeach()
endfunction()

# A module shows its entry points alone, which have C names. All else that it links stays its own affair, even where the
# program that loads it has the same. It finds other modules beside itself, wherever the program lies.
function(pvx_module name)
  set(shown ${CMAKE_SOURCE_DIR}/cmake/module.map)
  target_link_options(${name} PRIVATE LINKER:--exclude-libs,ALL LINKER:--version-script,${shown} ${PVX_MODULE_RUNTIME})
  set_target_properties(${name} PROPERTIES LINK_DEPENDS ${shown} BUILD_RPATH $ORIGIN)
endfunction()

# pvx_program(NAME [OWN_RUNTIME] [DEPS target...])
# A program with the C++ library of its own starts in three quarters of the time: to put the shared one in place takes
# the loader longer than a small scene takes the program. One that is linked with a shared library of C++ gains nothing.
function(pvx_program name)
  cmake_parse_arguments(ARG "OWN_RUNTIME" "" "DEPS" ${ARGN})
  pvx_sources(sources)
  add_executable(${name} ${sources})
  pvx_unity(${name})
  target_link_libraries(${name} PRIVATE PvxOptions ${PVX_PROGRAM_DEPS} ${ARG_DEPS})
  if(ARG_OWN_RUNTIME)
    target_link_options(${name} PRIVATE ${PVX_OWN_RUNTIME})
  endif()
endfunction()

# The test framework's headers take half of the time that a test's source takes. They are compiled once, with the first
# test program, whose flags all others share.
function(pvx_test_headers name)
  get_property(first GLOBAL PROPERTY PVX_FIRST_TEST)
  if(NOT PVX_UNITY)
    return()
  elseif(first)
    target_precompile_headers(${name} REUSE_FROM ${first})
  else()
    target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    set_property(GLOBAL PROPERTY PVX_FIRST_TEST ${name})
  endif()
endfunction()

# pvx_test(NAME [DEPS target...]): the tests of one folder, each of them known to ctest by its own name.
function(pvx_test name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  find_package(GTest REQUIRED)
  include(GoogleTest)
  pvx_sources(sources)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE PvxOptions ${PVX_PROGRAM_DEPS} ${ARG_DEPS} GTest::gmock GTest::gtest_main)
  # A test runs once, so optimizing it costs more than it saves. The code under test is as optimized as ever.
  target_compile_options(${name} PRIVATE -O0)
  pvx_test_headers(${name})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()

# pvx_benchmark(NAME [DEPS target...])
function(pvx_benchmark name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  find_package(benchmark REQUIRED)
  pvx_sources(sources)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE PvxOptions ${PVX_PROGRAM_DEPS} ${ARG_DEPS} benchmark::benchmark_main)
endfunction()
