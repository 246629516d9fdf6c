# Installation: libraries, headers, texts, the CMake package and the pkg-config files. Everything
# finds the other parts relative to itself, so that an installed tree can be moved.
#
# Components: libraries, program, development; gdal and python, whose rules are in their folders.
include(CMakePackageConfigHelpers)

set(KEST_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/kestms)
set(KEST_INSTALL_PLUGINDIR ${CMAKE_INSTALL_LIBDIR}/kestms)
set(KEST_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/KestMultispectral)
set(KEST_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/kestms)
set(KEST_LIBRARIES PyxisImaging)
if(TARGET PyxisCodecs)
    list(APPEND KEST_LIBRARIES PyxisCodecs)
endif()

# Headers: those that hosts include, and those that these include.
set(headers
    codec/KestMultispectralCodec.h
    codec/KestMultispectralFormatCodecApiVersion.h
    properties/KestMultispectralBandNameProperty.h
    properties/KestMultispectralBandTypeProperty.h
    properties/KestMultispectralBucketProperty.h
    properties/KestMultispectralMetadataTextFileProperty.h
    properties/KestMultispectralReferenceNameProperty.h
    host/CodecRegistry.h
    host/DirectoryFileFinder.h
    host/Text.h)
if(TARGET PyxisCodecs)
    list(APPEND headers host/codecs/StandardCodecs.h)
endif()
file(GLOB interfaces RELATIVE ${PROJECT_SOURCE_DIR}/codec CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/codec/pyxis/*.h)
set(pending ${headers} ${interfaces})
set(headers "")
while(pending)
    list(POP_FRONT pending header)
    set(path ${PROJECT_SOURCE_DIR}/${header})
    if(header MATCHES "^pyxis/")
        set(path ${PROJECT_SOURCE_DIR}/codec/${header})
    endif()
    list(APPEND headers ${header})
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${path} DESTINATION ${KEST_INSTALL_INCLUDEDIR}/${folder} COMPONENT development)
    file(STRINGS ${path} includes REGEX "^#include \"")
    list(TRANSFORM includes REPLACE "^#include \"([^\"]+)\".*" "\\1")
    list(APPEND pending ${includes})
    list(REMOVE_DUPLICATES pending)
    list(REMOVE_ITEM pending ${headers})
endwhile()

# Libraries with versioned names, and the plug-in in its own folder, under the name that hosts load.
if(TARGET PyxisCodecs)
    set(loaded PyxisGdal PyxisSystems)  # by PyxisCodecs, which finds them in its own folder
endif()
set_target_properties(${KEST_LIBRARIES} ${loaded} PROPERTIES
    VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH}
    SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
# The include folders of the source tree are for its own build only.
foreach(target IN LISTS KEST_LIBRARIES ITEMS kestmultispectralcodec54)
    get_target_property(folders ${target} INTERFACE_INCLUDE_DIRECTORIES)
    if(folders)
        set_target_properties(${target} PROPERTIES
            INTERFACE_INCLUDE_DIRECTORIES "$<BUILD_INTERFACE:${folders}>")
    endif()
    target_include_directories(${target} INTERFACE
        $<INSTALL_INTERFACE:${KEST_INSTALL_INCLUDEDIR}>)
endforeach()
if(loaded)
    install(TARGETS ${loaded} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries
        NAMELINK_SKIP)
endif()
install(TARGETS ${KEST_LIBRARIES} EXPORT KestMultispectral
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT libraries
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries
        NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
if(WIN32)
    set(KEST_INSTALL_PLUGINDIR ${CMAKE_INSTALL_BINDIR})
endif()
set_target_properties(kestmultispectralcodec54 PROPERTIES INSTALL_RPATH "$ORIGIN/..")
install(TARGETS kestmultispectralcodec54 EXPORT KestMultispectral
    RUNTIME DESTINATION ${KEST_INSTALL_PLUGINDIR} COMPONENT libraries
    LIBRARY DESTINATION ${KEST_INSTALL_PLUGINDIR} COMPONENT libraries
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# Data. The build tree has the same layout, so that a program finds its data by one rule. On Windows
# the texts are modules beside the plug-in.
if(WIN32)
    set(KEST_INSTALL_DATADIR ${CMAKE_INSTALL_BINDIR})
else()
    foreach(data IN ITEMS resources products)
        install(DIRECTORY ${PROJECT_SOURCE_DIR}/${data} DESTINATION ${KEST_INSTALL_DATADIR}
            COMPONENT libraries FILES_MATCHING PATTERN "*.txt" PATTERN "*.xml")
        file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/share/kestms)
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${data} ${CMAKE_BINARY_DIR}/share/kestms/${data}
            SYMBOLIC)
    endforeach()
endif()

if(TARGET kestms)
    set(KEST_INSTALL_ZSHDIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
        CACHE STRING "Where zsh looks for completions")
    file(RELATIVE_PATH libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(kestms PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS kestms RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
    set_target_properties(kestms_module PROPERTIES INSTALL_RPATH "$ORIGIN/..")
    install(TARGETS kestms_module LIBRARY DESTINATION ${KEST_INSTALL_PLUGINDIR} COMPONENT program)
    set(manual ${CMAKE_BINARY_DIR}/manual)
    install(DIRECTORY ${manual}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT program)
    install(FILES ${manual}/completions/kestms COMPONENT program
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${manual}/completions/_kestms COMPONENT program
        DESTINATION ${KEST_INSTALL_ZSHDIR})
    install(FILES ${manual}/completions/kestms.fish COMPONENT program
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()

# find_package(KestMultispectral)
install(EXPORT KestMultispectral NAMESPACE KestMultispectral::
    DESTINATION ${KEST_INSTALL_CMAKEDIR} FILE KestMultispectralTargets.cmake
    COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KestMultispectralConfig.cmake.in
    ${CMAKE_BINARY_DIR}/KestMultispectralConfig.cmake
    INSTALL_DESTINATION ${KEST_INSTALL_CMAKEDIR} PATH_VARS KEST_INSTALL_DATADIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KestMultispectralConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KestMultispectralConfig.cmake
    ${CMAKE_BINARY_DIR}/KestMultispectralConfigVersion.cmake
    DESTINATION ${KEST_INSTALL_CMAKEDIR} COMPONENT development)

# pkg-config, with a prefix that follows the file.
if(WIN32)
    return()
endif()
file(RELATIVE_PATH KEST_PKGCONFIG_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
list(TRANSFORM KEST_LIBRARIES PREPEND -l OUTPUT_VARIABLE KEST_PKGCONFIG_LIBRARIES)
list(JOIN KEST_PKGCONFIG_LIBRARIES " " KEST_PKGCONFIG_LIBRARIES)
foreach(package IN ITEMS pyxisimaging kestmultispectral)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in ${CMAKE_BINARY_DIR}/${package}.pc
        @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${package}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()
