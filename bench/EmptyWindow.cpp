// An empty window with the modules that the screens import, started as the application is: what start.py compares with.

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>

Q_LOGGING_CATEGORY(startLog, "varnet.start", QtWarningMsg)

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/qt/qml/EmptyWindow/EmptyWindow.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    QObject::connect(
        qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst()), &QQuickWindow::frameSwapped, &engine,
        [] { qCInfo(startLog, "first frame"); }, Qt::SingleShotConnection);
    return QGuiApplication::exec();
}
