# The warnings of every target of this project, all of them errors.
add_library(vek_warnings INTERFACE)
target_compile_options(vek_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wundef
  -Wdouble-promotion -Wformat=2 -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi -Wimplicit-fallthrough
  -Wzero-as-null-pointer-constant -Wredundant-decls -Wunused-macros -Wsuggest-override -Wvla -Wdate-time
  $<$<CXX_COMPILER_ID:GNU>:-Wuseless-cast;-Wcast-align=strict;-Wduplicated-cond;-Wduplicated-branches;-Wlogical-op;-Wmissing-declarations;-Wredundant-tags;-Wmismatched-tags>
  -Werror)

# GCC 12 sees an overlap in every "text" + std::string once it optimises (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(vek_warnings INTERFACE -Wno-restrict)
endif()
