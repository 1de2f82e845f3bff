// SPDX-License-Identifier: Apache-2.0
#include "explain/Finding.h"

namespace ogmprobe {

void explainAll(Explanation& explanation) {
    explainRefusal(explanation);
    if (!explanation.trace().opened()) {
        explainEnd(explanation);
        return;
    }
    // A file that another plug-in accepts may not be Ogg.
    if (!explanation.file().pages().empty()) {
        explainStreams(explanation);
        explainDuration(explanation);
        explainDamage(explanation);
        explainJunkSearches(explanation);
        explainAudio(explanation);
    }
    explainEnd(explanation);
    explainLedgers(explanation);
    explainFormats(explanation);
    explainTimes(explanation);
    explainLines(explanation);
}

}  // namespace ogmprobe
