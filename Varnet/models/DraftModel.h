#pragma once

#include "MeetingCore/records/GeneratedNotes.h"

#include <QAbstractListModel>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace varnet {

/// Words of the transcript that carry a point of the draft.
struct DraftQuote {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString words MEMBER words)
    Q_PROPERTY(QString origin MEMBER origin)
    Q_PROPERTY(QString spoken MEMBER spoken)

public:
    QString words;  ///< in quotation marks
    QString origin; ///< speaker and clock
    QString spoken; ///< both in one sentence, for screen readers

    bool operator==(const DraftQuote&) const = default;
};

/// The stored draft of a meeting: its points as rows, grouped in Summary, Decisions and Action items, and what is to be
/// said about it as a whole. Main thread.
class DraftModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the meeting page")
    Q_PROPERTY(bool present READ present NOTIFY changed)
    Q_PROPERTY(QString origin READ origin NOTIFY changed)
    Q_PROPERTY(QString outdatedText READ outdatedText NOTIFY changed)
    Q_PROPERTY(QString removedText READ removedText NOTIFY changed)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)

public:
    enum Role {
        HeadingRole = Qt::UserRole, ///< the name of the group; empty unless the point is the group's first
        WordsRole,
        TaskRole,   ///< who is to do it and by when; empty for a point that says neither
        SpokenRole, ///< the point in one sentence, for screen readers
        QuotesRole, ///< a list of DraftQuote
    };

    using QAbstractListModel::QAbstractListModel;

    /// Shows this draft, or nothing for null. `outdated` says that the transcript or the speaker names have changed
    /// since.
    void show(const GeneratedNotes* draft, bool outdated);

    bool present() const { return m_present; }
    QString origin() const { return m_origin; } ///< when and by which model it was written
    QString outdatedText() const;               ///< empty unless it is outdated
    QString removedText() const;                ///< how many points were removed; empty if none
    QString emptyText() const;                  ///< what stands in place of points; empty while there are some

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    struct Row {
        QString heading;
        QString words;
        QString task;
        std::vector<DraftQuote> quotes;

        bool operator==(const Row&) const = default;
    };

    static std::vector<Row> rows(const GeneratedNotes& draft);

    bool m_present = false;
    bool m_outdated = false;
    std::int64_t m_removed = 0;
    QString m_origin;
    std::vector<Row> m_rows;
};

} // namespace varnet
