#pragma once

#include "Varnet/async/TaskScope.h"
#include "Varnet/models/IdListModel.h"
#include "Varnet/store/LibrarySearch.h"

#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <set>
#include <vector>

namespace varnet {

class MeetingStore;

/// The library as rows, newest first: what each row shows, ready as text. With a query it has only the meetings whose
/// title or transcript has the query's words. A row is worked out when it is looked at, so thousands of meetings cost
/// nothing until they are on screen. The selected rows are the store's selection; hidden meetings are never selected.
/// Main thread; the store must outlive it.
class LibraryModel : public IdListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    Q_PROPERTY(bool empty READ empty NOTIFY countChanged FINAL)
    Q_PROPERTY(bool noResults READ noResults NOTIFY countChanged FINAL)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged FINAL)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged FINAL)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY summaryChanged FINAL)

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
        DayRole,         ///< empty unless the row starts its day
        DayDetailRole,
        SnippetRole,  ///< styled text: the words around the first hit in the transcript, the hit marked; else empty
        SelectedRole, ///< it belongs to the library's selection
        RenamingRole, ///< its title is being edited in the row
        SpokenRole,   ///< the row in one sentence, for screen readers
    };

    explicit LibraryModel(MeetingStore& store, QObject* parent = nullptr);

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool empty() const;     ///< there are no meetings at all
    bool noResults() const; ///< there are, but none has the words of the query

    const QString& query() const { return m_query; }
    /// Filters the rows. The first time in a large library they follow a moment later.
    void setQuery(const QString& query);
    /// Makes the library ready for searching, off the main thread. To be called when a search is about to begin.
    Q_INVOKABLE void prepareSearch();

    QString summary() const; ///< how many rows are selected, else how many the query found; else empty
    int selectedCount() const;

    /// The row that the keyboard is at, or -1.
    int currentRow() const;
    /// Selects one row, with Ctrl takes it in or out, with Shift all from the last such row to this one. `modifiers` is
    /// a Qt::KeyboardModifiers. True when the row alone was meant.
    Q_INVOKABLE bool clickRow(int row, int modifiers);
    /// Moves by so many rows and stops at the ends: the selection with it, extended with Shift; only the row that the
    /// keyboard is at with Ctrl.
    Q_INVOKABLE void moveBy(int rows, int modifiers = 0);
    Q_INVOKABLE void selectAll();
    /// A menu is about to act on a row: it is selected unless it is already.
    Q_INVOKABLE void selectForMenu(int row);

    Q_INVOKABLE void beginRename(); ///< of the current row
    Q_INVOKABLE void rename(const QString& title);
    Q_INVOKABLE void endRename();

Q_SIGNALS:
    void countChanged();
    void queryChanged();
    void summaryChanged();
    void currentRowChanged();

private:
    std::vector<Uuid> wantedRows();
    void applyQuery();
    void followList();
    void listChanged();
    void meetingChanged(const Uuid& id);
    void dropHiddenFromSelection();
    void select(const std::set<Uuid>& ids, const Uuid& current);
    void setCurrent(const std::optional<Uuid>& id);
    void setRenaming(const std::optional<Uuid>& id);
    void scheduleMidnight();
    const Meeting* at(int row) const;
    bool startsDay(int row) const;
    static Task<> prepare(LibraryModel* self, std::stop_token stop);

    MeetingStore& m_store;
    LibrarySearch m_search;
    QString m_query;
    std::string m_applied;               ///< the query of the rows, in lower case
    mutable std::size_t m_lastPlace = 0; ///< in the store's list, of the row that was looked at
    bool m_preparing = false, m_prepared = false;
    std::optional<Uuid> m_current, m_anchor, m_renaming;
    QTimer m_midnight;
    TaskScope m_tasks{"Library"};
};

} // namespace varnet
