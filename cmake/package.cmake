# Packages by CPack: on Debian one for each component, named and split as Debian does it; for Windows one .zip.

set(CPACK_PACKAGE_NAME vornik)
set(CPACK_PACKAGE_VENDOR "Vornik developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_SYSTEM_NAME win64)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
    include(CPack)
    return()
endif()

set(library libvornik${PROJECT_VERSION_MAJOR})
set(same_version "${library} (= ${PROJECT_VERSION})")
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development)
if(VORNIK_APPS)
    list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Vornik developers <developers@vornik.invalid>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian.cmake)
set(CPACK_VORNIK_CHANGELOG ${PROJECT_SOURCE_DIR}/CHANGELOG.md)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON) # the record from which packages of hosts learn what they depend on
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Vornik loads .3DS scenes with their images, animates them, traces their light
into the vertices, draws them and answers rays and collisions for a host
program with a window and a loop of its own. This package has the shared
library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvornik-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_version}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "What a program needs to be built with Vornik: C++ headers and the files for
CMake and pkg-config.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME vornik-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${same_version}")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "The program vornik renders, films, views and lights .3DS scenes from the
command line, tells what is in them, and makes and checks pack files.")

include(CPack)
