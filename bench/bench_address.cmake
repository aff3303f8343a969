# A second peer, when it is installed (libvmime-dev).
find_path(VMIME_INCLUDE vmime/vmime.hpp)
find_library(VMIME_LIBRARY vmime)
if(VMIME_INCLUDE AND VMIME_LIBRARY)
  target_compile_definitions(bench_address PRIVATE WFINFO_WITH_VMIME)
  target_include_directories(bench_address SYSTEM PRIVATE ${VMIME_INCLUDE})
  target_link_libraries(bench_address PRIVATE ${VMIME_LIBRARY})
endif()
