# gumbo, the HTML parser of the small host: C source that ./dev fetches (docs/dependencies.md). Without it everything
# else can be built; what needs it fails with a sentence that says so.
set(gumbo_package ${CMAKE_SOURCE_DIR}/build/libraries/ruby-nokogiri)
file(GLOB gumbo_sources CONFIGURE_DEPENDS ${gumbo_package}/gumbo-parser/src/*.c)
# host/mime/html_memory.cpp stands in for its memory functions, which end the program when there is none.
list(FILTER gumbo_sources EXCLUDE REGEX "/util\\.c$")
set(gumbo_missing "The small host is not built: its HTML parser is not in build/libraries. ./dev build fetches it \
from Debian's source package ruby-nokogiri.")
if(gumbo_sources)
  add_library(gumbo STATIC ${gumbo_sources})
  target_include_directories(gumbo SYSTEM PUBLIC ${gumbo_package}/gumbo-parser/src)
  # Somebody else's code: its warnings are not ours, and it is fast in every build.
  target_compile_options(gumbo PRIVATE -w -O2)
else()
  add_library(gumbo INTERFACE)
  add_custom_target(gumbo_is_missing ALL
    COMMAND ${CMAKE_COMMAND} -E echo ${gumbo_missing}
    COMMAND ${CMAKE_COMMAND} -E false VERBATIM)
  add_dependencies(gumbo gumbo_is_missing)
endif()

# Writes the licence of gumbo, one chapter of the package's licences, to `file`.
function(write_gumbo_license file)
  file(READ ${gumbo_package}/LICENSE-DEPENDENCIES.md licenses)
  string(FIND "${licenses}" "### libgumbo" from)
  if(from EQUAL -1)
    message(FATAL_ERROR "${gumbo_package}/LICENSE-DEPENDENCIES.md has no chapter on libgumbo: see cmake/gumbo.cmake")
  endif()
  string(SUBSTRING "${licenses}" ${from} -1 licenses)
  string(FIND "${licenses}" "\n### " to)
  string(SUBSTRING "${licenses}" 0 ${to} license)
  file(WRITE ${file} "${license}")
endfunction()
