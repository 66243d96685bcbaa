# The event catalogue and geddate.ini: the reader of the catalogue's source, and the shipped
# data itself.
folio_test(catalogue_tests tools/catalogue_source_test.cpp)
target_link_libraries(catalogue_tests PRIVATE folio_tools)
target_compile_definitions(catalogue_tests PRIVATE FOLIO_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

# The staged folders that the program's tests copy hold the catalogue and geddate.ini too.
add_dependencies(app_tests folio_catalogue)
