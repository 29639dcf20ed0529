#pragma once

#include "MeetingCore/records/Meeting.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <map>
#include <span>
#include <string>
#include <vector>

namespace varnet {

/// Gives every speaker label of a meeting one of the theme's hues, in the order in which the labels turn up.
class SpeakerHues {
public:
    /// An index into Theme.speakers; -1 for "Unassigned". The ninth label shares the first hue.
    int hue(const std::string& label);
    void clear() { m_hues.clear(); }

private:
    std::map<std::string, int> m_hues;
};

/// The turns of one transcript as rows. `show` moves the rows to what they shall be with as few changes as possible:
/// turns that arrive are appended, changed ones updated in place, so that a reader's place in the list holds. Main
/// thread.
class TranscriptModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the meeting page")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum Role {
        SpeakerRole = Qt::UserRole, ///< display name
        HueRole,                    ///< an index into Theme.speakers, or -1
        ClockRole,
        WordsRole,
        SpokenRole,     ///< the turn in one sentence, for screen readers
        TurnRole,       ///< the turn's id
        LabelRole,      ///< the speaker's label, whatever the display name is
        EditedRole,     ///< the words are the user's correction
        RecognisedRole, ///< the words as recognised; empty unless edited
        MarkedRole,     ///< the words with what was found in them marked; empty if nothing was
        HitRole,        ///< `MarkedRole` is rich text with the current hit, else it is styled text
    };

    using QAbstractListModel::QAbstractListModel;

    /// Shows these turns of `meeting`, whose speaker names are used; `hues` gains the labels that are new.
    void show(const Meeting& meeting, std::span<const TranscriptTurn> turns, SpeakerHues& hues);

    /// Adds turns below the others.
    void append(const Meeting& meeting, std::span<const TranscriptTurn> turns, SpeakerHues& hues);

    /// Shows nothing; also between two meetings, so that no row of one becomes a row of the other.
    void clear();

    /// Marks a text in lower case wherever it stands in the words; an empty one nothing. It stands out at the place
    /// `current` of the words in lower case of the row `currentRow`.
    void mark(const std::string& query, int currentRow, std::size_t current);

    /// What a row shows, as UTF-8.
    std::string words(int row) const;

    /// The row of that turn; -1 if there is none.
    int rowOf(const Uuid& turn) const;

    int count() const { return static_cast<int>(m_rows.size()); }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    struct Row {
        Uuid turn;
        QString label;
        QString speaker;
        int hue = -1;
        QString clock;
        QString words;
        bool edited = false;
        QString recognised;

        bool operator==(const Row&) const = default;
    };

    static Row row(const Meeting& meeting, const TranscriptTurn& turn, SpeakerHues& hues);
    void updateTo(const std::vector<Row>& rows);

    std::vector<Row> m_rows;
    std::string m_query; ///< what is marked
    int m_currentRow = -1;
    std::size_t m_current = 0;
};

} // namespace varnet
