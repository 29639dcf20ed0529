#include "Varnet/platform/linux/PipeWireGraph.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

using Feed = PipeWireGraph::Feed;
using enum CaptureSource;

TEST(PipeWireGraph, TellsTheRightDevicesFromTheWrongOnes) {
    const struct {
        const char* name;
        std::vector<PipeWireGraph::Link> links; ///< to our stream, node 20
        Feed microphone, call;
    } rows[] = {
        {"microphone", {{11, 110, 20}}, Feed::right, Feed::wrong},
        {"virtual microphone, made of a sink", {{12, 120, 20}}, Feed::right, Feed::wrong},
        {"output's monitor", {{10, 100, 20}}, Feed::wrong, Feed::right},
        {"headset's microphone", {{13, 131, 20}}, Feed::right, Feed::wrong},
        {"headset's monitor", {{13, 130, 20}}, Feed::wrong, Feed::right},
        {"a program", {{14, 140, 20}}, Feed::wrong, Feed::wrong},
        {"microphone and monitor", {{11, 110, 20}, {10, 100, 20}}, Feed::wrong, Feed::wrong},
    };
    for (const auto& row : rows) {
        PipeWireGraph graph;
        std::uint32_t id = 10;
        for (const char* kind :
             {"Audio/Sink", "Audio/Source", "Audio/Source/Virtual", "Audio/Duplex", "Stream/Output/Audio"})
            graph.addNode(id++, kind);
        for (const std::uint32_t port : {100, 120, 130})
            graph.addPort(port, true);
        for (const PipeWireGraph::Link& link : row.links)
            graph.addLink(id++, link);
        EXPECT_EQ(graph.feed(microphone, 20), row.microphone) << row.name;
        EXPECT_EQ(graph.feed(system, 20), row.call) << row.name;
    }
}

} // namespace
} // namespace varnet
