#pragma once

#include "MeetingCore/audio/AudioTimeline.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace varnet {

/// The part of the sound server's graph that decides what a capture stream hears: devices, their ports, and links.
/// Plain bookkeeping of what the server's registry announces; ids are the registry's.
class PipeWireGraph {
public:
    struct Link {
        std::uint32_t outputNode = 0;
        std::uint32_t outputPort = 0;
        std::uint32_t inputNode = 0;
    };

    /// What a stream is linked from.
    enum class Feed {
        none,  ///< nothing
        right, ///< devices of the kind that its source asks for, and nothing else
        wrong, ///< something else, such as a sink's monitor for the microphone
    };

    void addNode(std::uint32_t id, std::string_view mediaClass);
    void addPort(std::uint32_t id, bool isMonitor);
    void addLink(std::uint32_t id, Link link);

    /// Forgets the object of any kind with that id; an unknown id does nothing.
    void remove(std::uint32_t id);

    /// Whether there is a device that `source` could be captured from.
    bool hasDevice(CaptureSource source) const;

    /// What the stream with node id `stream`, which is to capture `source`, is linked from.
    Feed feed(CaptureSource source, std::uint32_t stream) const;

private:
    bool suits(CaptureSource source, const Link& link) const;

    std::map<std::uint32_t, std::string, std::less<>> m_mediaClasses;
    std::set<std::uint32_t> m_monitorPorts;
    std::map<std::uint32_t, Link> m_links;
};

} // namespace varnet
