#pragma once

#include "engine/ModelPool.h"
#include "engine/Wire.h"

#include <QByteArray>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace engine {

/// The recognition of one live session, on a thread of its own that ends by itself after `cancel`, however long the
/// piece takes that it is at. The other calls return at once.
class LiveWork : public std::enable_shared_from_this<LiveWork> {
public:
    /// Bytes of audio that may wait: more than ten minutes.
    static constexpr std::size_t maximumWaiting = 20 * 1024 * 1024;

    /// Messages for the client, in order; the last one is marked when the work failed. Called on the work's thread.
    using Send = std::function<void(QByteArray message, bool failed)>;

    /// Starts the thread, which counts itself in `running` until its model is free again.
    static std::shared_ptr<LiveWork> start(ModelPool& models, std::atomic<int>& running, wire::SessionSettings settings,
                                           Send send);

    /// False when too much is waiting; the audio is not taken then. `audio` holds whole samples.
    bool append(const QByteArray& audio);
    /// Everything before it is answered, then "input_audio_buffer.committed" is sent. False when too much is waiting.
    bool commit();
    void cancel();

private:
    LiveWork(wire::SessionSettings settings, Send send);

    void run(ModelPool& models);
    void recognise(Recognizer& recognizer);
    bool wait(const QByteArray& block);
    std::optional<QByteArray> next();

    const wire::SessionSettings m_settings;
    const Send m_send;
    std::atomic<bool> m_cancelled = false;
    std::mutex m_lock;
    std::condition_variable m_arrived;
    std::deque<QByteArray> m_waiting; // an empty block stands for a commit
    std::size_t m_waitingBytes = 0;
};

} // namespace engine
