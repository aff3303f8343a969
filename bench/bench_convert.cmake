# A JSON parser's UTF-8 validator as a peer, when its development files are installed.
find_library(SIMDJSON_LIBRARY simdjson)
if(SIMDJSON_LIBRARY)
  target_link_libraries(bench_convert PRIVATE ${SIMDJSON_LIBRARY})
  target_compile_definitions(bench_convert PRIVATE WFINFO_WITH_SIMDJSON)
endif()
