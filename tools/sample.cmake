# The sample family tree Beispiel.SF6: the reader of its text source in the tools library, and
# the builder, which also draws the pictures that the tree points at. The file lies in the data
# folder and, as the host installs it, in the host's folder too.
target_sources(folio_tools PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/sample_source.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sample_fields.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sample_rtf.cpp)

add_executable(folio-build-sample
    ${CMAKE_CURRENT_LIST_DIR}/build_sample.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sample_file.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sample_pictures.cpp)
target_link_libraries(folio-build-sample PRIVATE folio_tools folio_database)

file(GLOB FOLIO_SAMPLE_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/data/sample/*.txt)
add_custom_command(
    OUTPUT ${FOLIO_DATENPFAD}/Beispiel.SF6 ${FOLIO_STAMMPFAD}/Beispiel.SF6
    COMMAND folio-build-sample ${PROJECT_SOURCE_DIR}/data/sample
            ${FOLIO_DATENPFAD}/language.mdb ${FOLIO_DATENPFAD}/Ereignis.mdb
            ${FOLIO_DATENPFAD}/Beispiel.SF6 ${FOLIO_DATENPFAD}/Bilder
    COMMAND ${CMAKE_COMMAND} -E make_directory ${FOLIO_STAMMPFAD}
    COMMAND ${CMAKE_COMMAND} -E copy ${FOLIO_DATENPFAD}/Beispiel.SF6 ${FOLIO_STAMMPFAD}/Beispiel.SF6
    DEPENDS folio-build-sample ${FOLIO_SAMPLE_SOURCES}
            ${FOLIO_DATENPFAD}/language.mdb ${FOLIO_DATENPFAD}/Ereignis.mdb
    COMMENT "Building the sample family tree Beispiel.SF6 and its pictures"
    VERBATIM)
add_custom_target(folio_sample ALL
    DEPENDS ${FOLIO_DATENPFAD}/Beispiel.SF6 ${FOLIO_STAMMPFAD}/Beispiel.SF6)
add_dependencies(folio_sample folio_language)
if(TARGET folio_catalogue)
    add_dependencies(folio_sample folio_catalogue)
endif()
