#include "tests/support/StoreFixture.h"

namespace varnet::test {

namespace {

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
        if (id == m_store->recordingID())
            lastRecorded = id;
        if (m_store->saveFailures().contains(id))
            return;
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
