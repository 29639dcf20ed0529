#pragma once

#include "Varnet/platform/linux/PipeWireConnection.h"
#include "Varnet/platform/linux/PlaybackReader.h"
#include "Varnet/platform/linux/PlaybackStream.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace varnet {

/// The thread of an AudioOutput, the one that calls `run`: it keeps the connection to PipeWire and reads files ahead.
/// Only the newest order counts; each goes by its number.
class PlaybackSession final : PipeWireConnection::Client {
public:
    struct Order {
        std::filesystem::path wav;
        double position = 0; ///< seconds
        double rate = 1;
    };

    /// Called on the session's thread, once at most for an order.
    struct Events {
        std::function<void(std::uint64_t number)> ended;
        std::function<void(std::uint64_t number, std::exception_ptr)> failed;
    };

    explicit PlaybackSession(Events events);
    ~PlaybackSession();
    PlaybackSession(const PlaybackSession&) = delete;
    PlaybackSession& operator=(const PlaybackSession&) = delete;

    void run() noexcept; ///< until `stop`

    // Any thread.
    void stop();
    void give(std::uint64_t number, std::optional<Order> order); ///< absent: silence, and the position stays
    double position() const;                                     ///< as AudioOutput::position

private:
    /// What of the ring belongs to an order.
    struct Run {
        std::uint64_t number = 0;
        std::shared_ptr<PlaybackRing> ring;
        std::uint64_t firstFrame = 0;
        double position = 0, rate = 1;
    };

    void onWake() override; ///< there may be something to do
    void onWatch() override;
    void onRegistryKnown() override;
    void onAdded(std::uint32_t id, std::string_view type, const spa_dict& properties) override;
    void onRemoved(std::uint32_t id) override { m_sinks.erase(id); }
    void onError(std::uint32_t id, int error, const char* message) override;

    void begin(std::uint64_t number, const std::optional<Order>& order);
    void fill();
    void checkEnd();
    void rest();
    void connect();
    void openStream(std::uint32_t sampleRate);
    void disconnect();
    void finish(const std::exception_ptr& failure);
    void giveUp(std::exception_ptr failure);
    double heardPosition() const; ///< with the lock

    Events m_events;

    mutable std::mutex m_mutex; // for what stands up to the next blank line
    std::uint64_t m_number = 0;
    std::optional<Order> m_order;
    double m_restPosition = 0; ///< without an order
    Run m_run;

    std::uint64_t m_begun = 0;                ///< number of the last order that was taken up
    std::unique_ptr<PlaybackReader> m_reader; ///< while there is more of the file
    bool m_playing = false;
    int m_silentWakes = 0;
    std::uint64_t m_lastTaken = 0;   ///< as the watch saw it last
    std::int64_t m_lastProgress = 0; ///< nanoseconds
    std::exception_ptr m_brokenBy;   ///< the connection is of no use any more

    std::set<std::uint32_t> m_sinks;
    PipeWireConnection m_connection;
    std::unique_ptr<PlaybackStream> m_stream;
};

} // namespace varnet
