# Tests from inside: the library's own sources linked into the test program, so that tests reach its tables of
# functions, count what is taken and given back, and replace single entries.

# add_inside_library(FAMILY SOURCE...): these sources, compiled as for the library, as FAMILY_library.
function(add_inside_library family)
  add_library(${family}_library OBJECT ${ARGN})
  target_compile_definitions(${family}_library PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  target_compile_options(${family}_library PRIVATE ${library_options})
  set_source_files_properties(${ARGN} PROPERTIES OBJECT_DEPENDS "${catalogue_rows}")
endfunction()

# add_inside_tests(FAMILY SOURCE...): FAMILY_tests.exe of the sources of tests/inside/FAMILY and these, with that library
# and with the small dialogs alone: the version block belongs to the DLL.
function(add_inside_tests family)
  set(folder ${CMAKE_SOURCE_DIR}/tests/inside/${family})
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  add_executable(${family}_tests ${sources} ${folder}/dialogs.rc ${CMAKE_SOURCE_DIR}/tests/support/scripted_host_win.cpp
    ${ARGN} $<TARGET_OBJECTS:${family}_library>)
  set_source_files_properties(${folder}/dialogs.rc PROPERTIES COMPILE_OPTIONS "-c;65001" OBJECT_DEPENDS "${resource_parts}")
  add_dependencies(${family}_tests catalogue_files)
  target_include_directories(${family}_tests PRIVATE ${WFINFO_OUT})
  target_compile_definitions(${family}_tests PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  target_link_libraries(${family}_tests PRIVATE wfinfo_pure GTest::gmock)
  set_target_properties(${family}_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endfunction()
