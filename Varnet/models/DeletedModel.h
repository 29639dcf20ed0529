#pragma once

#include "MeetingCore/base/Date.h"
#include "Varnet/models/IdListModel.h"

#include <QDate>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class MeetingStore;
struct DeletedMeeting;

/// Words about a deleted meeting. Days are those of the local time zone.
namespace DeletedText {

/// "Deleted today, 14:05", "Deleted yesterday, 9:30" or "Deleted March 5, 2026, 9:30", the time in the user's form.
QString deleted(Date at, QDate today);

/// "Erased in 12 days", "Erased tomorrow" or "Erased today".
QString erased(Date deletedAt, QDate today);

} // namespace DeletedText

/// The deleted meetings as rows, last deleted first, with the selection of several of them. While there are rows one is
/// current, and at least that one is selected unless the user took it out; a selected row that goes hands both to the
/// row that moves up. Main thread; the store must outlive it.
class DeletedModel : public IdListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    Q_PROPERTY(bool empty READ empty NOTIFY countChanged FINAL)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QStringList selectedIDs READ selectedIDs NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QString restoreText READ restoreText NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QString eraseText READ eraseText NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool asking READ asking NOTIFY askingChanged FINAL)
    Q_PROPERTY(QString question READ question NOTIFY askingChanged FINAL)
    Q_PROPERTY(QStringList askedIDs READ askedIDs NOTIFY askingChanged FINAL)

public:
    enum Role {
        TitleRole = Qt::UserRole,
        SubtitleRole,
        DeletedRole, ///< when it was deleted
        ErasedRole,  ///< when it will be erased
        UrgentRole,  ///< it is kept for three days or less
        SelectedRole,
        SpokenRole, ///< the row in one sentence, for screen readers
    };

    explicit DeletedModel(const MeetingStore& store, QObject* parent = nullptr);

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool empty() const { return count() == 0; }
    int currentRow() const; ///< -1 without rows
    QStringList selectedIDs() const;
    QString restoreText() const; ///< "Restore", or with how many when several are selected
    QString eraseText() const;

    bool asking() const { return !m_asked.empty(); } ///< the question whether to erase is up
    QString question() const;
    QStringList askedIDs() const; ///< the meetings that the question is about, whatever is selected meanwhile

    /// Makes a row current and selects it as a click with these Qt::KeyboardModifiers does: alone, added or taken out
    /// with Ctrl, from the last such row to this one with Shift. A row that does not exist changes nothing.
    Q_INVOKABLE void choose(int row, int modifiers);
    /// The same for the row so many rows further; stops at the ends. Only Shift counts.
    Q_INVOKABLE void move(int rows, int modifiers);
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void askToErase(); ///< about the selected meetings
    Q_INVOKABLE void stopAsking();

Q_SIGNALS:
    void countChanged();
    void selectionChanged();
    void askingChanged();

private:
    void reload();
    void keepSelection(int formerRow);
    void select(std::set<Uuid> ids);
    const DeletedMeeting* at(int row) const;

    const MeetingStore& m_store;
    Selection m_selection;
    std::optional<Uuid> m_current;
    std::vector<Uuid> m_asked;
    QDate m_today = QDate::currentDate();
    QTimer m_dayCheck;
};

} // namespace varnet
