# SPDX-License-Identifier: Apache-2.0
# Everything is built the way the device builds media modules: NDEBUG is always defined, the stack
# is guarded, aliasing by type is not assumed, and no target fuses a product with a sum.
add_compile_definitions($<$<NOT:$<CONFIG:Debug>>:NDEBUG>)
add_compile_options(-fstack-protector-strong -fno-strict-aliasing -ffp-contract=off)
if(OGM_SANITIZE STREQUAL "")
    # The sanitizers check the same calls, and more.
    add_compile_options(
        "$<$<CONFIG:Release>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>")
endif()
