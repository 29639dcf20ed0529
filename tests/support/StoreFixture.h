#pragma once

#include "MeetingCore/records/MeetingRepository.h"
#include "Varnet/platform/SleepInhibitor.h"
#include "Varnet/store/MeetingStore.h"
#include "tests/support/Await.h"
#include "tests/support/FakeSoundServer.h"
#include "tests/support/FakeSpeechSocket.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestServer.h"

#include <gtest/gtest.h>

namespace varnet::test {

/// A store on a folder of its own, with a scripted sound server and speech engine.
class StoreFixture : public ::testing::Test {
protected:
    StoreFixture();
    ~StoreFixture() override;

    MeetingStore& store() { return *m_store; }
    void closeStore() { m_store.reset(); }
    void openStore(); ///< anew, as a next start of the program does

    /// The stored record of a meeting, or of the one that was recorded last.
    Meeting onDisk(const Uuid& id) const { return repository.load(id); }
    Meeting onDisk() const { return onDisk(*lastRecorded); }
    std::filesystem::path meetingFolder() const { return repository.directory(*lastRecorded); }
    std::vector<std::string> filesOnDisk() const; ///< in that meeting's folder, sorted

    FakeSpeechEngine engine = FakeSpeechEngine::cooperative(); ///< what the next session talks to
    FakeSoundServer sound;
    TestServer health; ///< answers that the speech engine is there
    QUrl notesURL;     ///< of the notes engine, from the next opening on; empty: the same answers for it
    TemporaryFolder folder;
    std::filesystem::path root = folder / "meetings";
    MeetingRepository repository{root};
    std::optional<Uuid> lastRecorded;
    std::vector<std::string>
        statusesOnDisk;      ///< each status of a meeting that changed, as it was read back from the disk
    int sleepInhibitors = 0; ///< how many are held

private:
    std::unique_ptr<MeetingStore> m_store;
};

} // namespace varnet::test
