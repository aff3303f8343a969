# A CSV parser of the distribution as a peer, when its development files are installed.
find_library(LIBCSV_LIBRARY csv)
find_path(LIBCSV_INCLUDE csv.h)
if(LIBCSV_LIBRARY AND LIBCSV_INCLUDE)
  target_link_libraries(bench_csv PRIVATE ${LIBCSV_LIBRARY})
  target_compile_definitions(bench_csv PRIVATE WFINFO_WITH_LIBCSV)
endif()
