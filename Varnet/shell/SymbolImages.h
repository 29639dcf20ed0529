#pragma once

#include <QQuickImageProvider>

namespace varnet {

/// The application's symbols in any size and colour: `image://symbols/NAME#rrggbb` is the symbol NAME of the screens'
/// icons in that colour. The requested size is the whole picture, in pixels of the screen. Of an unknown name nothing
/// comes, with a warning. Any thread.
class SymbolImages : public QQuickImageProvider {
public:
    SymbolImages() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace varnet
