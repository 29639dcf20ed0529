#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class MeetingStore;

/// What the banners above the content say: the store's one message, and which changes could not be saved. Main thread;
/// the store must outlive it.
class ErrorBanner : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(QString message READ message NOTIFY messageChanged FINAL)
    Q_PROPERTY(QString saveMessage READ saveMessage NOTIFY saveMessageChanged FINAL)

public:
    explicit ErrorBanner(MeetingStore& store, QObject* parent = nullptr);

    QString message() const;     ///< empty without an error
    QString saveMessage() const; ///< empty while everything is saved

    Q_INVOKABLE void dismiss();
    Q_INVOKABLE void retrySaving();

Q_SIGNALS:
    void messageChanged();
    void saveMessageChanged();

private:
    MeetingStore& m_store;
};

} // namespace varnet
