# SPDX-License-Identifier: GPL-3.0-or-later

# What the lane style passes, as CTest tests: clang-format, shellcheck, clang-tidy on each source, and
# what looks at the files of packages. The target "generated" makes what sources include and forms and
# metaobjects become, without the libraries that AUTOMOC and AUTOUIC would wait for.
#
# Sources of several folders are read as one, since most of the time goes to Qt's headers: those of libraries
# as they are, each of a program in a namespace of its own behind the headers of all (scripts/read-as-one).
# Configuring fails for a source that no target compiles, since nothing would look at it.

find_program(QUORVEL_CLANG_FORMAT NAMES clang-format-14 clang-format REQUIRED)
find_program(QUORVEL_CLANG_TIDY NAMES clang-tidy REQUIRED)
find_program(QUORVEL_CCACHE NAMES ccache REQUIRED)

# Folders that are read as one, the first that fit.
set(readers
    "device|modules|capture|config|doctor|bundle|sim"
    "lights|tools|tools/quorvelctl"
    "resources|paper|dialogs"
    "app"
    "tests/dialogs|tests/kernel|tests/paper|tests/recordings"
    "tests/app"
    "tests/config|tests/ctl|tests/fleet|tests/fuzz|tests/lights"
    "tests/.*|bench")
# Targets that define what another declares or the system has, need other headers of the terminal or of the
# tests, or have a main() of which the analyzer does not expect that something is thrown in what it calls.
set(read_alone fastclock quorvelctl
    tst_connection tst_hotplug tst_machine_around tst_mainwindow tst_serial_program tst_serialsession)

