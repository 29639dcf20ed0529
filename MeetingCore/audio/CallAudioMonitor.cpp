#include "MeetingCore/audio/CallAudioMonitor.h"

#include <algorithm>

namespace varnet {

bool CallAudioMonitor::observe(float microphone, float call, double time) {
    if (call >= soundLevel) {
        lastCallSound = time;
        callMissing = false;
        return false;
    }
    if (!firstSpeech) {
        if (!(microphone >= speechLevel))
            return false;
        firstSpeech = time;
    }
    const double reference = std::max(*firstSpeech, lastCallSound.value_or(*firstSpeech));
    callMissing = time - reference >= window;
    return callMissing;
}

} // namespace varnet
