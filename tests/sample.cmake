# The sample family tree: its source reader, and the consistency of the staged file.
folio_test(sample_tests tools/sample_test.cpp)
target_link_libraries(sample_tests PRIVATE folio_tools)
target_compile_definitions(sample_tests PRIVATE FOLIO_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
add_dependencies(sample_tests folio_sample)
