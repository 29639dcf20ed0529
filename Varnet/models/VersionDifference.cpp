#include "Varnet/models/VersionDifference.h"

#include "MeetingCore/records/Meeting.h"

#include <QStringList>

#include <algorithm>

namespace varnet {

namespace {

int differingTurns(const std::vector<TranscriptTurn>& now, const std::vector<TranscriptTurn>& version) {
    int differing = 0;
    for (std::size_t place = 0; place < now.size(); ++place)
        differing += now[place] != version[place] ? 1 : 0;
    return differing;
}

/// No names and an empty list of names are the same to a reader.
std::map<std::string, std::string> names(const Meeting& meeting) {
    return meeting.speakerNames.value_or(std::map<std::string, std::string>());
}

QString transcriptDifference(const Meeting& now, const Meeting& version) {
    const int before = static_cast<int>(version.turns.size()), after = static_cast<int>(now.turns.size());
    if (before == 0 && after > 0)
        return VersionDifference::tr("No transcript");
    if (before < after)
        return VersionDifference::tr("%Ln turns fewer than now", nullptr, after - before);
    if (before > after)
        return VersionDifference::tr("%Ln turns more than now", nullptr, before - after);
    if (const auto differing = differingTurns(now.turns, version.turns))
        return VersionDifference::tr("%Ln turns differ", nullptr, differing);
    return names(now) == names(version) ? QString() : VersionDifference::tr("Speaker names differ");
}

} // namespace

VersionDifference VersionDifference::of(const Meeting& now, const Meeting& version) {
    VersionDifference difference;
    difference.transcript = transcriptDifference(now, version);
    difference.otherAudio = !difference.transcript.isEmpty() && now.audioFilename != version.audioFilename;
    if (difference.otherAudio)
        difference.transcript = tr("Different audio: the transcript can't be restored");
    QStringList parts{difference.transcript};
    if (now.notes != version.notes) {
        const bool none = version.notes.empty();
        difference.personalNotes = none ? tr("None in this version") : tr("Differ from now");
        parts << (none ? tr("No personal notes") : tr("Personal notes differ"));
    }
    if (now.generatedNotes != version.generatedNotes) {
        const bool none = !version.generatedNotes;
        difference.generatedNotes = none ? tr("None in this version") : tr("Differ from now");
        parts << (none ? tr("No generated notes") : tr("Generated notes differ"));
    }
    parts.removeAll(QString());
    const auto dot = QStringLiteral("\u00A0· "); // begins no line
    difference.line = parts.empty() ? tr("Same as now") : parts.join(dot);
    return difference;
}

} // namespace varnet
