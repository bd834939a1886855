# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
#
# Language level, warnings and sanitizers for every target of the tree.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# No contraction: the engine's arithmetic is as written, the same with every compiler. The
# kernels ask for fused multiply-adds by name.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
                    -ffp-contract=off -fvisibility=hidden)
# GCC 12 with -O3 takes a joined string for a copy onto itself.
add_compile_options($<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)

if(SORVANE_SANITIZE)
    add_compile_options(-fsanitize=${SORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${SORVANE_SANITIZE})
    # GCC 12 with the address sanitizer takes a list of sizes for uninitialised.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
