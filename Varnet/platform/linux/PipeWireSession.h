#pragma once

#include "Varnet/platform/AudioCapture.h"
#include "Varnet/platform/linux/PipeWireGraph.h"
#include "Varnet/platform/linux/PipeWireStream.h"

namespace varnet {

/// One connection to PipeWire with its streams, and everything that is decided about them: the whole life of a capture
/// on one thread, the one that calls `run`.
///
/// A stream's sound is delivered only while the graph shows the stream linked from the right kind of device, so that a
/// microphone stream that was put on an output's monitor never brings the call's sound. The link's announcement and the
/// buffers of that link come over the same connection in this order, hence the decision is never too late.
class PipeWireSession {
public:
    /// `started` is called once on the session's thread: with null when every stream runs, else with the failure.
    PipeWireSession(const std::vector<CaptureSource>& sources, AudioCapture::Callbacks callbacks,
                    std::function<void(std::exception_ptr)> started);
    ~PipeWireSession();
    PipeWireSession(const PipeWireSession&) = delete;
    PipeWireSession& operator=(const PipeWireSession&) = delete;

    /// Captures until `stop` or a failure, and delivers what was captured until then.
    void run() noexcept;

    /// Ends `run`. Any thread, also before `run`.
    void stop();

private:
    struct Track {
        CaptureSource source;
        std::unique_ptr<PipeWireStream> stream;
        PipeWireGraph::Feed feed = PipeWireGraph::Feed::none;
        std::int64_t brokenSince = 0; ///< monotonic nanoseconds; meaningful while the track is not capturing
        std::int64_t connectedAt = 0; ///< of the last attempt
        bool noticeGiven = false;     ///< of this interruption
    };

    void connect();     ///< throws CaptureUnavailable
    void openStreams(); ///< once the registry is known
    void update();      ///< after any change of the graph or of a stream
    void watch();       ///< at times
    void checkDeadline(std::int64_t now);
    void mend(Track& track, std::int64_t now);
    void deliver();
    void deliver(Track& track);
    void fail(std::exception_ptr failure);
    void fail(CaptureUnavailable::Reason reason, std::string message);
    static bool isCapturing(const Track& track);
    static void destroyRegistry(pw_registry* registry) { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry)); }

    void onGlobal(std::uint32_t id, const char* type, const spa_dict* properties);
    void onCoreError(std::uint32_t id, int result, const char* message);

    AudioCapture::Callbacks m_callbacks;
    std::function<void(std::exception_ptr)> m_started; ///< empty once called
    bool m_ended = false;                              ///< failed: no callback comes any more
    bool m_closing = false;                            ///< the streams are being taken down
    bool m_registryKnown = false;
    int m_registrySync = 0;
    std::int64_t m_startTime = 0;
    PipeWireGraph m_graph;

    Handle<pw_main_loop, pw_main_loop_destroy> m_mainLoop;
    pw_loop* m_loop;
    spa_source* m_stopEvent; ///< the loop frees its sources
    spa_source* m_wakeEvent;
    spa_source* m_watchTimer;
    Handle<pw_context, pw_context_destroy> m_context;
    Handle<pw_core, pw_core_disconnect> m_core;
    spa_hook m_coreListener{};
    Handle<pw_registry, destroyRegistry> m_registry;
    spa_hook m_registryListener{};
    std::vector<Track> m_tracks;
};

} // namespace varnet
