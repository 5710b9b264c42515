# SPDX-License-Identifier: GPL-3.0-or-later

# What the lane style passes, as CTest tests: clang-format, shellcheck, clang-tidy on each source, and
# what looks at the files of packages. The target "generated" makes the headers that forms and
# metaobjects need.
#
# A library that is a unity build is read as one: its headers, Qt's among them, are looked at once
# instead of once a source. Configuring fails for a source that no target compiles, since nothing
# would look at it.

find_program(QUORVEL_CLANG_FORMAT NAMES clang-format-14 clang-format REQUIRED)
find_program(QUORVEL_CLANG_TIDY NAMES clang-tidy REQUIRED)
find_program(QUORVEL_CCACHE NAMES ccache REQUIRED)
add_custom_target(generated)

function(quorvel_style_test name)
    add_test(NAME "${name}" COMMAND ${ARGN} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
    set_tests_properties("${name}" PROPERTIES LABELS style TIMEOUT 600)
endfunction()

# quorvel_tidy(NAME FILE WEIGHT): the heaviest begin first.
function(quorvel_tidy name file weight)
    set(config)
    if(QUORVEL_STYLE STREQUAL "FULL")
        set(config "--config-file=${PROJECT_SOURCE_DIR}/.clang-tidy")
    endif()
    quorvel_style_test("clang-tidy ${name}" scripts/tidy "${PROJECT_BINARY_DIR}" "${file}" ${config})
    set_tests_properties("clang-tidy ${name}" PROPERTIES COST ${weight})
endfunction()

function(quorvel_style_of_targets directory compiled)
    get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        # The toolkit's macros make libraries of resources, whose sources come with the build.
        if(NOT type MATCHES "EXECUTABLE|_LIBRARY" OR type STREQUAL "INTERFACE_LIBRARY" OR target MATCHES "_resources_[0-9]+$")
            continue()
        endif()
        add_dependencies(generated ${target}_autogen)
        get_target_property(sources ${target} SOURCES)
        get_target_property(folder ${target} SOURCE_DIR)
        get_target_property(unity ${target} UNITY_BUILD)
        list(FILTER sources INCLUDE REGEX "\\.cpp$")
        set(sum 0)
        foreach(source IN LISTS sources)
            get_filename_component(source "${source}" ABSOLUTE BASE_DIR "${folder}")
            file(SIZE "${source}" size)
            math(EXPR sum "${sum} + ${size}")
            if(NOT unity AND NOT source IN_LIST ${compiled})
                file(RELATIVE_PATH name "${PROJECT_SOURCE_DIR}" "${source}")
                quorvel_tidy("${name}" "${source}" ${size})
            endif()
            list(APPEND ${compiled} "${source}")
        endforeach()
        if(unity)
            set_target_properties(${target} PROPERTIES UNITY_BUILD_CODE_BEFORE_INCLUDE
                                  "// NOLINTNEXTLINE(bugprone-suspicious-include)")
            get_target_property(binary ${target} BINARY_DIR)
            math(EXPR sum "${sum} * 3")
            quorvel_tidy(${target} "${binary}/CMakeFiles/${target}.dir/Unity/unity_0_cxx.cxx" ${sum})
        endif()
    endforeach()
    get_property(subdirectories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
    foreach(subdirectory IN LISTS subdirectories)
        quorvel_style_of_targets("${subdirectory}" ${compiled})
    endforeach()
    set(${compiled} "${${compiled}}" PARENT_SCOPE)
endfunction()
set(quorvel_compiled)
quorvel_style_of_targets("${PROJECT_SOURCE_DIR}" quorvel_compiled)

file(GLOB_RECURSE headers RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
     app/*.h bench/*.h bundle/*.h capture/*.h config/*.h device/*.h dialogs/*.h doctor/*.h resources/*.h sim/*.h tests/*.h tools/*.h)
file(GLOB_RECURSE sources RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
     app/*.cpp bench/*.cpp bundle/*.cpp capture/*.cpp config/*.cpp device/*.cpp dialogs/*.cpp doctor/*.cpp resources/*.cpp sim/*.cpp
     tests/*.cpp tools/*.cpp)
foreach(source IN LISTS sources)
    if(NOT "${PROJECT_SOURCE_DIR}/${source}" IN_LIST quorvel_compiled)
        message(SEND_ERROR "No target compiles ${source}")
    endif()
endforeach()
quorvel_style_test(clang-format "${QUORVEL_CLANG_FORMAT}" --dry-run -Werror ${sources} ${headers})
quorvel_style_test(shellcheck sh -c "grep -rlE '^#!.*[/ ](ba|da)?sh( |$)|^# shellcheck shell=' .ci bench debian packaging scripts tests tools | xargs shellcheck -x -S warning")

# What a desktop and a package read.
quorvel_style_test("desktop entries" sh -c "desktop-file-validate packaging/*.desktop")
quorvel_style_test("software catalogue" appstreamcli validate --pedantic --no-net
                   "${PROJECT_BINARY_DIR}/packaging/org.quorvel.quorvel.metainfo.xml")
quorvel_style_test("pictures of the software catalogue" tests/program/check-catalogue
                   "${PROJECT_BINARY_DIR}/packaging/org.quorvel.quorvel.metainfo.xml" "${QUORVEL_SITE}")
quorvel_style_test("manual pages" sh -c "words=$(man --warnings -E UTF-8 -l -Tutf8 -Z packaging/*.1 2>&1 >/dev/null) && echo \"$words\" && test -z \"$words\"")
if(TARGET manual)
    add_dependencies(generated manual)
endif()
quorvel_style_test("manual" tests/program/check-manual "${PROJECT_BINARY_DIR}/manual")
quorvel_style_test("what clang-tidy has passed" tests/program/check-tidy)
quorvel_style_test("licences" reuse lint)
quorvel_style_test("licence lines" tests/program/check-licence-lines)
quorvel_style_test(translations "${PROJECT_SOURCE_DIR}/scripts/translations" check)
