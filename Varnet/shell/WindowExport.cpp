#include "Varnet/shell/WindowExport.h"

#include "Varnet/async/Sleep.h"
#include "Varnet/shell/MainWindow.h"
#include "Varnet/shell/VarnetApp.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>

#include <chrono>
#include <cstdio>

namespace varnet {

namespace {

constexpr std::chrono::seconds settlingTime{3};

/// The dialogs and questions over the window that are up.
QObjectList sheetsOf(const QQuickWindow& window) {
    QObjectList sheets;
    for (auto* object : window.findChildren<QObject*>())
        if (object->inherits("QQuickDialog") && object->property("visible").toBool())
            sheets << object;
    return sheets;
}

/// A dialog's part of the window's picture, in pixels of it.
QRect placeOf(const QObject& sheet, qreal scale) {
    const auto* content = sheet.property("contentItem").value<QQuickItem*>();
    const auto* popup = content ? content->parentItem() : nullptr;
    if (!popup)
        return {};
    const QRectF place = popup->mapRectToScene(QRectF(QPointF(), popup->size()));
    return QRectF(place.topLeft() * scale, place.size() * scale).toRect();
}

QByteArray pngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        throw WindowExport::ExportError::renderFailed();
    return bytes;
}

} // namespace

WindowExport::ExportError WindowExport::ExportError::windowUnavailable() {
    return ExportError("Close any sheet and open the main meeting window before exporting.");
}

WindowExport::ExportError WindowExport::ExportError::renderFailed() {
    return ExportError("The meeting window could not be rendered as a PNG.");
}

WindowExport::WindowExport(VarnetApp& app, MainWindow& window) : m_app(app), m_window(window) {}

void WindowExport::exportWindowIfRequested() {
    const auto& commandLine = m_app.commandLine();
    if (m_exportScheduled || !commandLine.exportPath)
        return;
    m_exportScheduled = true;
    if (commandLine.selectMeeting && m_app.store().meeting(*commandLine.selectMeeting))
        m_app.store().setSelectedID(commandLine.selectMeeting);
    m_tasks.spawn(run(this, m_tasks.stopToken()));
}

Task<> WindowExport::run(WindowExport* self, std::stop_token stop) {
    co_await sleepFor(settlingTime, stop);
    if (stop.stop_requested())
        co_return;
    bool failed = false;
    try {
        self->exportWindow();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "Window export failed: %s\n", failure.what());
        failed = true;
    }
    if (self->m_app.store().recording() || self->m_app.store().busy())
        co_return;
    if (failed)
        QCoreApplication::exit(1);
    else
        self->m_app.delegate().quit();
}

void WindowExport::exportWindow() {
    const auto& store = m_app.store();
    auto* window = m_window.window();
    if (store.recording() || store.busy() || !window || !window->isVisible())
        throw ExportError::windowUnavailable();
    const auto& commandLine = m_app.commandLine();
    const auto sheets = sheetsOf(*window);
    const auto* history =
        commandLine.showsHistory && m_app.router().historyOpen() && sheets.size() == 1 ? sheets[0] : nullptr;
    if (commandLine.showsHistory && !history)
        throw ExportError::windowUnavailable();
    write(*window, history, *commandLine.exportPath);
    std::printf("Exported app content: %s\n", commandLine.exportPath->c_str());
    std::fflush(stdout);
    m_app.router().setHistoryOpen(false);
}

void WindowExport::write(QQuickWindow& window, const QObject* sheet, const std::filesystem::path& file) {
    auto others = sheetsOf(window);
    others.removeAll(sheet);
    if (!others.isEmpty() || window.size().isEmpty())
        throw ExportError::windowUnavailable();
    QImage image = window.grabWindow();
    if (sheet)
        image = image.copy(placeOf(*sheet, static_cast<qreal>(image.width()) / window.width()));
    const auto png = pngOf(image);
    QFile output(file);
    if (!output.open(QIODevice::WriteOnly) || output.write(png) != png.size() || !output.flush())
        throw Failure("“" + file.filename().string() + "” could not be written: " + output.errorString().toStdString() +
                      ".");
}

} // namespace varnet
