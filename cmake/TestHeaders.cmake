# SPDX-License-Identifier: Apache-2.0
# The headers that nearly every test source includes, parsed once a program.
function(ogm_precompile_test_headers target)
    target_precompile_headers(${target} PRIVATE <gmock/gmock.h> <gtest/gtest.h> <string> <vector>)
endfunction()