function(quorvel_style_test name)
    add_test(NAME "${name}" COMMAND ${ARGN} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
    set_tests_properties("${name}" PROPERTIES LABELS style TIMEOUT 600)
endfunction()

# quorvel_tidy(NAME FILE SOURCES...): FILE is the source or made of these; the heaviest begin first. NAME
# begins with the folder whose checks are passed, since FILE may stand elsewhere.
function(quorvel_tidy name file)
    set(checks .clang-tidy)
    set(weight 3)
    set(bounds)
    if(NOT QUORVEL_STYLE STREQUAL "FULL")
        string(REGEX MATCH "^[a-z]+" top "${name}")
        if(EXISTS "${PROJECT_SOURCE_DIR}/${top}/.clang-tidy")
            set(checks "${top}/.clang-tidy")
            set(weight 1)
        endif()
        # The analyzer follows a function for an eleventh of the steps it takes by itself, a fifth of the time.
        set(bounds --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000)
    endif()
    set(cost 0)
    foreach(source IN LISTS ARGN)
        file(SIZE "${source}" size)
        math(EXPR cost "${cost} + ${size} * ${weight}")
    endforeach()
    quorvel_style_test("clang-tidy ${name}" scripts/tidy "${PROJECT_BINARY_DIR}" "${file}"
                       "--config-file=${PROJECT_SOURCE_DIR}/${checks}" ${bounds})
    set_tests_properties("clang-tidy ${name}" PROPERTIES COST ${cost})
endfunction()

# quorvel_targets_below(DIRECTORY): adds its targets to the global property of that name.
function(quorvel_targets_below directory)
    get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
    set_property(GLOBAL APPEND PROPERTY quorvel_targets_below ${targets})
    get_property(subdirectories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
    foreach(subdirectory IN LISTS subdirectories)
        quorvel_targets_below("${subdirectory}")
    endforeach()
endfunction()
quorvel_targets_below("${PROJECT_SOURCE_DIR}")
get_property(targets GLOBAL PROPERTY quorvel_targets_below)

set(made_folder "${PROJECT_BINARY_DIR}/made")
set(made)
set(compiled)
foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    # The toolkit's macros make libraries of resources, whose sources come with the build.
    if(NOT type MATCHES "EXECUTABLE|_LIBRARY" OR type STREQUAL "INTERFACE_LIBRARY" OR target MATCHES "_resources_[0-9]+$")
        continue()
    endif()
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF UNITY_BUILD OFF)
    target_include_directories(${target} PRIVATE "${made_folder}")
    get_target_property(sources ${target} SOURCES)
    get_target_property(folder ${target} SOURCE_DIR)
    list(TRANSFORM sources PREPEND "${folder}/" REGEX "^[^/]")
    set(forms ${sources})
    list(FILTER forms INCLUDE REGEX "\\.ui$")
    foreach(form IN LISTS forms)
        get_filename_component(name "${form}" NAME_WE)
        set(header "${made_folder}/ui_${name}.h")
        add_custom_command(OUTPUT "${header}" COMMAND Qt6::uic -o "${header}" "${form}" DEPENDS "${form}" VERBATIM)
        list(APPEND made "${header}")
    endforeach()
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    foreach(source IN LISTS sources)
        get_filename_component(name "${source}" NAME_WE)
        file(STRINGS "${source}" includes REGEX "^#include \"${name}\\.moc\"$")
        if(includes AND NOT source IN_LIST compiled)
            qt_generate_moc("${source}" "${made_folder}/${name}.moc" TARGET ${target})
            list(APPEND made "${made_folder}/${name}.moc")
        endif()
    endforeach()
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${folder}")
    set(reader)
    if(NOT target IN_LIST read_alone AND NOT QUORVEL_STYLE STREQUAL "FULL")
        foreach(folders IN LISTS readers)
            if(folder MATCHES "^(${folders})$")
                string(MAKE_C_IDENTIFIER "read_${folders}" reader)
                list(APPEND targets_of_${reader} ${target})
                break()
            endif()
        endforeach()
    endif()
    foreach(source IN LISTS sources)
        if(source IN_LIST compiled)
            continue()
        endif()
        list(APPEND compiled "${source}")
        get_source_file_property(definitions "${source}" TARGET_DIRECTORY ${target} COMPILE_DEFINITIONS)
        if(reader AND definitions)
            list(APPEND definitions_of_${reader} "${definitions}")
        endif()
        string(REGEX REPLACE "cpp$" "h" header "${source}")
        if(NOT reader)
            file(RELATIVE_PATH name "${PROJECT_SOURCE_DIR}" "${source}")
            quorvel_tidy("${name}" "${source}" "${source}")
        elseif(NOT type STREQUAL "EXECUTABLE" OR EXISTS "${header}")
            list(APPEND libraries_of_${reader} "${source}")
        else()
            list(APPEND programs_of_${reader} "${source}")
        endif()
    endforeach()
endforeach()

foreach(folders IN LISTS readers)
    string(MAKE_C_IDENTIFIER "read_${folders}" reader)
    if(NOT targets_of_${reader})
        continue()
    endif()
    set(unit "${PROJECT_BINARY_DIR}/${reader}.cpp")
    add_library(${reader} OBJECT EXCLUDE_FROM_ALL "${unit}")
    set_target_properties(${reader} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF UNITY_BUILD OFF)
    target_include_directories(${reader} PRIVATE "${made_folder}" "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}")
    # Each fuzz program has a corpus of its own.
    target_compile_options(${reader} PRIVATE -Wno-macro-redefined)
    foreach(target IN LISTS targets_of_${reader})
        get_target_property(folder ${target} SOURCE_DIR)
        target_include_directories(${reader} PRIVATE "${folder}")
        target_link_libraries(${reader} PRIVATE $<TARGET_PROPERTY:${target},LINK_LIBRARIES>)
        target_compile_definitions(${reader} PRIVATE $<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>)
    endforeach()
    target_compile_definitions(${reader} PRIVATE ${definitions_of_${reader}})
    add_custom_command(OUTPUT "${unit}"
        COMMAND "${PROJECT_SOURCE_DIR}/scripts/read-as-one" "${unit}" ${libraries_of_${reader}} --programs ${programs_of_${reader}}
        DEPENDS "${PROJECT_SOURCE_DIR}/scripts/read-as-one" ${libraries_of_${reader}} ${programs_of_${reader}} VERBATIM)
    list(APPEND made "${unit}")
    quorvel_tidy("${folders}" "${unit}" ${libraries_of_${reader}} ${programs_of_${reader}})
endforeach()
add_custom_target(generated DEPENDS ${made})

file(GLOB_RECURSE headers RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
     app/*.h bench/*.h bundle/*.h capture/*.h cmake/*.h config/*.h device/*.h dialogs/*.h doctor/*.h lights/*.h modules/*.h
     paper/*.h resources/*.h sim/*.h tests/*.h tools/*.h)
file(GLOB_RECURSE sources RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
     app/*.cpp bench/*.cpp bundle/*.cpp capture/*.cpp config/*.cpp device/*.cpp dialogs/*.cpp doctor/*.cpp lights/*.cpp
     modules/*.cpp paper/*.cpp resources/*.cpp sim/*.cpp tests/*.cpp tools/*.cpp)
foreach(source IN LISTS sources)
    if(NOT "${PROJECT_SOURCE_DIR}/${source}" IN_LIST compiled)
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
