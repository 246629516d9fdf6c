# Debian packages, made by `scripts/package`: one a component of Install.cmake.
set(KEST_PACKAGE_REVISION 1)
set(KEST_PACKAGE_VERSION
    ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH})
set(KEST_DEBIAN_VERSION ${KEST_PACKAGE_VERSION}-${KEST_PACKAGE_REVISION})
# The packager, as for Debian's other tools.
set(KEST_MAINTAINER "The KestMultispectral authors <maintainers@localhost>")
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
    set(KEST_MAINTAINER "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestms)
set(CPACK_PACKAGE_VERSION ${KEST_PACKAGE_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${KEST_PACKAGE_REVISION})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${KEST_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The changelog of the packages has the day of the release from CHANGELOG.md.
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md release LIMIT_COUNT 1
    REGEX "^## \\[${KEST_PACKAGE_VERSION}\\] - ")
if(NOT release)
    message(FATAL_ERROR "CHANGELOG.md has no release ${KEST_PACKAGE_VERSION}")
endif()
string(REGEX REPLACE ".* - " "" release "${release}")
execute_process(COMMAND date -u -R -d "${release}" OUTPUT_VARIABLE KEST_RELEASE_DATE
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(documents ${CMAKE_BINARY_DIR}/debian)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${documents}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/copyright.in ${documents}/copyright @ONLY)
foreach(file IN ITEMS shlibs triggers)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/${file}.in ${documents}/${file} @ONLY)
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog COPYONLY)
foreach(document IN ITEMS changelog changelog.Debian)
    execute_process(COMMAND gzip -9nkf ${documents}/${document} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# kest_package(COMPONENT NAME SECTION DEPENDS DESCRIPTION): DEPENDS lists everything except system
# libraries. The description's first line is the summary.
function(kest_package component name section depends description)
    string(TOUPPER ${component} key)
    foreach(field IN ITEMS NAME SECTION DEPENDS)
        string(TOLOWER ${field} value)
        set(CPACK_DEBIAN_${key}_PACKAGE_${field} ${${value}} PARENT_SCOPE)
    endforeach()
    set(CPACK_DEBIAN_${key}_DESCRIPTION ${description} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS ON PARENT_SCOPE)
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
    install(FILES ${documents}/copyright ${documents}/changelog.gz ${documents}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endfunction()

set(about "A multispectral image set is a group of single-band raster files of one
scene, read as one image whose frames are the bands: named, typed and
in order.")
set(libraries "libkestms1 (= ${KEST_DEBIAN_VERSION})")
set(CPACK_COMPONENTS_ALL "")
kest_package(libraries libkestms1 libs "" "multispectral image sets (shared libraries)
${about}
.
This package holds the codec plug-in, the stand-alone host with its
component codecs, and the texts and products that they know.")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${documents}/shlibs ${documents}/triggers)
kest_package(program kestms science "${libraries}"
    "multispectral image sets from single-band files
${about}
.
This package holds the command line tool, which checks, shows and
converts sets.")
kest_package(development libkestms-dev libdevel "${libraries}"
    "multispectral image sets (development files)
${about}
.
This package holds the headers of host and plug-in, the CMake package,
the pkg-config files and an example.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
if(TARGET gdal_KESTMS)
    kest_package(gdal gdal-kestms science "${libraries}"
        "multispectral image sets (GDAL driver)
${about}
.
With this package every program that uses GDAL opens sets and scenes.")
endif()
if(TARGET gdal_KESTMS AND KEST_PYTHON)
    file(STRINGS ${PROJECT_SOURCE_DIR}/python/pyproject.toml version REGEX "^version = ")
    if(NOT version STREQUAL "version = \"${KEST_PACKAGE_VERSION}\"")
        message(FATAL_ERROR "python/pyproject.toml is not of release ${KEST_PACKAGE_VERSION}")
    endif()
    string(JOIN ", " needs "gdal-kestms (>= ${KEST_PACKAGE_VERSION})" python3:any python3-numpy
        python3-rasterio)
    kest_package(python python3-kestms python "${needs}" "multispectral image sets (Python)
${about}
.
This package opens scenes in Python, and as xarray data sets where
python3-xarray is installed.")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/python/prerm)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
endif()
install(FILES ${PROJECT_SOURCE_DIR}/examples/print-bands/main.cpp
    ${PROJECT_SOURCE_DIR}/examples/print-bands/CMakeLists.txt
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libkestms-dev/examples/print-bands
    COMPONENT development)

include(CPack)
