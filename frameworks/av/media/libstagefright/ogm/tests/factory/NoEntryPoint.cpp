// SPDX-License-Identifier: Apache-2.0
/** A library that has the file name of a plug-in but is none. */
extern "C" __attribute__((visibility("default"))) int somethingElse() {
    return 0;
}
