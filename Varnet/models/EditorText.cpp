#include "Varnet/models/EditorText.h"

#include <QTextCursor>
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

void EditorLines::setHeight(QQuickTextDocument* document, qreal height) {
    QTextBlockFormat format;
    format.setLineHeight(height, QTextBlockFormat::FixedHeight);
    QTextCursor cursor(document->textDocument());
    if (cursor.blockFormat() == format) // the change would be told, and lead here again
        return;
    cursor.select(QTextCursor::Document);
    cursor.setBlockFormat(format);
}

} // namespace varnet
