// SPDX-License-Identifier: Apache-2.0
/** A library with the file name of a plug-in that is none. */
extern "C" __attribute__((visibility("default"))) int somethingElse() {
    return 0;
}
