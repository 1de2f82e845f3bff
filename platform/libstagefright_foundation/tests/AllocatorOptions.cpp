// SPDX-License-Identifier: Apache-2.0

// Tests request more memory than there is. With these options the sanitizers' allocators then
// return null, like malloc(), instead of ending the program. They call these functions when they
// start.
extern "C" {

__attribute__((visibility("default"))) const char* __asan_default_options();
__attribute__((visibility("default"))) const char* __tsan_default_options();

const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}

}  // extern "C"
