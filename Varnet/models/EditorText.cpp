#include "Varnet/models/EditorText.h"

#include <QQuickTextDocument>
#include <QTextDocument>

namespace varnet {

QString editorText(const QQuickTextDocument* document) {
    if (!document)
        return {};
    QString text = document->textDocument()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace varnet
