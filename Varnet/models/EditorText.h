#pragma once

#include <QObject>
#include <QQuickTextDocument>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace varnet {

/// What stands in a text area, character by character: its `text` would turn no-break spaces into spaces. Every line
/// break is a line feed. Main thread.
QString editorText(const QQuickTextDocument* document);

/// What a text area has no property for. Main thread.
class EditorLines : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// Gives all lines in a text area this height, in pixels. To be called again whenever its text has been set.
    Q_INVOKABLE static void setHeight(QQuickTextDocument* document, qreal height);
};

} // namespace varnet
