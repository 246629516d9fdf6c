# Sanitizers and coverage change every target alike.
if(KEST_SANITIZE)
    add_compile_options(-fsanitize=${KEST_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${KEST_SANITIZE})
endif()
if(KEST_COVERAGE)
    add_compile_options(--coverage -O0)
    add_link_options(--coverage)
endif()

# Shipped files contain no path of the build machine, neither in strings nor in debug information.
add_compile_options(
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
