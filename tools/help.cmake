# The wizard's help pages, German and English, copied into the host's folder (help/de,
# help/en), where the Help button and each page of the wizard find them.
file(GLOB_RECURSE FOLIO_HELP_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/data/help/*)
set(FOLIO_HELP_STAMP ${CMAKE_CURRENT_BINARY_DIR}/help.stamp)
add_custom_command(
    OUTPUT ${FOLIO_HELP_STAMP}
    COMMAND ${CMAKE_COMMAND} -E remove_directory ${FOLIO_STAMMPFAD}/help
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_SOURCE_DIR}/data/help
            ${FOLIO_STAMMPFAD}/help
    COMMAND ${CMAKE_COMMAND} -E touch ${FOLIO_HELP_STAMP}
    DEPENDS ${FOLIO_HELP_SOURCES}
    COMMENT "Staging the help pages"
    VERBATIM)
add_custom_target(folio_help ALL DEPENDS ${FOLIO_HELP_STAMP})
