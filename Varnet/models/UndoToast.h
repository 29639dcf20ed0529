#pragma once

#include "MeetingCore/base/Uuid.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace varnet {

class MeetingStore;

/// The offer to undo the last delete. It is up for eight seconds, not counting those in which it is held, and then
/// withdrawn from the store. Main thread; the store must outlive it.
class UndoToast : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool showing READ showing NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(bool held READ held WRITE setHeld NOTIFY heldChanged FINAL)

public:
    explicit UndoToast(MeetingStore& store, int milliseconds = 8000, QObject* parent = nullptr);

    bool showing() const;
    QString text() const { return m_text; } ///< what was deleted last; it stays while the toast fades

    bool held() const { return m_held; }
    void setHeld(bool held); ///< someone is about to use it: its time stands still

Q_SIGNALS:
    void changed();
    void heldChanged();

private:
    void restart();
    QString words(const std::vector<Uuid>& ids) const;
    void run();

    MeetingStore& m_store;
    QString m_text;
    const int m_milliseconds;
    int m_left = 0; ///< milliseconds, when m_ran was started
    QElapsedTimer m_ran;
    QTimer m_timer;
    bool m_held = false;
};

} // namespace varnet
