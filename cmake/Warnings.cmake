# The warnings that the whole project is clean of, with GCC and Clang.
add_library(portraitcut_warnings INTERFACE)
target_compile_options(portraitcut_warnings INTERFACE
  $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wshadow -Wconversion>)
