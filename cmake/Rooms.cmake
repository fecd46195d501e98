# vantor_room(NAME FOLDER LINKS...): a static library of one folder's .cpp files. A room sees only what it links, which is
# what keeps the arrows of docs/architecture.md pointing down; tests/layers checks the includes as well.
function(vantor_room name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp)
    if(sources)
        add_library(${name} STATIC ${sources})
        target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
        target_link_libraries(${name} PUBLIC ${ARGN})
    else()
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR}/src)
        target_link_libraries(${name} INTERFACE ${ARGN})
    endif()
endfunction()
