#pragma once

#include "MeetingCore/base/Uuid.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class AppCommands;
class MeetingStore;

/// What the strip above the content says about saved audio on its way to a transcript, about notes that are being
/// written, and about the files that wait. Main thread; both objects must outlive it.
class WorkStatus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool showing READ showing NOTIFY changed FINAL)
    Q_PROPERTY(bool running READ running NOTIFY changed FINAL)
    Q_PROPERTY(bool cancelling READ cancelling NOTIFY changed FINAL)
    Q_PROPERTY(bool filesWait READ filesWait NOTIFY changed FINAL)
    Q_PROPERTY(bool measured READ measured NOTIFY changed FINAL)
    Q_PROPERTY(double share READ share NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(QString progress READ progress NOTIFY changed FINAL)
    Q_PROPERTY(QString waitingText READ waitingText NOTIFY changed FINAL)

public:
    WorkStatus(const MeetingStore& store, AppCommands& commands, QObject* parent = nullptr);

    bool showing() const { return m_view.running || m_view.filesWait; }
    bool running() const { return m_view.running; }       ///< something can be cancelled
    bool cancelling() const { return m_view.cancelling; } ///< it has been
    bool filesWait() const { return m_view.filesWait; }
    bool measured() const { return m_view.percent > 0; }       ///< how far it is, is known
    double share() const { return m_view.percent / 100.0; }    ///< 0 to 1, in hundredths
    QString text() const { return m_view.text; }               ///< such as "Importing “Q3 review”"
    QString progress() const { return m_view.progress; }       ///< such as "45 %" or "Generating part 2 of 5"
    QString waitingText() const { return m_view.waitingText; } ///< such as "2 more waiting"; empty for none

Q_SIGNALS:
    void changed();

private:
    struct View {
        bool running = false;
        bool cancelling = false;
        bool filesWait = false;
        int percent = 0;
        QString text;
        QString progress;
        QString waitingText;

        bool operator==(const View&) const = default;
    };

    View view() const;
    View audioView() const;
    View notesView() const;
    QString title(const Uuid& meeting) const;
    QString waitingAlone() const;
    void update();

    const MeetingStore& m_store;
    AppCommands& m_commands;
    View m_view;
};

} // namespace varnet
