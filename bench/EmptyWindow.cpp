// An empty window with the modules that the screens import, started as the application is: what start.py compares with.

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>

#include <ctime>

Q_LOGGING_CATEGORY(startLog, "varnet.start", QtWarningMsg)

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/qt/qml/EmptyWindow/EmptyWindow.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    QObject::connect(
        qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst()), &QQuickWindow::frameSwapped, &engine,
        [] {
            qCInfo(startLog, "first frame after %.1f ms of processor time",
                   1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC);
        },
        Qt::SingleShotConnection);
    return QGuiApplication::exec();
}
