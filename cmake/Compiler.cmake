# The one place for compiler settings: C++20, warnings, sanitizers, compiler cache. Warnings are errors in the presets that ./test
# builds: a player's compiler may be newer than any that was tried here.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
# GCC 12 sees overlapping copies in any "text" + std::string when it optimises (GCC bug 105329).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-restrict)
endif()
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)

# Vantor holds passwords for a moment: an overrun ends the program instead of going on. The sanitizers see more than this.
if(CMAKE_BUILD_TYPE MATCHES "^Rel" AND NOT VANTOR_SANITIZE)
    add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    # Not "-z now": the start has a limit, and binds then what most games never call.
    if(NOT APPLE)
        add_link_options(-Wl,-z,relro)
    endif()
endif()

if(VANTOR_SANITIZE)
    add_compile_options(-fsanitize=${VANTOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g -O1)
    add_link_options(-fsanitize=${VANTOR_SANITIZE})
endif()
