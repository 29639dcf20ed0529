#pragma once

#include "engine/VoicePrint.h"

#include <vector>

namespace engine {

/// Numbers the voices of one session, 0 to 7, in the order in which they are first heard.
class SpeakerClusters {
public:
    static constexpr int maximumSpeakers = 8;

    /// The speaker of the next piece of speech: the nearest voice heard so far or, if all are too far and the piece is
    /// long enough to know a voice by, a new one. A number that was given never changes.
    int assign(const VoicePrint& print);

    /// Looks at all pieces at once, when there is no hurry: joins voices that turned out to be one, gives every piece
    /// to its nearest voice, and numbers the voices by their first piece. One number for each `assign`, in order.
    std::vector<int> reassign() const;

private:
    struct Voice {
        VoicePrint mean;
        void add(const VoicePrint& print);
    };
    static double distance(const VoicePrint& a, const VoicePrint& b);
    static int nearest(const std::vector<Voice>& voices, const VoicePrint& print);
    void joinNearVoices(std::vector<Voice>& voices) const;

    std::vector<Voice> m_voices;
    std::vector<VoicePrint> m_prints;
    std::vector<int> m_assigned;
};

} // namespace engine
