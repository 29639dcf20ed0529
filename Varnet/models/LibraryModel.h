#pragma once

#include "MeetingCore/base/Uuid.h"

#include <QAbstractListModel>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace varnet {

class MeetingStore;
struct Meeting;

/// The library as rows, newest first: what each row shows, ready as text. A row is worked out when it is looked at, so
/// thousands of meetings cost nothing until they are on screen. Main thread; the store must outlive it.
class LibraryModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool empty READ empty NOTIFY countChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

public:
    enum Role {
        TitleRole = Qt::UserRole,
        SubtitleRole,
        BadgeTextRole,
        BadgeToneRole,   ///< an index into Theme.tones
        BadgeMarkedRole, ///< the badge has a mark before its text
        TimeRole,        ///< when it began, in the user's short form
        DurationRole,    ///< empty while unknown
        StartsDayRole,   ///< the first row of its day: the heading stands above it
        DayRole,
        DayDetailRole,
        SpokenRole, ///< the row in one sentence, for screen readers
    };

    explicit LibraryModel(MeetingStore& store, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(m_ids.size()); }
    bool empty() const { return m_ids.empty(); }

    /// The row of the selected meeting, or -1.
    int selectedRow() const;

    /// Selects the meeting of a row; a row that does not exist changes nothing.
    Q_INVOKABLE void select(int row);
    /// Moves the selection by so many rows and stops at the ends.
    Q_INVOKABLE void moveSelection(int rows);

Q_SIGNALS:
    void countChanged();
    void selectedRowChanged();

private:
    void reload();
    void insertFirst(const Uuid& id);
    void rowChanged(const Uuid& id);
    void allChanged(const QList<int>& roles);
    void scheduleMidnight();
    int rowOf(const Uuid& id) const;
    const Meeting* at(int row) const;
    bool startsDay(int row) const;

    MeetingStore& m_store;
    std::vector<Uuid> m_ids; ///< the rows that views know of; the store may be one change ahead
    QTimer m_midnight;
};

} // namespace varnet
