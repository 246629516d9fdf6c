# One folder of the plug-in: an object library with the folders that it may use. kest_objects
# collects their objects.
function(kest_plugin_folder name)
    cmake_parse_arguments(PARSE_ARGV 1 folder "" "" "SOURCES;USES")
    add_library(${name} OBJECT ${folder_SOURCES})
    target_compile_definitions(${name} PRIVATE KEST_BUILDING)
    target_link_libraries(${name} PUBLIC pyxis_interfaces ${folder_USES} PRIVATE kest_warnings)
endfunction()
