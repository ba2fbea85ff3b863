# vek_library(NAME folder SOURCES ... LINKS ...): one library for one folder, a static one unless BUILD_SHARED_LIBS
# is set. Its includes start at src/ or simulator/, and what it may use is what LINKS names.
function(vek_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE vek_warnings)
endfunction()
