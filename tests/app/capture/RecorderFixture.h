#pragma once

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/capture/RecorderCallbacks.h"
#include "tests/support/Await.h"
#include "tests/support/FakeAudioCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <mutex>

namespace varnet::test {

/// A recorder of the given type on a fake capture and a clock that the test turns. Audio is 16 kHz mono, so that input
/// and output frames are the same.
template <class Recorder>
class RecorderFixture : public ::testing::Test {
protected:
    static constexpr CaptureFormat format{16'000, 1};

    RecorderFixture() {
        auto owned = std::make_unique<FakeAudioCapture>();
        capture = owned.get();
        capture->origin = FakeClock::start;
        recorder = std::make_unique<Recorder>(std::move(owned), clock.reader());
    }

    RecorderCallbacks callbacks() {
        return {
            .onPCM =
                [this](std::vector<std::byte> pcm) {
                    const std::lock_guard lock(mutex);
                    heard.insert(heard.end(), pcm.begin(), pcm.end());
                },
            .onError =
                [this](const std::exception_ptr& error) {
                    const std::lock_guard lock(mutex);
                    errors.push_back(describe(error));
                },
            .onLevels =
                [this](float microphone, std::optional<float> call) {
                    const std::lock_guard lock(mutex);
                    levels.emplace_back(microphone, call);
                },
            .onNotice =
                [this](const std::string& text) {
                    const std::lock_guard lock(mutex);
                    notices.push_back(text);
                },
        };
    }

    void start(const char* name) { await(recorder->start(folder / name, callbacks())); }

    /// What the start of this recording fails with.
    std::string startFailure(const char* name) {
        try {
            start(name);
        } catch (const std::exception& failure) {
            return failure.what();
        }
        return {};
    }

    /// What `stop` fails with; empty if it does not.
    std::string stop() {
        try {
            await(recorder->stop());
        } catch (const std::exception& failure) {
            return failure.what();
        }
        return {};
    }

    void deliver(CaptureSource source, double seconds, std::size_t count, float value = 0.5F) {
        capture->deliver(source, seconds, std::vector<float>(count, value), format);
    }

    std::size_t heardFrames() {
        const std::lock_guard lock(mutex);
        return heard.size() / 2;
    }
    bool waitForHeard(std::size_t frames) {
        return eventually([&] { return heardFrames() >= frames; });
    }
    bool waitForError() {
        return eventually([&] {
            const std::lock_guard lock(mutex);
            return !errors.empty();
        });
    }

    /// The samples of a WAV file, which must declare its whole length.
    std::vector<std::int16_t> samples(const char* name) {
        const std::string bytes = readFile(folder / name);
        std::uint32_t declared = 0;
        std::memcpy(&declared, bytes.data() + 40, 4);
        EXPECT_EQ(declared + 44, bytes.size()) << name;
        std::vector<std::int16_t> result((bytes.size() - 44) / 2);
        if (!result.empty())
            std::memcpy(result.data(), bytes.data() + 44, result.size() * 2);
        return result;
    }

    TemporaryFolder folder;
    FakeClock clock;
    FakeAudioCapture* capture = nullptr;
    std::unique_ptr<Recorder> recorder;

    std::mutex mutex;
    std::vector<std::byte> heard;
    std::vector<std::string> errors;
    std::vector<std::string> notices;
    std::vector<std::pair<float, std::optional<float>>> levels;
};

/// Half of full scale as 16-bit PCM; the filters leave it a step or two off.
inline constexpr int half = 16'383;

} // namespace varnet::test
