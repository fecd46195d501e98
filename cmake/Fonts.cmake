# The text faces come from the system's packages and are embedded in the program; the files are not kept here.
# EB Garamond and Lato, both under the SIL Open Font License 1.1.
# What prepares them is a library of the interpreter that runs the program of the same name.
find_program(FONTTOOLS fonttools REQUIRED)
file(STRINGS ${FONTTOOLS} first_line LIMIT_COUNT 1)
string(REGEX REPLACE "^#! *" "" font_python "${first_line}")

function(vantor_font result pattern)
    file(GLOB_RECURSE found ${ARGN})
    list(FILTER found INCLUDE REGEX "${pattern}")
    if(NOT found)
        message(FATAL_ERROR "No font file matching ${pattern}: install EB Garamond and Lato")
    endif()
    list(SORT found)
    list(GET found 0 first)
    set(${result} ${first} PARENT_SCOPE)
endfunction()

# Where Debian and where Homebrew put them.
set(font_folders /usr/share/fonts $ENV{HOME}/Library/Fonts)
list(TRANSFORM font_folders APPEND /*Garamond* OUTPUT_VARIABLE garamond)
list(TRANSFORM font_folders APPEND /*Lato* OUTPUT_VARIABLE lato)
vantor_font(serif_file "EBGaramond12-Regular\\.(otf|ttf)$|EBGaramond(-Regular|\\[wght\\])\\.(otf|ttf)$" ${garamond})
vantor_font(sans_file "Lato-Regular\\.ttf$" ${lato})
vantor_font(sans_bold_file "Lato-Bold\\.ttf$" ${lato})

# vantor_face(ALIAS FILE FAMILY): one face as it is embedded, under its own file name; VANTOR_FACES lists them all, by alias.
set(VANTOR_FACES)
set(prepare_face ${CMAKE_SOURCE_DIR}/cmake/prepare_face.py)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${prepare_face})
function(vantor_face alias file family)
    get_filename_component(name ${file} NAME)
    set(face ${CMAKE_BINARY_DIR}/fonts/${name})
    if(${file} IS_NEWER_THAN ${face} OR ${prepare_face} IS_NEWER_THAN ${face})
        file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/fonts)
        execute_process(COMMAND ${font_python} ${prepare_face} ${file} ${face} ${family} COMMAND_ERROR_IS_FATAL ANY)
    endif()
    set(VANTOR_FACES ${VANTOR_FACES} ${alias} PARENT_SCOPE)
    set(VANTOR_FACE_${alias} ${face} PARENT_SCOPE)
endfunction()
vantor_face(serif ${serif_file} "Vantor Serif")
vantor_face(sans ${sans_file} "Vantor Sans")
vantor_face(sans-bold ${sans_bold_file} "Vantor Sans")
