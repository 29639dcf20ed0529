#include "tests/support/StoreFixture.h"

#include "Varnet/platform/Clock.h"

#include <thread>

namespace varnet::test {

namespace {

/// Runs the work on a thread that is not the main one, as a sound server calls back.
template <class Work>
void elsewhere(Work work) {
    std::thread(work).join();
}

class FakeCapture final : public AudioCapture {
public:
    explicit FakeCapture(FakeSoundServer& server) : m_server(server) {}
    ~FakeCapture() override { m_capture->running = false; }

    Task<> start(std::vector<CaptureSource> sources, Callbacks callbacks) override {
        *m_capture = {std::move(sources), std::move(callbacks)};
        return run(&m_server, m_capture);
    }
    Task<> stop() override {
        m_capture->running = false;
        co_return;
    }

private:
    static Task<> run(FakeSoundServer* server, std::shared_ptr<FakeSoundServer::Capture> capture) {
        server->captures.push_back(capture);
        co_await server->startsPass.wait();
        const auto failure = capture->sources.size() > 1 ? server->callFailure : server->microphoneFailure;
        if (failure && server->failuresAreReportedToo)
            elsewhere([&] { capture->callbacks.onError(failure); });
        if (failure)
            std::rethrow_exception(failure);
        capture->running = true;
    }

    FakeSoundServer& m_server;
    std::shared_ptr<FakeSoundServer::Capture> m_capture = std::make_shared<FakeSoundServer::Capture>();
};

struct FakeSleepInhibitor : SleepInhibitor {
    explicit FakeSleepInhibitor(int* held) : m_held(held) { ++*m_held; }
    ~FakeSleepInhibitor() override { --*m_held; }
    int* m_held;
};

Task<std::unique_ptr<SleepInhibitor>> inhibitSleep(int* held) {
    std::unique_ptr<SleepInhibitor> inhibitor = std::make_unique<FakeSleepInhibitor>(held);
    co_return inhibitor;
}

} // namespace

std::unique_ptr<AudioCapture> FakeSoundServer::makeCapture() {
    return std::make_unique<FakeCapture>(*this);
}

void FakeSoundServer::deliver(CaptureSource source, std::size_t frameCount) {
    const std::vector<float> samples(frameCount, 0.25F);
    CaptureBuffer buffer;
    buffer.source = source;
    buffer.format = {16000, 1};
    buffer.samples = samples;
    buffer.time = monotonicNanoseconds();
    elsewhere([&] { captures.back()->callbacks.onBuffer(buffer); });
}

void FakeSoundServer::fail(const std::string& message) {
    elsewhere([&] { captures.back()->callbacks.onError(std::make_exception_ptr(Failure(message))); });
}

void FakeSoundServer::notify(const std::string& notice) {
    elsewhere([&] { captures.back()->callbacks.onNotice(notice); });
}

StoreFixture::StoreFixture() {
    health.answer(TestServer::response(200, "ok"));
    openStore();
}

StoreFixture::~StoreFixture() {
    m_store.reset();
    settle();
}

void StoreFixture::openStore() {
    StoreParts parts;
    parts.makeCapture = [this] { return sound.makeCapture(); };
    parts.makeLiveSpeech = [this](const QUrl&) { return LiveSpeech::make(engine.makeSocket()); };
    parts.inhibitSleep = [this](const QString&) { return inhibitSleep(&sleepInhibitors); };
    parts.speechURL = health.url(QString());
    parts.notesURL = notesURL.isEmpty() ? parts.speechURL : notesURL;
    m_store.reset();
    m_store = std::make_unique<MeetingStore>(root, parts);
    QObject::connect(m_store.get(), &MeetingStore::meetingChanged, m_store.get(), [this](Uuid id) {
        if (id != m_store->recordingID() && id != lastRecorded)
            return;
        lastRecorded = id;
        const auto status = onDisk(id).status;
        if (statusesOnDisk.empty() || statusesOnDisk.back() != status)
            statusesOnDisk.push_back(status);
    });
}

std::vector<std::string> StoreFixture::filesOnDisk() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(meetingFolder()))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

} // namespace varnet::test
