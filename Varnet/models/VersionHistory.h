#pragma once

#include "MeetingCore/records/MeetingHistory.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/models/TranscriptModel.h"
#include "Varnet/models/VersionDifference.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace varnet {

class MeetingStore;

/// One kind of content of the chosen version: whether it can be taken back, and whether it shall be.
struct RestoreChoice {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString words MEMBER words FINAL)
    Q_PROPERTY(bool enabled MEMBER enabled FINAL)
    Q_PROPERTY(bool taken MEMBER taken FINAL)

public:
    QString words; ///< how it differs from now
    bool enabled = false;
    bool taken = false;

    bool operator==(const RestoreChoice&) const = default;
};

/// The saved versions of one meeting as rows, newest first, with a preview of the current one and the choice of what to
/// take back from it. They are compared with the meeting as it was when they were read: if it changes meanwhile, a
/// restore is refused and says so. Main thread; the store must outlive it.
class VersionHistory : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool loading READ loading NOTIFY changed FINAL)
    Q_PROPERTY(int count READ count NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString unreadableText READ unreadableText NOTIFY changed FINAL)
    Q_PROPERTY(QString error READ error NOTIFY changed FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY changed FINAL)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY changed FINAL)
    Q_PROPERTY(QString notesText READ notesText NOTIFY changed FINAL)
    Q_PROPERTY(QString draftText READ draftText NOTIFY changed FINAL)
    Q_PROPERTY(varnet::TranscriptModel* turns READ turns CONSTANT FINAL)
    Q_PROPERTY(varnet::RestoreChoice transcript READ transcript NOTIFY changed FINAL)
    Q_PROPERTY(varnet::RestoreChoice personalNotes READ personalNotes NOTIFY changed FINAL)
    Q_PROPERTY(varnet::RestoreChoice generatedNotes READ generatedNotes NOTIFY changed FINAL)
    Q_PROPERTY(bool restoreEnabled READ restoreEnabled NOTIFY changed FINAL)

public:
    enum Role {
        WhenRole = Qt::UserRole,
        DifferenceRole, ///< what differs from now, in a line
        SpokenRole,     ///< the row in one sentence, for screen readers
    };

    explicit VersionHistory(MeetingStore& store, QObject* parent = nullptr);

    /// Reads the versions of the selected meeting, whose edits have been handed in. The rows come later.
    void open();
    /// Forgets them.
    void close();
    const std::optional<Uuid>& meetingID() const { return m_meetingID; } ///< absent while closed

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool loading() const { return m_loading; }
    int count() const { return static_cast<int>(m_history.entries.size()); }
    QString title() const;          ///< the meeting's
    QString unreadableText() const; ///< how many versions could not be read; empty for none
    QString error() const { return m_error; }
    QString notice() const { return m_notice; } ///< what has been done
    int currentRow() const { return m_currentRow; }
    QString notesText() const; ///< of the current version, as are the following
    QString draftText() const; ///< its points below their headings
    TranscriptModel* turns() { return &m_turns; }
    RestoreChoice transcript() const;
    RestoreChoice personalNotes() const;
    RestoreChoice generatedNotes() const;
    bool restoreEnabled() const;

    /// Shows that version with nothing taken; a row that does not exist changes nothing.
    Q_INVOKABLE void select(int row);
    Q_INVOKABLE void moveSelection(int rows);
    Q_INVOKABLE void takeTranscript(bool taken);
    Q_INVOKABLE void takePersonalNotes(bool taken);
    Q_INVOKABLE void takeGeneratedNotes(bool taken);
    /// Takes the chosen content back and reads the versions anew; `error` tells what prevented it.
    Q_INVOKABLE void restore();

Q_SIGNALS:
    void changed();

private:
    struct Loaded {
        MeetingHistory history;
        std::vector<VersionDifference> differences; ///< of the entries
    };

    void reload();
    static Task<> load(VersionHistory* self, Uuid id, int request, std::stop_token stop);
    void show(Loaded loaded);
    void showRow(int row);
    void take(bool MeetingRestoreOptions::* what, bool taken);
    const MeetingHistoryEntry* current() const;
    RestoreChoice choice(QString VersionDifference::* words, bool MeetingRestoreOptions::* what) const;

    MeetingStore& m_store;
    std::optional<Uuid> m_meetingID;
    Meeting m_now; ///< what the versions are compared with
    MeetingHistory m_history;
    std::vector<VersionDifference> m_differences;
    int m_currentRow = -1;
    MeetingRestoreOptions m_options;
    TranscriptModel m_turns;
    QString m_error;
    QString m_notice;
    bool m_loading = false;
    int m_request = 0; ///< the newest one; answers to others are dropped
    TaskScope m_tasks{"Version history"};
};

} // namespace varnet
