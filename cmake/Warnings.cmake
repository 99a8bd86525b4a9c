# Warnings for our own code; other people's headers are included as SYSTEM.
add_library(drevin_warnings INTERFACE)
target_compile_options(drevin_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${DREVIN_WERROR}>:-Werror>)
