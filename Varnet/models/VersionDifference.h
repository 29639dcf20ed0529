#pragma once

#include <QCoreApplication>
#include <QString>

namespace varnet {

struct Meeting;

/// What a saved version of a meeting has otherwise than the meeting now, in words. An empty text means no difference.
/// Comparing reads both records whole; any thread.
struct VersionDifference {
    Q_DECLARE_TR_FUNCTIONS(VersionDifference)

public:
    QString transcript; ///< "12 turns fewer than now", "3 turns differ", "Speaker names differ", ...
    QString personalNotes;
    QString generatedNotes;
    QString line;            ///< all of them together, each by its name; "Same as now" without any
    bool otherAudio = false; ///< the transcript differs and cannot come back, because it belongs to other audio

    static VersionDifference of(const Meeting& now, const Meeting& version);

    bool operator==(const VersionDifference&) const = default;
};

} // namespace varnet
