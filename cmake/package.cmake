# What `cmake --install` installs and `cpack` packs: the program alone, without the demo.
include(GNUInstallDirs)

set(packaging ${PROJECT_SOURCE_DIR}/packaging)

# Installing what has been built must not need the tests and the demo to be built, too.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY TRUE)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The compressed documents come with the program's build, so that they are there to be installed.
find_program(GZIP gzip REQUIRED)
function(add_compressed input output)
  add_custom_command(OUTPUT ${output}
    COMMAND ${GZIP} -9nc ${input} > ${output}
    DEPENDS ${input} VERBATIM)
endfunction()
set(manual ${PROJECT_BINARY_DIR}/pelmora.1.gz)
set(changelog ${PROJECT_BINARY_DIR}/changelog.Debian.gz)
add_compressed(${packaging}/pelmora.1 ${manual})
add_compressed(${packaging}/debian/changelog ${changelog})
add_custom_target(pelmora_documents DEPENDS ${manual} ${changelog})
add_dependencies(pelmora pelmora_documents)

install(TARGETS pelmora)
install(FILES ${packaging}/pelmora.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/pelmora.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${packaging}/debian/copyright ${changelog} DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${packaging}/70-pelmora.rules DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
  install(FILES ${packaging}/icon/pelmora-${size}.png
    DESTINATION ${icons}/${size}x${size}/apps RENAME pelmora.png)
endforeach()
install(FILES ${packaging}/icon/pelmora.svg DESTINATION ${icons}/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_PACKAGE_NAME pelmora)
set(CPACK_PACKAGE_VENDOR Pelmora)
set(CPACK_PACKAGE_CONTACT "Pelmora maintainers <maintainers@pelmora.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "motion sequences for a twelve-channel servo board")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Pelmora moves twelve servos through a board on a serial port: it composes
motion sequences step by step, plays them from the PC with breakpoints,
writes them into the board's flash memory and reads them back, and keeps
them in text files.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS TRUE)
# The captions are fitted in this font; others do where it is missing.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fonts-liberation)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
include(CPack)
