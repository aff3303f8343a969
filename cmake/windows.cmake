# Windows: WFINFO.dll, the small host wrenfold.exe, and the tests of the exports under Wine.

# The catalogue printer runs on the building machine.
find_program(WFINFO_NATIVE_CXX NAMES g++ c++ REQUIRED)
set(printer ${CMAKE_BINARY_DIR}/print_catalogue)
file(GLOB catalogue_rows CONFIGURE_DEPENDS catalogue/*.def)
file(GLOB examples CONFIGURE_DEPENDS examples/*.macro examples/*.c)
add_custom_command(
  OUTPUT ${printer}
  COMMAND ${WFINFO_NATIVE_CXX} -std=c++20 -O1 -I${CMAKE_SOURCE_DIR}
          ${CMAKE_SOURCE_DIR}/tools/print_catalogue.cpp ${CMAKE_SOURCE_DIR}/src/catalogue/rows.cpp
          ${CMAKE_SOURCE_DIR}/src/catalogue/requests.cpp ${CMAKE_SOURCE_DIR}/src/catalogue/codes.cpp
          ${CMAKE_SOURCE_DIR}/src/catalogue/reference.cpp -o ${printer}
  DEPENDS tools/print_catalogue.cpp src/catalogue/rows.cpp src/catalogue/rows.h src/catalogue/row_macros.h
          src/catalogue/requests.cpp src/catalogue/requests.h src/catalogue/codes.cpp src/catalogue/codes.h catalogue/codes.inc
          src/catalogue/reference.cpp src/catalogue/reference.h src/bridge/host_protocol.h tools/examples.h
          ${catalogue_rows}
  COMMENT "Building the catalogue printer")
set(printed ${WFINFO_OUT}/WFINFO.def ${WFINFO_OUT}/wfinfo.h ${WFINFO_OUT}/reference.md ${WFINFO_OUT}/reference.json)
add_custom_command(
  OUTPUT ${printed}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${WFINFO_OUT}
  COMMAND ${printer} def > ${WFINFO_OUT}/WFINFO.def
  COMMAND ${printer} header ${PROJECT_VERSION} > ${WFINFO_OUT}/wfinfo.h
  COMMAND ${printer} markdown ${CMAKE_SOURCE_DIR}/examples > ${WFINFO_OUT}/reference.md
  COMMAND ${printer} json ${CMAKE_SOURCE_DIR}/examples > ${WFINFO_OUT}/reference.json
  DEPENDS ${printer} ${examples}
  COMMENT "Printing definition file, header and reference")
# Every export for other languages.
file(GLOB binding_heads CONFIGURE_DEPENDS tools/bindings/*)
set(bindings ${WFINFO_OUT}/bindings/cpp/wfinfo.hpp)
add_custom_command(
  OUTPUT ${bindings}
  COMMAND ${CMAKE_COMMAND} -E env PYTHONDONTWRITEBYTECODE=1 python3 ${CMAKE_SOURCE_DIR}/tools/make_bindings.py
          ${WFINFO_OUT}/reference.json ${WFINFO_OUT}/bindings
  DEPENDS tools/make_bindings.py src/text/full_width_table.cpp ${binding_heads} ${WFINFO_OUT}/reference.json
  COMMENT "Writing the bindings")
add_custom_target(catalogue_files ALL DEPENDS ${printed} ${bindings})

# What the library's own code is compiled with: host text literals in code page 932, no exceptions, no RTTI.
set(library_options -fexec-charset=CP932 -fno-exceptions -fno-rtti -fstack-protector-strong)
# Hardening of everything linked: address randomisation over 64 bits, no executable data.
set(hardening -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
# The same program whenever and wherever it is linked: without the time, and a library at an address that the compiler's
# driver does not take from the path of the file.
add_link_options(-Wl,--no-insert-timestamp)
string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,--image-base,0x180000000")
string(APPEND CMAKE_MODULE_LINKER_FLAGS " -Wl,--image-base,0x180000000")
# No folder of the building machine inside a program; a compiler cache calls the compiler with relative paths.
file(RELATIVE_PATH up ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR}/)
set(without_folders -ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -ffile-prefix-map=${CMAKE_BINARY_DIR}=build -ffile-prefix-map=${up}=)
add_compile_options(${without_folders})
# Lines for a debugger, without the compiler's options: a compiler cache gives them in another order.
set(traceable -g1 -gno-record-gcc-switches)
# keep_symbols_apart TARGET: its symbols go to out/symbols; nothing of them is loaded with the program. --preserve-dates
# keeps the time in its head as well, which objcopy else sets.
function(keep_symbols_apart target)
  set(symbols ${WFINFO_OUT}/symbols/$<TARGET_FILE_NAME:${target}>.debug)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${WFINFO_OUT}/symbols
    COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
    COMMAND ${CMAKE_OBJCOPY} --preserve-dates --strip-debug --add-gnu-debuglink=${symbols} $<TARGET_FILE:${target}>)
endfunction()

target_compile_options(wfinfo_pure PRIVATE ${library_options} ${traceable} ${without_folders})
# The compiler keeps vectors of 32 and 64 bytes on a stack that Windows aligns to 16 bytes only: have it use unaligned moves.
set(avx_sources ${pure_sources})
list(FILTER avx_sources INCLUDE REGEX "_avx(2|512)\\.cpp$")
set_source_files_properties(${avx_sources} PROPERTIES COMPILE_OPTIONS -Wa,-muse-unaligned-vector-move)

add_library(WFINFO SHARED ${windows_sources} ${library_only_source} resources/wfinfo.rc ${WFINFO_OUT}/WFINFO.def)
add_dependencies(WFINFO catalogue_files)
set_source_files_properties(${windows_sources} PROPERTIES OBJECT_DEPENDS "${catalogue_rows}")
# The resource compiler does not tell what it includes.
file(GLOB resource_parts CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/*)
set_source_files_properties(resources/wfinfo.rc PROPERTIES COMPILE_OPTIONS "-c;65001"
  OBJECT_DEPENDS "${resource_parts}")
target_compile_definitions(WFINFO PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
# The hot loops are pure code: what -O3 unrolls and copies of the rest only makes the library larger, and so does
# the compiler's name in each object. What works on short texts, or waits for the system, is made small.
target_compile_options(WFINFO PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${library_options};${traceable};-O2;-fno-ident>)
set(small_sources ${windows_sources} ${pure_sources})
list(FILTER small_sources INCLUDE REGEX "/src/(commands|desktop|libraries|mapi|openpgp|smime|timers)/")
set_source_files_properties(${small_sources} PROPERTIES COMPILE_OPTIONS -Os)
target_link_libraries(WFINFO PRIVATE wfinfo_pure)
target_link_options(WFINFO PRIVATE ${hardening} -fstack-protector-strong -Wl,-Map=WFINFO.map)
# The linker sorts what a program imports by the path of the import library. In the build folder that is a relative one.
set_target_properties(WFINFO PROPERTIES PREFIX "" OUTPUT_NAME WFINFO IMPORT_PREFIX lib
  RUNTIME_OUTPUT_DIRECTORY ${WFINFO_OUT} ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
add_custom_command(TARGET WFINFO POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_LINKER_FILE:WFINFO> ${WFINFO_OUT})
keep_symbols_apart(WFINFO)

# The small host, with a copy of the library beside it.
file(GLOB_RECURSE host_sources CONFIGURE_DEPENDS host/*.cpp host/*.rc)
if(host_sources)
  include(cmake/gumbo.cmake)
  # Everything but the roof, which tests of the services link too.
  list(FILTER host_sources EXCLUDE REGEX "/host/main_win\\.cpp$")
  add_library(host_rooms OBJECT ${host_sources})
  # GCC 12 warns of overlapping copies inside its own operator+ of a literal and a string: a false alarm.
  target_compile_options(host_rooms PUBLIC $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>
    PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${traceable}>)
  target_compile_definitions(host_rooms PUBLIC WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  target_link_libraries(host_rooms PUBLIC wfinfo_pure gumbo gdi32)
  add_executable(wrenfold host/main_win.cpp src/base/stack_guard_win.cpp)
  target_compile_options(wrenfold PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${traceable}>)
  target_link_libraries(wrenfold PRIVATE host_rooms)
  # The examples that "help NAME" prints.
  set(example_resources "")
  foreach(example ${examples})
    get_filename_component(name ${example} NAME)
    string(REPLACE "." "_" name ${name})
    string(APPEND example_resources "${name} EXAMPLES \"${example}\"\n")
  endforeach()
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/examples.rc CONTENT "${example_resources}" @ONLY)
  target_sources(wrenfold PRIVATE ${CMAKE_BINARY_DIR}/examples.rc)
  set_source_files_properties(${CMAKE_BINARY_DIR}/examples.rc PROPERTIES OBJECT_DEPENDS "${examples}")
  # Macros in macros (20) times calls of functions in one another (2,000 levels); only what is used takes memory.
  target_link_options(wrenfold PRIVATE ${hardening} -municode -Wl,--stack,134217728)
  set_target_properties(wrenfold PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${WFINFO_OUT}/host)
  keep_symbols_apart(wrenfold)
  add_custom_command(TARGET wrenfold POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:WFINFO> ${WFINFO_OUT}/host/WFINFO.dll)
  add_dependencies(wrenfold WFINFO)
  if(gumbo_sources)
    write_gumbo_license(${CMAKE_BINARY_DIR}/LICENSE-gumbo.txt)
    add_custom_command(TARGET wrenfold POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E copy_if_different ${CMAKE_BINARY_DIR}/LICENSE-gumbo.txt ${WFINFO_OUT}/host)
  endif()
endif()

# Tests of the exports: each one process of its own, so that a crash or a left-over state stays its own. They are
# listed when ctest starts, since that needs a running Wine.
enable_testing()
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
include(GoogleTest)
file(GLOB_RECURSE dll_test_sources CONFIGURE_DEPENDS tests/dll/*.cpp tests/support/*.cpp)
add_executable(dll_tests ${dll_test_sources})
add_dependencies(dll_tests catalogue_files)
target_include_directories(dll_tests PRIVATE ${WFINFO_OUT})
target_compile_definitions(dll_tests PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
target_link_libraries(dll_tests PRIVATE WFINFO wfinfo_pure GTest::gmock_main ws2_32)
# The tests are compiled often and run briefly.
target_compile_options(dll_tests PRIVATE -O0)
target_precompile_headers(dll_tests PRIVATE <gtest/gtest.h> <windows.h> <filesystem> <functional> <string> <vector>)
# Units inside the library that have tests of their own.
target_sources(dll_tests PRIVATE src/bridge/wide_text_win.cpp src/bridge/system_code_page_win.cpp
  src/bridge/results_win.cpp src/bridge/export_call_win.cpp src/base/stack_guard_win.cpp
  src/addresses/address_messages_win.cpp)
# Its Japanese is host text here too, which the precompiled headers of the tests are not made for.
set_source_files_properties(src/addresses/address_messages_win.cpp PROPERTIES
  COMPILE_OPTIONS -fexec-charset=CP932 SKIP_PRECOMPILE_HEADERS ON)
add_custom_command(TARGET dll_tests POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:WFINFO> $<TARGET_FILE_DIR:dll_tests>)
gtest_discover_tests(dll_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_PREFIX dll.
  PROPERTIES TIMEOUT 300)

# The whole system from outside: wrenfold.exe with real mails and real peers.
file(GLOB end_to_end_tests CONFIGURE_DEPENDS tests/e2e/test_*.py tests/repository/test_*.py)
foreach(test ${end_to_end_tests})
  get_filename_component(name ${test} NAME_WE)
  add_test(NAME ${name} COMMAND python3 ${test})
  if(test MATCHES "/repository/|/test_(from_the_zip|kit|package)[.]py$")  # these say nothing of a code page
    set_tests_properties(${name} PROPERTIES LABELS once)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 SKIP_RETURN_CODE 77
    ENVIRONMENT "WFINFO_SOURCE=${CMAKE_SOURCE_DIR};WFINFO_OUT=${WFINFO_OUT};WFINFO_BUILD=${CMAKE_BINARY_DIR};WFINFO_HOST=${WFINFO_OUT}/host/wrenfold.exe;PYTHONDONTWRITEBYTECODE=1")
endforeach()

# Stand-ins (children, libraries), test programs of another make, measurements and tools: each in a folder of its
# own.
file(GLOB further_programs CONFIGURE_DEPENDS tests/doubles/*/CMakeLists.txt tests/faults/*/CMakeLists.txt
  tests/inside/*/CMakeLists.txt tests/kit/*/CMakeLists.txt tests/monkey/CMakeLists.txt tests/torture/CMakeLists.txt tests/soak/CMakeLists.txt fuzz/windows/CMakeLists.txt bench/windows/CMakeLists.txt tools/*/CMakeLists.txt)
include_directories(${CMAKE_SOURCE_DIR})
include(cmake/inside_tests.cmake)
foreach(program ${further_programs})
  get_filename_component(folder ${program} DIRECTORY)
  add_subdirectory(${folder})
endforeach()
