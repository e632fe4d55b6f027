# What is installed beside the programs and their data, and the Debian package: `cpack -G DEB` in a build folder that
# was configured with -DCMAKE_INSTALL_PREFIX=/usr. packaging/make-deb does it all.

set(PACKAGING ${CMAKE_SOURCE_DIR}/packaging)
set(PACKAGE_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/tandemize-backup)

# Documents lie compressed where the distribution's own lie. The text goes without name and time into the result, so
# two builds give the same bytes.
find_program(GZIP gzip REQUIRED)
function(install_compressed source name folder)
  set(result ${CMAKE_BINARY_DIR}/packaging/${name}.gz)
  add_custom_command(OUTPUT ${result} DEPENDS ${source} VERBATIM
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/packaging
    COMMAND ${CMAKE_COMMAND} -E copy ${source} ${CMAKE_BINARY_DIR}/packaging/${name}
    COMMAND ${GZIP} -9nf ${CMAKE_BINARY_DIR}/packaging/${name})
  add_custom_target(compressed-${name} ALL DEPENDS ${result})
  install(FILES ${result} DESTINATION ${folder})
endfunction()

# The licence in the form in which Debian packages state it.
file(READ ${CMAKE_SOURCE_DIR}/LICENSE LICENCE_TEXT)
string(REGEX MATCH "Copyright[^\n]*[0-9] ([^\n]*)" LICENCE_HOLDER "${LICENCE_TEXT}")
string(REGEX REPLACE "Copyright (\\([cC]\\) )?" "" LICENCE_HOLDER "${LICENCE_HOLDER}")
string(REGEX REPLACE ".*Copyright[^\n]*\n+" "" LICENCE_TEXT "${LICENCE_TEXT}")
string(STRIP "${LICENCE_TEXT}" LICENCE_TEXT)
string(REPLACE "\n\n" "\n.\n" LICENCE_TEXT "${LICENCE_TEXT}")
string(REPLACE "\n" "\n " LICENCE_TEXT "${LICENCE_TEXT}")
file(CONFIGURE OUTPUT packaging/copyright @ONLY CONTENT
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: Tandemize Backup

Files: *
Copyright: @LICENCE_HOLDER@
License: Expat
 @LICENCE_TEXT@
")

install(FILES ${CMAKE_BINARY_DIR}/packaging/copyright DESTINATION ${PACKAGE_DOC_DIR})
install_compressed(${PACKAGING}/changelog changelog ${PACKAGE_DOC_DIR})
install_compressed(${PACKAGING}/man/tandemize-run.1 tandemize-run.1 ${CMAKE_INSTALL_MANDIR}/man1)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs/ DESTINATION ${PACKAGE_DOC_DIR}/docs
  FILES_MATCHING PATTERN "*.md" REGEX "pictures/.*\\.png$" PATTERN ARCHITECTURE.md EXCLUDE)
if(TANDEMIZE_DESKTOP)
  install_compressed(${PACKAGING}/man/tandemize.1 tandemize.1 ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${PACKAGING}/tandemize-backup.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${PACKAGING}/org.tandemize.Backup.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
  install(FILES ${PACKAGING}/icons/tandemize-backup.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()

set(CPACK_PACKAGE_NAME tandemize-backup)
set(CPACK_PACKAGE_VENDOR "The Tandemize Backup developers")
set(CPACK_PACKAGE_CONTACT "Tandemize Backup developers <developers@tandemize.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "personal backup and synchronisation of files")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tandemize Backup keeps one person's files safe on one PC. A backup copies files
from source paths to destination paths, in full or only what is new; it never
writes to a source, and a copy appears whole or not at all. A synchronisation
compares two or more paths and makes them agree.

Paths lie on discs, shares and FTP servers. Jobs run by hand or by a timer, and
failures can be told by mail. The package holds the desktop program tandemize
and the console program tandemize-run.")
# The libraries are found in the programs. What they load only when they run is named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(TANDEMIZE_DESKTOP)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, fonts-liberation")
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
endif()
include(CPack)
