// SPDX-License-Identifier: Apache-2.0
#pragma once

// The header's older place.
#include <media/stagefright/foundation/MediaDefs.h>
