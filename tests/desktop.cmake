# The desktop integration: the application icon's builder, and the desktop entry, metainfo
# and staged icons as the desktop's tools see them. Qt's image reader is the independent
# reader of the PNG files.
find_package(Qt6 REQUIRED COMPONENTS Gui)

folio_test(desktop_tests tools/app_icon_test.cpp)
target_link_libraries(desktop_tests PRIVATE folio_app_icon Qt6::Gui)

get_target_property(FOLIO_ICON_THEME folio_desktop FOLIO_ICON_THEME)
get_target_property(FOLIO_ICON_SIZES folio_desktop FOLIO_ICON_SIZES)
string(JOIN , FOLIO_ICON_SIZE_LIST ${FOLIO_ICON_SIZES})
add_test(NAME Desktop.FilesValidate
         COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/desktop/desktop_files_test.sh
                 ${PROJECT_SOURCE_DIR}/data/desktop ${FOLIO_ICON_THEME} ${FOLIO_ICON_SIZE_LIST}
                 ${PROJECT_VERSION})
