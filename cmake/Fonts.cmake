# The text faces come from the system's packages and are embedded in the program; the files are not kept here.
# EB Garamond and Lato, both under the SIL Open Font License 1.1.
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
vantor_font(VANTOR_SERIF "EBGaramond12-Regular\\.(otf|ttf)$|EBGaramond(-Regular|\\[wght\\])\\.(otf|ttf)$" ${garamond})
vantor_font(VANTOR_SANS "Lato-Regular\\.ttf$" ${lato})
vantor_font(VANTOR_SANS_BOLD "Lato-Bold\\.ttf$" ${lato})
