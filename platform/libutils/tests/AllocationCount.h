// SPDX-License-Identifier: Apache-2.0
#pragma once

/** The number of blocks from `operator new` that have not been freed yet. */
int liveAllocations();
