# Installation and the Debian package. The program folder is installed as the build stages
# it, under <prefix>/lib/folioexport, so that it stays relocatable:
#
#   lib/folioexport/Stammfolio/              the host's folder: SF.MDB, Beispiel.SF6, the
#                                            wizard's pictures (bmp, prog) and help pages (help)
#   lib/folioexport/Stammfolio/Folioexport/  the programs and geddate.ini
#   lib/folioexport/Daten/                   the data a user's data folder starts from
#   bin/folioexport-cli                      a link to the program
#   bin/folioexport                          a link to the desktop program, when it is built
#   share/applications, share/metainfo       its desktop entry and AppStream metainfo
#   share/icons/hicolor/<N>x<N>/apps         the application icon, drawn at build time
#
# The staged datenpfad.ini, which points the build's programs at the staged data, is left
# out: an installed program keeps its data in the user's documents (…/Stammfolio), made
# from lib/folioexport/Daten at its first start, and never writes under the installation.

set(FOLIO_INSTALL_DIR lib/folioexport)

install(TARGETS folioexport-cli DESTINATION ${FOLIO_INSTALL_DIR}/Stammfolio/Folioexport)
install(FILES ${FOLIO_PROGRAMMPFAD}/geddate.ini
        DESTINATION ${FOLIO_INSTALL_DIR}/Stammfolio/Folioexport)
install(FILES ${FOLIO_STAMMPFAD}/SF.MDB ${FOLIO_STAMMPFAD}/Beispiel.SF6
        DESTINATION ${FOLIO_INSTALL_DIR}/Stammfolio)
install(DIRECTORY ${FOLIO_STAMMPFAD}/bmp ${FOLIO_STAMMPFAD}/prog ${FOLIO_STAMMPFAD}/help
        DESTINATION ${FOLIO_INSTALL_DIR}/Stammfolio)
install(DIRECTORY ${FOLIO_DATENPFAD}/ DESTINATION ${FOLIO_INSTALL_DIR}/Daten)
install(CODE "
    set(bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
    file(MAKE_DIRECTORY \"\${bin}\")
    file(CREATE_LINK ../${FOLIO_INSTALL_DIR}/Stammfolio/Folioexport/folioexport-cli
         \"\${bin}/folioexport-cli\" SYMBOLIC)
    message(STATUS \"Installing: \${bin}/folioexport-cli (link)\")
")

# The desktop program and its link, once app/ builds it; the desktop entry, the metainfo and
# the icon always, so that the menu entry is ready when it does.
if(TARGET folioexport)
    install(TARGETS folioexport DESTINATION ${FOLIO_INSTALL_DIR}/Stammfolio/Folioexport)
    install(CODE "
        set(bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
        file(MAKE_DIRECTORY \"\${bin}\")
        file(CREATE_LINK ../${FOLIO_INSTALL_DIR}/Stammfolio/Folioexport/folioexport
             \"\${bin}/folioexport\" SYMBOLIC)
        message(STATUS \"Installing: \${bin}/folioexport (link)\")
    ")
endif()
install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/folioexport.desktop
        DESTINATION share/applications)
install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/org.example.folioexport.metainfo.xml
        DESTINATION share/metainfo)
get_target_property(FOLIO_ICON_THEME folio_desktop FOLIO_ICON_THEME)
get_target_property(FOLIO_ICON_SIZES folio_desktop FOLIO_ICON_SIZES)
foreach(size IN LISTS FOLIO_ICON_SIZES)
    install(FILES ${FOLIO_ICON_THEME}/${size}x${size}/apps/folioexport.png
            DESTINATION share/icons/hicolor/${size}x${size}/apps)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME folioexport)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Folioexport <folioexport@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "GEDCOM 5.5 export of Stammfolio family trees")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Writes a chosen part of a Stammfolio family tree to a GEDCOM 5.5 file, in UTF-8 or Ansi, "
    "with a desktop wizard (folioexport, a Qt program in the desktop's menu) or from the "
    "command line (folioexport-cli). Opens family-tree files of every older version "
    "and upgrades them in place.")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# The libraries the programs link come from dpkg-shlibdeps. Qt's platform plugins are loaded,
# not linked, but on Debian 12 the xcb and offscreen plugins ship in libqt6gui6, which the
# desktop program links (qt6-qpa-plugins holds only vnc). The Wayland plugin is recommended
# for a native window in a Wayland session; without it Qt falls back to xcb. Qt's own texts
# (the buttons of a message box, the folder dialogue) come in the user's language with its
# translations; without them they are English.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(TARGET folioexport)
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-translations-l10n")
endif()
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
include(CPack)
