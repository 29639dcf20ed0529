#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace varnet {

struct EngineState;

/// One engine's state as a line of the window.
struct EngineLine {
    Q_GADGET
    Q_DECLARE_TR_FUNCTIONS(EngineLine)
    QML_VALUE_TYPE(engineLine)
    Q_PROPERTY(QString words MEMBER words FINAL)
    Q_PROPERTY(int tone MEMBER tone FINAL)
    Q_PROPERTY(QString detail MEMBER detail FINAL)

public:
    QString words;  ///< "Ready", "Not installed", "Didn't start", "Checking", "Starting" or "Off"
    int tone = 3;   ///< an index into Theme.tones
    QString detail; ///< what is wrong, as a sentence; else empty

    static EngineLine of(const EngineState& state);

    bool operator==(const EngineLine&) const = default;
};

} // namespace varnet
