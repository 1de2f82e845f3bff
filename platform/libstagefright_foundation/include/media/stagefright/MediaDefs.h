// SPDX-License-Identifier: Apache-2.0
#pragma once

// Older path of the header.
#include <media/stagefright/foundation/MediaDefs.h>
