#include "Varnet/shell/SymbolImages.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

namespace varnet {

QImage SymbolImages::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto name = id.section(u'#', 0, 0);
    QSvgRenderer drawing(QStringLiteral(":/qt/qml/Varnet/screens/icons/%1.svg").arg(name));
    if (!drawing.isValid()) {
        qWarning("There is no symbol %s", qUtf8Printable(name));
        return {};
    }
    QImage image(requestedSize.isValid() ? requestedSize : drawing.defaultSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), QColor(id.mid(name.size())));
    *size = image.size();
    return image;
}

} // namespace varnet
