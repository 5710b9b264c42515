# SPDX-License-Identifier: GPL-3.0-or-later

# quorvel_precompile(<core|widgets> <targets...>): headers that nearly every source includes are read once
# for all, where QUORVEL_PRECOMPILE asks for it. None of Qt Test, whose macros name the folder of the test.
function(quorvel_precompile floor)
    if(QUORVEL_PRECOMPILE)
        foreach(target IN LISTS ARGN)
            target_precompile_headers(${target} REUSE_FROM precompiled_${floor})
        endforeach()
    endif()
endfunction()

if(QUORVEL_PRECOMPILE)
    # Libraries and programs share a header only if their code is independent of its place in one way.
    set(CMAKE_CXX_COMPILE_OPTIONS_PIE "${CMAKE_CXX_COMPILE_OPTIONS_PIC}")
    # Without these ccache does not see what is in such a header, and keeps nothing.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
    else()
        add_compile_options(-fpch-preprocess)
    endif()
    file(CONFIGURE OUTPUT precompiled.cpp CONTENT "int main() {}\n")
    add_executable(precompiled_core "${CMAKE_CURRENT_BINARY_DIR}/precompiled.cpp")
    target_link_libraries(precompiled_core PRIVATE Qt6::Core)
    target_precompile_headers(precompiled_core PRIVATE cmake/precompiled.h)
    if(QUORVEL_WIDGETS)
        add_executable(precompiled_widgets "${CMAKE_CURRENT_BINARY_DIR}/precompiled.cpp")
        target_link_libraries(precompiled_widgets PRIVATE Qt6::Widgets)
        target_precompile_headers(precompiled_widgets PRIVATE cmake/precompiled.h)
    endif()
endif()
