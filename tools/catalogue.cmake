# The event catalogue: a reader of its text source and the builder of Ereignis.mdb, in the
# tools library that the tests use too; and the table of date modifiers geddate.ini, which
# lies beside the program.
target_sources(folio_tools PRIVATE ${CMAKE_CURRENT_LIST_DIR}/catalogue_source.cpp)

add_executable(folio-build-catalogue ${CMAKE_CURRENT_LIST_DIR}/build_catalogue.cpp)
target_link_libraries(folio-build-catalogue PRIVATE folio_tools)

set(FOLIO_CATALOGUE_SOURCE ${PROJECT_SOURCE_DIR}/data/events/catalogue.tsv)
add_custom_command(
    OUTPUT ${FOLIO_DATENPFAD}/Ereignis.mdb
    COMMAND folio-build-catalogue ${FOLIO_CATALOGUE_SOURCE} ${FOLIO_DATENPFAD}/Ereignis.mdb
    DEPENDS folio-build-catalogue ${FOLIO_CATALOGUE_SOURCE}
    COMMENT "Building the event catalogue Ereignis.mdb"
    VERBATIM)

set(FOLIO_GEDDATE_SOURCE ${PROJECT_SOURCE_DIR}/data/geddate.ini)
add_custom_command(
    OUTPUT ${FOLIO_PROGRAMMPFAD}/geddate.ini
    COMMAND ${CMAKE_COMMAND} -E make_directory ${FOLIO_PROGRAMMPFAD}
    COMMAND ${CMAKE_COMMAND} -E copy ${FOLIO_GEDDATE_SOURCE} ${FOLIO_PROGRAMMPFAD}/geddate.ini
    DEPENDS ${FOLIO_GEDDATE_SOURCE}
    COMMENT "Staging geddate.ini beside the program"
    VERBATIM)

add_custom_target(folio_catalogue ALL
    DEPENDS ${FOLIO_DATENPFAD}/Ereignis.mdb ${FOLIO_PROGRAMMPFAD}/geddate.ini)
