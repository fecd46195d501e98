# What is embedded in the program: the catalogue, the images, the text faces.
set(CMAKE_AUTORCC OFF)
file(GLOB VANTOR_IMAGES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/images/*.svg)
qt_add_resources(vantor catalogue PREFIX "/" BASE "${CMAKE_SOURCE_DIR}/resources" FILES
    ${CMAKE_SOURCE_DIR}/resources/catalogue/events.json
    ${CMAKE_SOURCE_DIR}/resources/catalogue/categories/beasts.json)
if(VANTOR_IMAGES)
    qt_add_resources(vantor images PREFIX "/" BASE "${CMAKE_SOURCE_DIR}/resources" FILES ${VANTOR_IMAGES})
endif()
foreach(pair "SERIF;serif" "SANS;sans" "SANS_BOLD;sans-bold")
    list(GET pair 0 variable)
    list(GET pair 1 alias)
    set_source_files_properties(${VANTOR_${variable}} PROPERTIES QT_RESOURCE_ALIAS ${alias})
    list(APPEND VANTOR_FONT_FILES ${VANTOR_${variable}})
endforeach()
qt_add_resources(vantor fonts PREFIX "/fonts" FILES ${VANTOR_FONT_FILES})
