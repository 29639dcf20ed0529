#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/ImportQueue.h"
#include "tests/support/Await.h"
#include "tests/support/StoreFixture.h"

#include <fstream>

namespace varnet::test {
namespace {

/// Files that are no audio: their imports fail, each in its turn, which shows the order and gathers the sentences.
class ImportQueueTest : public StoreFixture {
protected:
    std::filesystem::path file(const std::string& name) {
        std::ofstream(folder / name) << "text";
        return folder / name;
    }
    static QUrl url(const std::filesystem::path& path) { return ImportQueue::address(path); }
    bool idle() {
        return eventually([this] { return !store().busy() && queue.waiting() == 0; });
    }
    std::vector<std::string> titles() {
        std::vector<std::string> titles;
        for (const auto& meeting : store().meetings())
            titles.push_back(meeting.title);
        return titles;
    }

    AppRouter router;
    EngineSupervisor engines{false, {}, folder / "key"};
    ImportQueue queue{store(), engines, router};
    static constexpr const char* noAudio =
        "Audio could not be converted to 16 kHz PCM. The original file was not changed.";
};

} // namespace

TEST_F(ImportQueueTest, ImportsInOrderOnceTheSpeechEngineIsKnownAndGathersWhatFailed) {
    std::filesystem::create_directory(folder / "Talks");
    const Uuid read = store().create("Read").id;
    const auto b = file("b.m4a");
    queue.add({url(b), QUrl("https://example.org/a.mp3"), url(folder / "Talks"), url(folder / "gone.mp3"), url(b),
               url(file("a.b.opus"))});
    EXPECT_EQ(queue.waiting(), 2) << "none began, and none was taken twice";
    await(engines.startSpeech());
    ASSERT_TRUE(idle());
    EXPECT_EQ(titles(), (std::vector<std::string>{"a.b", "b", "Read"}));
    EXPECT_EQ(store().error(), "“https://example.org/a.mp3” is not a file on this computer.\n"
                               "“Talks” is a folder. Choose the audio files in it.\n"
                               "“gone.mp3” could not be found.\n"
                               "“b.m4a”: " +
                                   std::string(noAudio) + "\n“a.b.opus”: " + noAudio);
    EXPECT_TRUE(router.showingLibrary());
    EXPECT_EQ(store().selectedID(), read);
}

TEST_F(ImportQueueTest, WaitsForARecordingAndForgetsWhatIsCleared) {
    await(engines.startSpeech());
    await(store().startRecording());
    queue.add({url(file("a.wav")), url(file("b.wav"))});
    settle();
    EXPECT_EQ(queue.waiting(), 2);
    await(store().stopRecording());
    EXPECT_EQ(queue.waiting(), 2) << "the recording has its last word first";
    store().setError("The call was not heard.");
    QObject::connect(&queue, &ImportQueue::waitingChanged, &queue, &ImportQueue::clear); // with the first one's start
    ASSERT_TRUE(idle());
    EXPECT_EQ(titles().size(), 2U);
    EXPECT_EQ(titles().front(), "a");
    EXPECT_EQ(store().error(), "The call was not heard.\n“a.wav”: " + std::string(noAudio)) << "that last word stays";
}

TEST_F(ImportQueueTest, ReadsAddressesByteForByte) {
    const std::vector<std::pair<const char*, const char*>> cases{
        {"file:///a%20b%23.m4a", "/a b#.m4a"},
        {"file:///caf%C3%A9", "/café"},
        {"file:///odd%FF.wav", "/odd\xFF.wav"},
        {"file://localhost/a", "/a"},
        {"file://elsewhere.example/a", ""},
        {"smb://host/a", ""},
        {"file:///a%00.mp3", ""},
        {"/a b?.m4a", "/a b?.m4a"},
        {"/odd\xFF.wav", "/odd\xFF.wav"},
        {"a:b.wav", "a:b.wav"},
    };
    for (const auto& [argument, path] : cases) {
        const auto file = ImportQueue::localFile(ImportQueue::address(argument));
        EXPECT_EQ(file ? file->string() : "", *path && *path != '/' ? std::filesystem::absolute(path).string() : path)
            << argument;
    }
    EXPECT_FALSE(ImportQueue::localFile(QUrl("file:song.mp3"))) << "from no folder";
}

} // namespace varnet::test
