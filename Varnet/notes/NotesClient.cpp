#include "Varnet/notes/NotesClient.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/notes/DraftBuilder.h"
#include "Varnet/async/Worker.h"
#include "Varnet/notes/NotesRequest.h"
#include "Varnet/platform/FileBody.h"
#include "Varnet/platform/LoopbackHTTP.h"
#include "Varnet/platform/Paths.h"

#include <QDebug>

#include <algorithm>
#include <chrono>

namespace varnet {

namespace {

constexpr std::chrono::seconds silence(600);
constexpr std::int64_t largestAnswer = 256 * 1024; // many times what the model may write
constexpr const char* modelName = "Qwen3.5-4B · Unsloth Q4_K_M · 00fe7986ff5f";

void requireThisMachine(const QUrl& url) {
    const QString host = url.host();
    const bool local =
        host == QLatin1String("127.0.0.1") || host == QLatin1String("localhost") || host == QLatin1String("::1");
    if (url.scheme() != QLatin1String("http") || !local)
        throw Failure("Notes generation currently requires a local loopback model server.");
}

bool isControl(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

/// The secret that the engine asks for. Empty when the file holds none that can stand in a header; the engine says
/// then whether it lets us in without.
QByteArray authorization(const std::filesystem::path& keyFile) {
    constexpr std::size_t longestFile = 64 * 1024;
    try {
        const std::string key = trimmed(readFile(keyFile, longestFile));
        if (!key.empty() && validUtf8(key) == key && std::ranges::none_of(key, isControl))
            return "Bearer " + QByteArray::fromStdString(key);
        qWarning("The key of the notes engine is not usable.");
    } catch (const FileFailure& failure) {
        qWarning("The key of the notes engine is not there: %s", failure.what());
    }
    return {};
}

Task<GeneratedNotes> draft(NotesClient client, Meeting meeting, NotesClient::Progress progress,
                           NotesClient::InspectOutput inspectOutput, NotesClient::Dropped dropped,
                           std::stop_token stop) {
    requireThisMachine(client.baseURL);
    // Between the steps it belongs to this coroutine, during each to the worker alone.
    const auto builder =
        co_await onWorker([meeting = std::move(meeting)] { return std::make_shared<DraftBuilder>(meeting); }, stop);
    const auto session = client.session ? client.session : std::make_shared<LoopbackHTTP>(largestAnswer);
    const QUrl url = appendingPath(client.baseURL, QStringLiteral("v1/chat/completions"));
    const BodyHeaders headers{"application/json", authorization(client.keyFile)};
    const std::size_t stepCount = builder->stepCount();
    for (std::size_t index = 0; index < stepCount; ++index) {
        if (progress)
            progress(static_cast<int>(index + 1), static_cast<int>(stepCount));
        const DraftBuilder::Step step = builder->step(index);
        auto body = std::make_unique<FileBody>(QByteArray::fromStdString(NotesRequest::body(client.instruction, step)));
        const HTTPReply reply = co_await session->post(url, headers, std::move(body), silence, stop);
        if (reply.status != 200)
            throw Failure("The local notes model is unavailable or rejected the request. Start "
                          "scripts/start-notes.sh and try again. The previous draft was kept.");
        std::string content = NotesRequest::contentOf(reply.body);
        if (inspectOutput)
            inspectOutput(content);
        const auto reasons = co_await onWorker(
            [builder, pass = step.pass, content = std::move(content)] {
                return builder->take(pass, NotesRequest::pointsIn(content));
            },
            stop);
        for (const std::string& reason : reasons)
            if (dropped)
                dropped(reason);
    }
    co_return std::move(*builder).finish(modelName, Date::now());
}

} // namespace

std::filesystem::path NotesClient::defaultKeyFile() {
    return Paths::notesServiceKey();
}

Task<GeneratedNotes> NotesClient::generate(Meeting meeting, Progress progress, InspectOutput inspectOutput,
                                           Dropped dropped, std::stop_token stop) const {
    return draft(*this, std::move(meeting), std::move(progress), std::move(inspectOutput), std::move(dropped),
                 std::move(stop));
}

} // namespace varnet
