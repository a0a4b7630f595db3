# What `cmake --install` puts where, in three components from which packages are cut: runtime (the library),
# development (headers, CMake and pkg-config files) and tools (the command-line host).

include(CMakePackageConfigHelpers)

# Debian keeps libraries in a folder for each architecture, below /usr/local too.
if(NOT DEFINED CMAKE_INSTALL_LIBDIR AND CMAKE_LIBRARY_ARCHITECTURE AND NOT CMAKE_CROSSCOMPILING AND EXISTS
                                                                                          /etc/debian_version)
    set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Object code libraries")
endif()
include(GNUInstallDirs)

install(
    TARGETS vornik
    EXPORT VornikTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)

install(
    DIRECTORY include/vornik
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT development
    FILES_MATCHING PATTERN "*.h")
set(packages ${CMAKE_INSTALL_LIBDIR}/cmake/Vornik)
install(EXPORT VornikTargets NAMESPACE Vornik:: DESTINATION ${packages} COMPONENT development)
# Before 1.0 a minor version may change the call surface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VornikConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/VornikConfig.cmake ${PROJECT_BINARY_DIR}/VornikConfigVersion.cmake DESTINATION ${packages}
        COMPONENT development)

# Paths in vornik.pc count from the file itself, so that a prefix can be moved.
file(RELATIVE_PATH VORNIK_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" VORNIK_PREFIX_FROM_PC "${VORNIK_PREFIX_FROM_PC}")
configure_file(cmake/vornik.pc.in ${PROJECT_BINARY_DIR}/vornik.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vornik.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(VORNIK_APPS)
    install(TARGETS vornik_app RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    if(NOT WIN32)
        # The tool finds the library beside it wherever the prefix lies. The system's own prefix needs no help.
        file(RELATIVE_PATH from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
        set_target_properties(vornik_app PROPERTIES INSTALL_RPATH "$ORIGIN/${from_bin}")
        install(
            CODE "if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
                      file(RPATH_REMOVE FILE \"\$ENV{DESTDIR}/usr/${CMAKE_INSTALL_BINDIR}/vornik\")
                  endif()"
            COMPONENT tools)
        install(FILES docs/man/vornik.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
        install(FILES apps/vornik/completion/vornik.bash
                DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools RENAME vornik)
        install(FILES apps/vornik/completion/vornik.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
                COMPONENT tools)
    endif()
endif()
