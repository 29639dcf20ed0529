#pragma once

#include <QString>

class QQuickTextDocument;

namespace varnet {

/// What stands in a text area, character by character: its `text` would turn no-break spaces into spaces. Every line
/// break is a line feed. Main thread.
QString editorText(const QQuickTextDocument* document);

} // namespace varnet
