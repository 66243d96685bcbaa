# The generator of large family trees, for tests and benchmarks.
add_library(folio_generator STATIC ${CMAKE_CURRENT_LIST_DIR}/generate_tree.cpp)
target_include_directories(folio_generator PUBLIC ${CMAKE_CURRENT_LIST_DIR})
target_link_libraries(folio_generator PUBLIC folio_database)

add_executable(folio-generate-tree ${CMAKE_CURRENT_LIST_DIR}/generate_tree_main.cpp)
target_link_libraries(folio-generate-tree PRIVATE folio_generator)
