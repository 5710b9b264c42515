# SPDX-License-Identifier: GPL-3.0-or-later

# What every target of the project is compiled and linked with.

if(NOT QUORVEL_VENDOR_ID MATCHES "^0[xX][0-9a-fA-F]+$")
    message(FATAL_ERROR "QUORVEL_VENDOR_ID is '${QUORVEL_VENDOR_ID}': write a hexadecimal number such as 0x5156")
endif()
math(EXPR quorvel_vendor "${QUORVEL_VENDOR_ID}")
if(quorvel_vendor LESS 1 OR quorvel_vendor GREATER 65535)
    message(FATAL_ERROR "QUORVEL_VENDOR_ID is '${QUORVEL_VENDOR_ID}': a USB vendor id lies between 0x0001 and 0xFFFF")
endif()

if(NOT QUORVEL_SITE MATCHES "^https://[A-Za-z0-9._~:/%-]*[^/]$")
    message(FATAL_ERROR "QUORVEL_SITE is '${QUORVEL_SITE}': write an address such as https://quorvel.org, without a slash at the end")
endif()

set(QUORVEL_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
option(QUORVEL_HARDEN "Compile and link with fortified library calls, stack protector, PIE and full RELRO" OFF)
option(QUORVEL_COVERAGE "Compile for gcov" OFF)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wcast-align -Wformat=2 -Wundef)
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CONTEXTLESS_CONNECT
                        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_URL_CAST_FROM_STRING
                        QT_STRICT_ITERATORS)
add_link_options(-Wl,--as-needed)
# A start reads the pages of what it calls, and of what stands beside that: the smaller the fewer.
# Builds of no type, as packagers make them, get the flags that these choose.
add_compile_options("$<$<CONFIG:Release,RelWithDebInfo>:-Os>")

if(QUORVEL_HARDEN)
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong
                        -fstack-clash-protection -fcf-protection)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
if(QUORVEL_SANITIZE)
    add_compile_options(-fsanitize=${QUORVEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QUORVEL_SANITIZE})
    # What no sanitizer sees: an optional without a value, an index beyond the end of a container that
    # has room behind it, what the toolkit's headers ask of who calls them.
    add_compile_definitions(_GLIBCXX_ASSERTIONS QT_FORCE_ASSERTS)
endif()
if(QUORVEL_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
