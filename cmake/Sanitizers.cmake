# Has memory, undefined behaviour and leaks watched in every target, and makes the code ready for the fuzz targets.
# How the programs report is set in tests/sanitizers/.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "VEK_SANITIZE needs clang++: the fuzz targets stand on its libFuzzer")
endif()

# -O1 and line tables: a third faster to build and to run than without optimisation and with full debug information.
add_compile_options(-O1 -gline-tables-only -fno-omit-frame-pointer
  -fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=all)
add_link_options(-fsanitize=address,undefined)

# The standard library's own checks: an index beyond the end of a string or vector within its capacity is none of
# the sanitizers' findings.
add_compile_definitions(_GLIBCXX_ASSERTIONS)
