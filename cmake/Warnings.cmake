# Warnings are errors in our own code; other people's headers are included as system headers.
add_library(kest_warnings INTERFACE)
target_compile_options(kest_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
