# Linux: the pure code, the catalogue printer, and by option tests, benchmarks and fuzz targets.
find_package(Threads REQUIRED)

add_executable(print_catalogue tools/print_catalogue.cpp)
target_link_libraries(print_catalogue PRIVATE wfinfo_pure)

# The small host's portable half: mail decoding and the macro language.
file(GLOB_RECURSE host_pure_sources CONFIGURE_DEPENDS host/*.cpp)
list(FILTER host_pure_sources EXCLUDE REGEX "_win\\.cpp$")
if(WFINFO_BENCH OR WFINFO_COVERAGE OR WFINFO_MUTANTS)
  set(host_pure_sources)  # these measure the library alone
endif()
if(host_pure_sources)
  include(cmake/gumbo.cmake)
  add_library(host_pure STATIC ${host_pure_sources})
  target_link_libraries(host_pure PUBLIC wfinfo_pure PRIVATE gumbo)
endif()

if(WFINFO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  target_compile_options(wfinfo_pure PRIVATE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  if(host_pure_sources)
    target_compile_options(host_pure PRIVATE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  endif()
endif()

# One program for each fuzz target. Under libFuzzer it searches; otherwise it replays the corpus, one test each.
file(GLOB fuzz_targets CONFIGURE_DEPENDS fuzz/fuzz_*.cpp)
if(NOT WFINFO_BENCH)
  enable_testing()
  foreach(source ${fuzz_targets})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE wfinfo_pure)
    if(host_pure_sources)
      target_link_libraries(${name} PRIVATE host_pure)
    endif()
    if(WFINFO_FUZZ)
      target_link_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined)
    else()
      target_sources(${name} PRIVATE fuzz/replay_main.cpp)
      string(REPLACE fuzz_ "" corpus ${name})
      add_test(NAME fuzz_replay.${corpus} COMMAND ${name} ${CMAKE_SOURCE_DIR}/fuzz/corpus/${corpus})
      set_tests_properties(fuzz_replay.${corpus} PROPERTIES TIMEOUT 120)
    endif()
  endforeach()
endif()

if(WFINFO_BENCH)
  find_package(benchmark REQUIRED)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(GMIME IMPORTED_TARGET gmime-3.0)
  # One program for each subject; a peer that is not installed is left out.
  file(GLOB bench_sources CONFIGURE_DEPENDS bench/bench_*.cpp)
  foreach(source ${bench_sources})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE wfinfo_pure benchmark::benchmark benchmark::benchmark_main)
    if(GMIME_FOUND)
      target_link_libraries(${name} PRIVATE PkgConfig::GMIME)
      target_compile_definitions(${name} PRIVATE WFINFO_WITH_GMIME)
    endif()
    # What a benchmark needs beyond this stands in a file of its own name.
    if(EXISTS ${CMAKE_SOURCE_DIR}/bench/${name}.cmake)
      include(${CMAKE_SOURCE_DIR}/bench/${name}.cmake)
    endif()
  endforeach()
elseif(NOT WFINFO_FUZZ)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  include(GoogleTest)
  # Pure units, by subject; the folders left out hold what needs Windows.
  file(GLOB_RECURSE test_sources CONFIGURE_DEPENDS tests/*_test.cpp)
  list(FILTER test_sources EXCLUDE REGEX "/tests/(dll|doubles|faults|inside|kit/[a-z]+|soak|torture)/")
  if(NOT host_pure_sources)
    list(FILTER test_sources EXCLUDE REGEX "/tests/host/")
  endif()
  add_executable(native_tests ${test_sources})
  target_link_libraries(native_tests PRIVATE wfinfo_pure GTest::gmock_main)
  # The pure half of the test kit's runner.
  file(GLOB kit_sources CONFIGURE_DEPENDS tools/kit/*.cpp)
  list(FILTER kit_sources EXCLUDE REGEX "_win\\.cpp$")
  target_sources(native_tests PRIVATE ${kit_sources})
  if(host_pure_sources)
    target_link_libraries(native_tests PRIVATE host_pure)
  endif()
  if(WFINFO_COVERAGE OR WFINFO_MUTANTS)
    # At -O1 GCC 12 sees overruns inside std::string where there are none. Other presets warn.
    target_compile_options(native_tests PRIVATE -w)
  endif()
  if(WFINFO_MUTANTS)
    target_sources(native_tests PRIVATE tests/support/mutant_listener.cpp)
    target_link_options(native_tests PRIVATE -rdynamic)  # the changed file finds the number of the living mutant
  endif()
  target_precompile_headers(native_tests PRIVATE <gtest/gtest.h> <filesystem> <random> <string> <vector>)
  # Only those that read files of the repository know its folder: the others compile alike in every checkout.
  set_source_files_properties(tests/commands/account_fields_test.cpp tests/catalogue/catalogue_test.cpp
    tests/host/mail/sample_mails_test.cpp tests/host/charset/names_test.cpp tests/host/charset/imap_utf7_test.cpp
    PROPERTIES
    COMPILE_DEFINITIONS WFINFO_SOURCE_DIR="${CMAKE_SOURCE_DIR}" SKIP_PRECOMPILE_HEADERS ON)
  if(host_pure_sources)
    # Mails read by the host and by Python.
    add_executable(read_mail tools/read_mail.cpp)
    target_link_libraries(read_mail PRIVATE host_pure)
    add_test(NAME native.mail_corpus COMMAND python3 ${CMAKE_SOURCE_DIR}/tests/corpus/test_corpus.py)
    set_tests_properties(native.mail_corpus PROPERTIES TIMEOUT 120
      ENVIRONMENT "WFINFO_READ_MAIL=$<TARGET_FILE:read_mail>;PYTHONDONTWRITEBYTECODE=1")
  endif()
  gtest_discover_tests(native_tests TEST_PREFIX native. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endif()
