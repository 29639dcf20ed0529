#pragma once

#include "Varnet/platform/AudioCapture.h"
#include "Varnet/platform/linux/PipeWireConnection.h"
#include "Varnet/platform/linux/PipeWireGraph.h"
#include "Varnet/platform/linux/PipeWireStream.h"

namespace varnet {

/// One connection to PipeWire with its streams, and everything that is decided about them: the whole life of a capture
/// on one thread, the one that calls `run`.
///
/// A stream's sound is delivered only while the graph shows the stream linked from the right kind of device, so that a
/// microphone stream that was put on an output's monitor never brings the call's sound. The link's announcement and the
/// buffers of that link come over the same connection in this order, hence the decision is never too late.
class PipeWireSession final : PipeWireConnection::Client {
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

    void onWake() override { deliver(); }
    void onWatch() override;
    void onRegistryKnown() override; ///< opens the streams
    void onAdded(std::uint32_t id, std::string_view type, const spa_dict& properties) override;
    void onRemoved(std::uint32_t id) override;
    void onError(std::uint32_t id, int error, const char* message) override;

    void connect(); ///< throws CaptureUnavailable
    void update();  ///< after any change of the graph or of a stream
    void checkDeadline(std::int64_t now);
    void mend(Track& track, std::int64_t now);
    void deliver();
    void deliver(Track& track);
    void fail(std::exception_ptr failure);
    void fail(CaptureUnavailable::Reason reason, std::string message);
    static bool isCapturing(const Track& track);

    AudioCapture::Callbacks m_callbacks;
    std::function<void(std::exception_ptr)> m_started; ///< empty once called
    bool m_ended = false;                              ///< failed: no callback comes any more
    bool m_closing = false;                            ///< the streams are being taken down
    std::int64_t m_startTime = 0;
    PipeWireGraph m_graph;
    PipeWireConnection m_connection;
    std::vector<Track> m_tracks;
};

} // namespace varnet
