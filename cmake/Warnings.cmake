# Warnings for our own code; third-party headers are included as system headers. They are errors in
# developers' presets, which name the compiler, and only shown in a release build.
option(KEST_WERROR "Make warnings errors" OFF)
add_library(kest_warnings INTERFACE)
target_compile_options(kest_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${KEST_WERROR}>:-Werror>)
