#include "Varnet/platform/linux/PipeWireGraph.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

using Feed = PipeWireGraph::Feed;
using enum CaptureSource;

// Nodes: 10 output, 11 microphone, 12 virtual microphone, 13 headset of both kinds, 14 another program, 20 our stream.
// Ports that are monitors: 100 of the output, 120 of the virtual microphone, which is made of a sink, 130 of the
// headset.
PipeWireGraph graphOf(std::initializer_list<PipeWireGraph::Link> links) {
    PipeWireGraph graph;
    graph.addNode(10, "Audio/Sink");
    graph.addNode(11, "Audio/Source");
    graph.addNode(12, "Audio/Source/Virtual");
    graph.addNode(13, "Audio/Duplex");
    graph.addNode(14, "Stream/Output/Audio");
    graph.addPort(100, true);
    graph.addPort(110, false);
    graph.addPort(120, true);
    graph.addPort(130, true);
    std::uint32_t id = 1000;
    for (const PipeWireGraph::Link& link : links)
        graph.addLink(id++, link);
    return graph;
}

TEST(PipeWireGraph, TellsTheRightDevicesFromTheWrongOnes) {
    struct Row {
        const char* name;
        std::initializer_list<PipeWireGraph::Link> links;
        Feed microphone;
        Feed call;
    };
    const Row rows[] = {
        {"microphone", {{11, 110, 20}}, Feed::right, Feed::wrong},
        {"virtual microphone", {{12, 120, 20}}, Feed::right, Feed::wrong},
        {"output's monitor, two channels", {{10, 100, 20}, {10, 100, 20}}, Feed::wrong, Feed::right},
        {"headset's microphone", {{13, 131, 20}}, Feed::right, Feed::wrong},
        {"headset's monitor", {{13, 130, 20}}, Feed::wrong, Feed::right},
        {"a program", {{14, 140, 20}}, Feed::wrong, Feed::wrong},
        {"microphone and monitor", {{11, 110, 20}, {10, 100, 20}}, Feed::wrong, Feed::wrong},
    };
    for (const Row& row : rows) {
        const PipeWireGraph graph = graphOf(row.links);
        EXPECT_EQ(graph.feed(microphone, 20), row.microphone) << row.name;
        EXPECT_EQ(graph.feed(system, 20), row.call) << row.name;
    }
}

} // namespace
} // namespace varnet
