# The desktop integration: the application icon, drawn from its text sources in
# data/icons/app into an icon theme folder of the build, in the sizes that the hicolor theme
# installs. The target carries where the folder is and which sizes it holds, for the
# installation (install.cmake).
add_library(folio_app_icon STATIC
    ${CMAKE_CURRENT_LIST_DIR}/app_icon.cpp
    ${CMAKE_CURRENT_LIST_DIR}/png.cpp)
target_include_directories(folio_app_icon PUBLIC ${CMAKE_CURRENT_LIST_DIR})
target_link_libraries(folio_app_icon PUBLIC folio_tools)

add_executable(folio-build-app-icon ${CMAKE_CURRENT_LIST_DIR}/build_app_icon.cpp)
target_link_libraries(folio-build-app-icon PRIVATE folio_app_icon)

set(FOLIO_APP_ICON_SIZES 16 32 48 64 128 256)
set(FOLIO_APP_ICON_THEME ${CMAKE_CURRENT_BINARY_DIR}/hicolor)
set(FOLIO_APP_ICON_DRAWINGS
    ${PROJECT_SOURCE_DIR}/data/icons/app/folioexport-16.txt
    ${PROJECT_SOURCE_DIR}/data/icons/app/folioexport-32.txt)
set(FOLIO_APP_ICON_FILES)
foreach(size IN LISTS FOLIO_APP_ICON_SIZES)
    list(APPEND FOLIO_APP_ICON_FILES ${FOLIO_APP_ICON_THEME}/${size}x${size}/apps/folioexport.png)
endforeach()
string(JOIN , FOLIO_APP_ICON_SIZE_LIST ${FOLIO_APP_ICON_SIZES})

add_custom_command(
    OUTPUT ${FOLIO_APP_ICON_FILES}
    COMMAND folio-build-app-icon ${FOLIO_APP_ICON_THEME} folioexport ${FOLIO_APP_ICON_SIZE_LIST}
            ${FOLIO_APP_ICON_DRAWINGS}
    DEPENDS folio-build-app-icon ${FOLIO_APP_ICON_DRAWINGS}
    COMMENT "Drawing the application icon"
    VERBATIM)
add_custom_target(folio_desktop ALL DEPENDS ${FOLIO_APP_ICON_FILES})
set_target_properties(folio_desktop PROPERTIES
    FOLIO_ICON_THEME ${FOLIO_APP_ICON_THEME}
    FOLIO_ICON_SIZES "${FOLIO_APP_ICON_SIZES}")
