# Common settings and the two helpers every folder uses.

# -Wrestrict is off: GCC 12 reports std::string assignments at -O2 as overlapping
# copies (a known false positive of that compiler), which would drown real warnings.
set(ZOL_WARNINGS -Wall -Wextra -Wpedantic -Wno-unused-parameter $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

function(zol_apply_common target)
  target_compile_options(${target} PRIVATE ${ZOL_WARNINGS})
  if(ZOLMARK_SANITIZE)
    # float-cast-overflow: a double read from a file and cast to an integer
    # out of its range is undefined, and damaged files are common input.
    target_compile_options(
      ${target} PRIVATE -fsanitize=address,undefined,float-cast-overflow -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined,float-cast-overflow)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined,float-cast-overflow)
  endif()
  if(ZOLMARK_FUZZ)
    # Coverage feedback for libFuzzer in every library the fuzzers reach.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# zol_library(NAME DEPS dep...): one static library per source folder. Every .cpp
# in the folder (recursively) belongs to it; headers are included as "NAME/x.h".
function(zol_library name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(zol_${name} STATIC ${srcs})
  target_include_directories(zol_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src ${CMAKE_BINARY_DIR}/generated)
  target_link_libraries(zol_${name} PUBLIC ${ARG_DEPS})
  zol_apply_common(zol_${name})
endfunction()

# zol_test(NAME DEPS dep...): one GoogleTest executable per tests/ folder.
function(zol_test name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT srcs)
    # A suite whose folder has no tests yet builds nothing.
    return()
  endif()
  add_executable(test_${name} ${srcs})
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPS} GTest::gtest GTest::gtest_main GTest::gmock)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  zol_apply_common(test_${name})
  gtest_discover_tests(test_${name} DISCOVERY_TIMEOUT 60
                       PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
