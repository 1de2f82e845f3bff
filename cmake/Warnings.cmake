# SPDX-License-Identifier: Apache-2.0
# Warnings are errors everywhere.
add_compile_options(-Wall -Wextra -Werror)
