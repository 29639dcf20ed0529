#include "Varnet/async/MainThread.h"
#include "Varnet/platform/AudioOutput.h"
#include "Varnet/platform/linux/PlaybackSession.h"

#include <pthread.h>

#include <thread>

namespace varnet {

namespace {

/// The main thread's side of a PlaybackSession, which lives on the thread "varnet.playback".
class PipeWireOutput final : public AudioOutput {
public:
    explicit PipeWireOutput(Callbacks callbacks)
        : m_audience(std::make_shared<Audience>(Audience{std::move(callbacks)})), m_session(events(m_audience)) {
        m_thread = std::thread([this] {
            pthread_setname_np(pthread_self(), "varnet.playback");
            m_session.run();
        });
    }
    ~PipeWireOutput() override {
        m_session.stop();
        m_thread.join();
    }
    PipeWireOutput(const PipeWireOutput&) = delete;
    PipeWireOutput& operator=(const PipeWireOutput&) = delete;

    void play(const std::filesystem::path& wav, double position, double rate) override {
        m_session.give(++m_audience->number, PlaybackSession::Order{wav, position, rate});
    }
    void pause() override { m_session.give(++m_audience->number, {}); }
    double position() const override { return m_session.position(); }

private:
    /// Of the main thread.
    struct Audience {
        Callbacks callbacks;
        std::uint64_t number = 0; ///< of the newest order
    };

    static PlaybackSession::Events events(const std::weak_ptr<Audience>& audience) {
        PlaybackSession::Events events;
        events.ended = [audience](std::uint64_t number) {
            postToMain([audience, number] {
                if (const auto there = audience.lock(); there && there->number == number)
                    there->callbacks.onEnded();
            });
        };
        events.failed = [audience](std::uint64_t number, const std::exception_ptr& failure) {
            postToMain([audience, number, failure] {
                if (const auto there = audience.lock(); there && there->number == number)
                    there->callbacks.onFailed(failure);
            });
        };
        return events;
    }

    std::shared_ptr<Audience> m_audience;
    PlaybackSession m_session;
    std::thread m_thread;
};

} // namespace

std::unique_ptr<AudioOutput> makeAudioOutput(AudioOutput::Callbacks callbacks) {
    return std::make_unique<PipeWireOutput>(std::move(callbacks));
}

} // namespace varnet
