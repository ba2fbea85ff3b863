# The warnings of every target of this project, all of them errors.
add_library(vek_warnings INTERFACE)
target_compile_options(vek_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wcast-qual -Wundef -Wdouble-promotion
  $<$<CXX_COMPILER_ID:GNU>:-Wuseless-cast>
  -Werror)

# GCC 12 sees an overlap in every "text" + std::string once it optimises (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(vek_warnings INTERFACE -Wno-restrict)
endif()
