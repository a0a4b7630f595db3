# Run by CPack between installing into its staging folders and packing them: licence, changes and manual page go
# where Debian has them.

set(package_runtime ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME})
set(package_development ${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME})
set(package_tools ${CPACK_DEBIAN_TOOLS_PACKAGE_NAME})

function(compress file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
    set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
    file(REMOVE_RECURSE ${share}/doc)
    set(doc ${share}/doc/${package_${component}})
    file(MAKE_DIRECTORY ${doc})
    configure_file(${CPACK_RESOURCE_FILE_LICENSE} ${doc}/copyright COPYONLY)
    configure_file(${CPACK_VORNIK_CHANGELOG} ${doc}/changelog COPYONLY)
    compress(${doc}/changelog)
    file(GLOB manuals ${share}/man/man1/*.1)
    foreach(manual ${manuals})
        compress(${manual})
    endforeach()
endforeach()
