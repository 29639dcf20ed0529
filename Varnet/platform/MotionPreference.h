#pragma once

#include <QDBusVariant>
#include <QObject>

#include <map>

namespace varnet {

/// Whether the desktop wants the screen to keep still. The answer comes some time after the object was made; until
/// then, and on a desktop that does not say, things may move. Main thread.
class MotionPreference : public QObject {
    Q_OBJECT
public:
    explicit MotionPreference(QObject* parent = nullptr);

    bool reduced() const;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void take(const QString& space, const QString& key, const QDBusVariant& value);

private:
    std::map<QString, bool> m_reduced; ///< by the name of the setting
};

} // namespace varnet
