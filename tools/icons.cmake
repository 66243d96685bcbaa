# The wizard's pictures: the design pictures of its store, one picture per event kind, the
# picture of the unknown kind and the side picture, drawn from the text sources in data/icons
# into the host's folder. The number of event pictures follows the catalogue, so the build
# knows them by a stamp.
add_executable(folio-build-icons
    ${CMAKE_CURRENT_LIST_DIR}/build_icons.cpp
    ${CMAKE_CURRENT_LIST_DIR}/icon_source.cpp
    ${CMAKE_CURRENT_LIST_DIR}/side_picture.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sample_pictures.cpp)
target_link_libraries(folio-build-icons PRIVATE folio_tools)

file(GLOB_RECURSE FOLIO_ICON_SOURCES CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/data/icons/*.txt ${PROJECT_SOURCE_DIR}/data/icons/*.tsv)
set(FOLIO_ICONS_STAMP ${CMAKE_CURRENT_BINARY_DIR}/icons.stamp)
add_custom_command(
    OUTPUT ${FOLIO_ICONS_STAMP} ${FOLIO_STAMMPFAD}/prog/unbekannt.ico
           ${FOLIO_STAMMPFAD}/bmp/prog/archivar.gif
    COMMAND folio-build-icons ${PROJECT_SOURCE_DIR}/data/icons
            ${PROJECT_SOURCE_DIR}/data/events/catalogue.tsv ${FOLIO_STAMMPFAD}
    COMMAND ${CMAKE_COMMAND} -E touch ${FOLIO_ICONS_STAMP}
    DEPENDS folio-build-icons ${FOLIO_ICON_SOURCES} ${PROJECT_SOURCE_DIR}/data/events/catalogue.tsv
            ${PROJECT_SOURCE_DIR}/src/wizard/icons.h
    COMMENT "Drawing the wizard's pictures"
    VERBATIM)
add_custom_target(folio_icons ALL DEPENDS ${FOLIO_ICONS_STAMP})
