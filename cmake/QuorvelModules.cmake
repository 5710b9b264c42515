# SPDX-License-Identifier: GPL-3.0-or-later

# quorvel_module(<name> FOR <target> [COMPONENT <component>] SOURCES <sources...> LIBRARIES <targets...>)
#
# A part of the programs that is loaded when it is first needed (see modules/module.h): the shared
# library quorvel-<name>.so, of what the sources export. FOR is the library that asks for it; with
# it the module is built. COMPONENT is the part of the installation that it goes to, if any.
set(quorvel_modules "${PROJECT_BINARY_DIR}/modules")
set(CMAKE_BUILD_RPATH "${quorvel_modules}")
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}/quorvel")
# The older kind of run path: no environment leads past it, and sanitizers, which stand between a
# program and dlopen(), do not lose it.
add_link_options(-Wl,--disable-new-dtags)

function(quorvel_module name)
    cmake_parse_arguments(arg "" "FOR;COMPONENT" "SOURCES;LIBRARIES" ${ARGN})
    add_library(quorvel-${name} MODULE ${arg_SOURCES})
    target_link_libraries(quorvel-${name} PRIVATE Qt6::Core ${arg_LIBRARIES})
    target_include_directories(quorvel-${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}")
    set_target_properties(quorvel-${name} PROPERTIES
        PREFIX ""
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        LIBRARY_OUTPUT_DIRECTORY "${quorvel_modules}"
        INSTALL_RPATH "")
    add_dependencies(${arg_FOR} quorvel-${name})
    if(arg_COMPONENT)
        install(TARGETS quorvel-${name} DESTINATION "${CMAKE_INSTALL_LIBDIR}/quorvel" COMPONENT ${arg_COMPONENT})
    endif()
endfunction()
