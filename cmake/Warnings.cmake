# Warnings of our own code; other people's headers are included as system headers. They are errors
# for developers, whose compilers the presets name. Whoever builds a release with another compiler
# only sees them.
option(KEST_WERROR "Make warnings errors" OFF)
add_library(kest_warnings INTERFACE)
target_compile_options(kest_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${KEST_WERROR}>:-Werror>)
