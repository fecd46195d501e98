# vantor_embed(TARGET): puts the catalogue, the images, the text faces and the texts into a program.
set(CMAKE_AUTORCC OFF)
function(vantor_embed target)
    file(GLOB_RECURSE files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/catalogue/*.json
        ${CMAKE_SOURCE_DIR}/resources/images/*.svg ${CMAKE_SOURCE_DIR}/resources/texts/*
        ${CMAKE_SOURCE_DIR}/resources/pages/*)
    qt_add_resources(${target} ${target}_files PREFIX "/" BASE "${CMAKE_SOURCE_DIR}/resources" FILES ${files})
    set(faces)
    foreach(alias ${VANTOR_FACES})
        set_source_files_properties(${VANTOR_FACE_${alias}} PROPERTIES QT_RESOURCE_ALIAS ${alias})
        list(APPEND faces ${VANTOR_FACE_${alias}})
    endforeach()
    qt_add_resources(${target} ${target}_faces PREFIX "/fonts" FILES ${faces})
endfunction()
