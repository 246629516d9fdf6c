# For Windows modules only: version resources, string tables, and the compiler's run-time libraries
# beside them.

# Exceptions, checked casts and memory cross our module boundaries, so all modules share one copy
# of the run-time libraries instead of linking their own.
foreach(library libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(REAL_PATH ${path} path)
    list(APPEND KEST_RUNTIME_LIBRARIES ${path})
endforeach()
file(COPY ${KEST_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
install(FILES ${KEST_RUNTIME_LIBRARIES} TYPE BIN)

# Gives a module the file version `version`, four numbers.
function(kest_version_resource target version)
    string(REPLACE "." "," numbers ${version})
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
    target_sources(${target} PRIVATE ${resource})
endfunction()

# Makes <name>.dll, a module with only the texts in the file `texts`.
function(kest_string_module name texts)
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
    set(generator ${PROJECT_SOURCE_DIR}/cmake/StringTable.cmake)
    add_custom_command(OUTPUT ${resource}
        COMMAND ${CMAKE_COMMAND} -D TEXTS=${texts} -D RESOURCE=${resource} -P ${generator}
        DEPENDS ${texts} ${generator} VERBATIM)
    add_library(${name} MODULE ${resource})
    set_target_properties(${name} PROPERTIES PREFIX "" LINKER_LANGUAGE CXX
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    target_link_options(${name} PRIVATE -nostdlib LINKER:--entry=0)
endfunction()
