#pragma once

#include "MeetingCore/records/Meeting.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace varnet {

/// Encodes a meeting again and again while it grows. Turns that are as they were the last time, from the first on, are
/// not encoded again: they are compared with a copy, field by field, so it gives what encodeMeeting gives, byte for
/// byte, whatever has changed, for any meeting. Holds that copy and the document. One thread at a time.
class MeetingEncoder {
public:
    /// The document; valid until the next call. Throws as encodeMeeting does and can be used again.
    std::string_view encode(const Meeting& meeting);

private:
    struct EncodedTurn {
        TranscriptTurn turn;
        std::size_t end; ///< of its bytes, counted from the end of the head
    };

    std::string m_document; ///< the head (all before the first turn), the turns, and what follows them
    std::size_t m_headSize = 0;
    std::vector<EncodedTurn> m_turns;
};

} // namespace varnet
