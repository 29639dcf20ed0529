#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/records/GeneratedNotes.h"

#include <QAbstractListModel>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varnet {

struct Meeting;

/// The stored draft of a meeting: its points, grouped in Summary, Decisions and Action items, and below each point the
/// quotes that carry it, as rows of one list; and what is to be said about the draft as a whole. Main thread.
class DraftModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the meeting page")
    Q_PROPERTY(bool present READ present NOTIFY changed FINAL)
    Q_PROPERTY(QString writeTitle READ writeTitle NOTIFY changed FINAL)
    Q_PROPERTY(QString origin READ origin NOTIFY changed FINAL)
    Q_PROPERTY(QString outdatedText READ outdatedText NOTIFY changed FINAL)
    Q_PROPERTY(QString removedText READ removedText NOTIFY changed FINAL)
    Q_PROPERTY(QStringList removedReasons READ removedReasons NOTIFY changed FINAL)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed FINAL)

public:
    enum Role {
        HeadingRole = Qt::UserRole, ///< the name of the group; empty unless the row is the group's first
        QuoteRole,                  ///< the row is a quote, else a point
        WordsRole,                  ///< a quote's are in quotation marks
        DetailRole, ///< who is to do a point and by when, empty for neither; a quote's speaker and clock
        ClockRole,  ///< where in the meeting a quote stands
        TurnRole,   ///< the id of the turn that a quote is from; empty if the transcript has it no more
        SpokenRole, ///< the row in one sentence, for screen readers
    };

    using QAbstractListModel::QAbstractListModel;

    /// Shows the meeting's draft, or nothing for null or without one. `outdated` says that the transcript or the
    /// speaker names have changed since; `removed` why points of it were removed, empty if that is not known. The rows
    /// of a draft that is shown already stay, and those of them change whose turns came or went.
    void show(const Meeting* meeting, bool outdated = false, const std::vector<std::string>& removed = {});

    bool present() const { return m_draft.has_value(); }
    QString writeTitle() const;                                     ///< of the command that has a draft written
    QString origin() const { return m_origin; }                     ///< when and by which model it was written
    QString outdatedText() const;                                   ///< empty unless it is outdated
    QString removedText() const;                                    ///< how many points were removed; empty if none
    const QStringList& removedReasons() const { return m_reasons; } ///< one for each of them; empty if not known
    QString emptyText() const; ///< what stands in place of points; empty while there are some

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    struct Row {
        QString heading{};
        bool quote = false;
        QString words{};
        QString detail{};
        QString clock{};
        QString turn{};
        QString spoken{};

        bool operator==(const Row&) const = default;
    };

    static std::vector<Row> rows(const Meeting& meeting);
    static Row quote(const NoteEvidence& evidence, const NoteSource* source, bool there);
    void updateTo(std::vector<Row> rows, bool sameDraft);

    std::optional<std::pair<Uuid, Date>> m_draft; ///< whose it is, and when it was written
    bool m_outdated = false;
    std::int64_t m_removed = 0;
    QStringList m_reasons;
    QString m_origin;
    std::vector<Row> m_rows;
};

} // namespace varnet
