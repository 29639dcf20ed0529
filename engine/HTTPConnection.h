#pragma once

#include "engine/BatchWork.h"
#include "engine/HTTPMessage.h"
#include "engine/MultipartReader.h"

#include <QObject>
#include <QTcpSocket>
#include <QTemporaryFile>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace engine {

/// One HTTP connection: reads one request, answers it and closes, or hands the untouched socket over when a WebSocket
/// is asked for. A file that comes in goes to a temporary file as fast as the disk takes it, at most 1 GiB. While it is
/// recognised, or waits for its turn, a blank before the answer shows now and then that the engine is at work. Main
/// thread; deletes itself when the connection has ended or its socket has gone to the WebSocket.
class HTTPConnection : public QObject {
    Q_OBJECT

public:
    static constexpr qint64 maximumBody = 1024LL * 1024 * 1024;
    static constexpr int maximumFilesWaiting = 4;

    struct Shared {
        ModelPool& models;
        const bool& ready;                        ///< a model has been loaded
        QThreadPool& files;                       ///< one thread, of low priority
        int& filesWaiting;                        ///< requests whose file is being sent or recognised
        std::function<void(QTcpSocket*)> upgrade; ///< takes the socket, with all its bytes unread
    };

    HTTPConnection(QTcpSocket* socket, Shared shared, QObject* parent);
    ~HTTPConnection() override;

private:
    void read();
    void readHead();
    void readBody();
    void route();
    void beginFile();
    void finishFile();
    void showWork();
    void answer(int status, const QByteArray& body);
    void drain();

    QTcpSocket* m_socket;
    Shared m_shared;
    QTimer m_patience; // runs while the client owes bytes
    QTimer m_work;     // runs while the engine does
    std::optional<HTTPHead> m_head;
    qint64 m_bodyLeft = 0;
    std::unique_ptr<MultipartReader> m_body;
    std::shared_ptr<QTemporaryFile> m_file;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    bool m_counted = false;
    bool m_answerBegun = false; // with status 200
    bool m_answered = false;
};

} // namespace engine
