// SPDX-License-Identifier: Apache-2.0
#pragma once

/** The number of blocks this program has from `operator new` and has not given back yet. */
int liveAllocations();
