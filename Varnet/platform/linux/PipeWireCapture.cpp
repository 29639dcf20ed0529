#include "MeetingCore/base/Assert.h"
#include "Varnet/async/Wait.h"
#include "Varnet/platform/AudioCapture.h"
#include "Varnet/platform/linux/PipeWireSession.h"

#include <pthread.h>

#include <thread>

namespace varnet {

namespace {

/// The main thread's side of a PipeWireSession, which lives on the thread "varnet.capture".
class PipeWireCapture final : public AudioCapture {
public:
    ~PipeWireCapture() override {
        if (m_thread.joinable()) {
            m_session->stop();
            m_thread.join();
        }
    }

    Task<> start(std::vector<CaptureSource> sources, Callbacks callbacks) override {
        VARNET_ASSERT(!m_session);
        struct Start : Wait {
            std::exception_ptr failure;
        };
        const auto start = std::make_shared<Start>();
        m_session = std::make_unique<PipeWireSession>(std::move(sources), std::move(callbacks),
                                                      [start](std::exception_ptr failure) {
                                                          start->failure = std::move(failure);
                                                          start->finish(WaitOutcome::fired);
                                                      });
        m_thread = std::thread([session = m_session.get(), ended = m_ended] {
            pthread_setname_np(pthread_self(), "varnet.capture");
            session->run();
            ended->finish(WaitOutcome::fired);
        });
        co_await Wait::ended(start);
        if (start->failure) {
            co_await stop();
            std::rethrow_exception(start->failure);
        }
    }

    Task<> stop() override {
        if (!m_thread.joinable() || std::exchange(m_stopping, true))
            co_return;
        m_session->stop();
        co_await Wait::ended(m_ended);
        m_thread.join(); // it has nothing left to do
    }

private:
    std::unique_ptr<PipeWireSession> m_session;
    bool m_stopping = false;
    std::shared_ptr<Wait> m_ended = std::make_shared<Wait>();
    std::thread m_thread;
};

} // namespace

std::unique_ptr<AudioCapture> makeAudioCapture() {
    return std::make_unique<PipeWireCapture>();
}

} // namespace varnet
