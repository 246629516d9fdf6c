# One folder of the plug-in: an object library with the folders that it may use. kest_objects
# collects their objects.
function(kest_plugin_room name)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "" "SOURCES;USES")
    add_library(${name} OBJECT ${room_SOURCES})
    target_compile_definitions(${name} PRIVATE KEST_BUILDING)
    target_link_libraries(${name} PUBLIC pyxis_interfaces ${room_USES} PRIVATE kest_warnings)
endfunction()
