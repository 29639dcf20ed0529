#include "Varnet/platform/linux/PipeWireGraph.h"

#include <algorithm>

namespace varnet {

namespace {

constexpr std::string_view duplex = "Audio/Duplex";

/// Whether sound of `source` comes out of nodes of that class; "Audio/Source/Virtual" is an "Audio/Source".
bool isDevice(CaptureSource source, std::string_view mediaClass) {
    return mediaClass.starts_with(source == CaptureSource::microphone ? "Audio/Source" : "Audio/Sink") ||
           mediaClass.starts_with(duplex);
}

} // namespace

void PipeWireGraph::addNode(std::uint32_t id, std::string_view mediaClass) {
    m_mediaClasses[id] = mediaClass;
}

void PipeWireGraph::addPort(std::uint32_t id, bool isMonitor) {
    if (isMonitor)
        m_monitorPorts.insert(id);
}

void PipeWireGraph::addLink(std::uint32_t id, Link link) {
    m_links[id] = link;
}

void PipeWireGraph::remove(std::uint32_t id) {
    m_mediaClasses.erase(id);
    m_monitorPorts.erase(id);
    m_links.erase(id);
}

bool PipeWireGraph::hasDevice(CaptureSource source) const {
    return std::ranges::any_of(m_mediaClasses, [&](const auto& node) { return isDevice(source, node.second); });
}

PipeWireGraph::Feed PipeWireGraph::feed(CaptureSource source, std::uint32_t stream) const {
    Feed feed = Feed::none;
    for (const auto& [id, link] : m_links) {
        if (link.inputNode != stream)
            continue;
        if (!suits(source, link))
            return Feed::wrong;
        feed = Feed::right;
    }
    return feed;
}

bool PipeWireGraph::suits(CaptureSource source, const Link& link) const {
    const auto node = m_mediaClasses.find(link.outputNode);
    if (node == m_mediaClasses.end() || !isDevice(source, node->second))
        return false;
    // A duplex device has both: what it records, and the monitor of what it plays. Elsewhere the mark says nothing:
    // virtual microphones that are made of a sink hand their sound out by ports called monitors.
    if (!node->second.starts_with(duplex))
        return true;
    return m_monitorPorts.contains(link.outputPort) == (source == CaptureSource::system);
}

} // namespace varnet
