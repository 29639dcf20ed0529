#pragma once

#include "MeetingCore/base/JsonFields.h"
#include "MeetingCore/records/Meeting.h"

namespace varnet {

/// A word as the speech engine writes it.
template <>
struct JsonRecord<TranscriptWord> {
    static constexpr std::tuple fields{
        JsonField{"end", &TranscriptWord::end, audioTime}, JsonField{"speaker", &TranscriptWord::speaker},
        JsonField{"start", &TranscriptWord::start, audioTime}, JsonField{"word", &TranscriptWord::word}};
};

} // namespace varnet
