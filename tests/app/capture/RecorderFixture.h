#pragma once

#include "Varnet/capture/RecorderCallbacks.h"
#include "tests/support/Await.h"
#include "tests/support/FakeSoundServer.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

#include <mutex>

namespace varnet::test {

/// A recorder of the given type on a fake sound server and a clock that the test turns. Audio is 16 kHz mono, so that
/// input and output frames are the same.
template <class Recorder>
class RecorderFixture : public ::testing::Test {
protected:
    explicit RecorderFixture(const char* file) : m_file(file) {}

    /// What the start and the stop fail with; empty if they do not.
    std::string startFailure() { return failureText(recorder->start(folder / m_file, callbacks())); }
    std::string stop() { return failureText(recorder->stop()); }
    void start() { ASSERT_EQ(startFailure(), ""); }

    void deliver(CaptureSource source, double seconds, std::size_t count, float value = 0.5F) {
        sound.deliver(source, count, FakeClock::at(seconds), value);
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
    std::vector<std::int16_t> samples(const char* name) { return wavSamples(folder / name); }

    TemporaryFolder folder;
    FakeClock clock;
    FakeSoundServer sound;
    std::unique_ptr<Recorder> recorder = std::make_unique<Recorder>(sound.makeCapture(), clock.reader());

    std::mutex mutex;
    std::vector<std::byte> heard;
    std::vector<std::string> errors;
    std::vector<std::string> notices;
    std::vector<std::pair<float, std::optional<float>>> levels;

private:
    template <class List, class... Values>
    void keep(List& list, Values&&... values) {
        const std::lock_guard lock(mutex);
        list.emplace_back(std::forward<Values>(values)...);
    }
    RecorderCallbacks callbacks() {
        return {.onPCM =
                    [this](std::vector<std::byte> pcm) {
                        const std::lock_guard lock(mutex);
                        heard.insert(heard.end(), pcm.begin(), pcm.end());
                    },
                .onError = [this](const std::exception_ptr& error) { keep(errors, describe(error)); },
                .onLevels = [this](float microphone, std::optional<float> call) { keep(levels, microphone, call); },
                .onNotice = [this](const std::string& text) { keep(notices, text); }};
    }

    const char* m_file;
};

/// Half of full scale as 16-bit PCM; the filters leave it a step or two off.
inline constexpr int half = 16'383;

} // namespace varnet::test
