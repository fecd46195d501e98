# The text faces come from the system's packages and are embedded in the program; the files are not kept here.
# EB Garamond and Lato, both under the SIL Open Font License 1.1.
function(vantor_font result pattern)
    file(GLOB_RECURSE found ${ARGN})
    list(FILTER found INCLUDE REGEX "${pattern}")
    if(NOT found)
        message(FATAL_ERROR "No font file matching ${pattern}: install fonts-ebgaramond and fonts-lato")
    endif()
    list(SORT found)
    list(GET found 0 first)
    set(${result} ${first} PARENT_SCOPE)
endfunction()

vantor_font(VANTOR_SERIF "EBGaramond12-Regular\\.(otf|ttf)$|EBGaramond-Regular\\.(otf|ttf)$" /usr/share/fonts/*Garamond*)
vantor_font(VANTOR_SANS "Lato-Regular\\.ttf$" /usr/share/fonts/*Lato*)
vantor_font(VANTOR_SANS_BOLD "Lato-Bold\\.ttf$" /usr/share/fonts/*Lato*)
