# curl's date parser as a peer, when its development files are installed.
pkg_check_modules(CURL IMPORTED_TARGET libcurl)
if(CURL_FOUND)
  target_link_libraries(bench_dates PRIVATE PkgConfig::CURL)
  target_compile_definitions(bench_dates PRIVATE WFINFO_WITH_CURL)
endif()
