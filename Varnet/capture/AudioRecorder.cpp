#include "Varnet/capture/AudioRecorder.h"

#include "MeetingCore/audio/Levels.h"
#include "MeetingCore/base/Failures.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace varnet {

using namespace std::chrono_literals;

namespace {

constexpr std::int64_t nanosecondsPerFrames = 125'000; // of `framesPer` frames: no rounding
constexpr std::int64_t framesPer = 2;
constexpr std::size_t blockFrames = 1'365; // 85 ms: what is written, metered and sent at once
constexpr std::chrono::nanoseconds tickPeriod = 80ms;

/// How long the microphone may deliver nothing before what is held back is written.
constexpr std::chrono::nanoseconds quietTime = 240ms;

/// From when on missing sound counts as a gap that is filled while it lasts, and how far behind the clock it is filled,
/// so that sound that is only late is not taken for missing.
constexpr std::chrono::nanoseconds gapTime = 1s;
constexpr std::chrono::nanoseconds gapMargin = 500ms;

constexpr std::int64_t silenceFrames = 16'000; ///< written at once, however long the gap

} // namespace

AudioRecorder::AudioRecorder(std::unique_ptr<AudioCapture> capture, Clock clock)
    : m_clock(clock), m_run(*this, std::move(capture), "varnet.audio", std::move(clock)) {}

Task<> AudioRecorder::start(std::filesystem::path file, RecorderCallbacks callbacks) {
    m_callbacks = std::move(callbacks);
    return m_run.start(
        {CaptureSource::microphone}, [this, file = std::move(file)] { open(file); }, m_callbacks.onNotice);
}

void AudioRecorder::started() {
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void AudioRecorder::open(const std::filesystem::path& path) {
    m_file = std::make_unique<DurableWAV>(path);
    m_path = path;
    m_failure = nullptr;
    m_origin = m_clock();
    m_converter.emplace(m_origin);
    m_run.queue().startTimer(tickPeriod, tickPeriod, [this] { tick(); });
}

void AudioRecorder::deliver(const CaptureBuffer& buffer) {
    try {
        // Posted under the lock, so that no tick takes the converter's rest before what came ahead of it.
        const std::lock_guard lock(m_converterMutex);
        m_run.queue().post([this, placed = m_converter->convert(buffer, m_clock())]() mutable {
            for (PlacedSamples& next : placed)
                gather(std::move(next));
        });
    } catch (...) {
        m_run.queue().post([this, failure = std::current_exception()] { fail(failure); });
    }
}

/// Small buffers are gathered to blocks, so that a short quantum does not mean a write and a message each.
void AudioRecorder::gather(PlacedSamples next) {
    auto& [frame, samples] = m_block;
    if (!samples.empty() && next.frame == frame + static_cast<std::int64_t>(samples.size())) {
        samples.insert(samples.end(), next.samples.begin(), next.samples.end());
    } else {
        writeBlock();
        m_block = std::move(next);
    }
    if (samples.size() >= blockFrames)
        writeBlock();
}

void AudioRecorder::writeBlock() {
    const PlacedSamples block = std::exchange(m_block, {});
    if (block.samples.empty() || m_failure || !m_file)
        return;
    if (m_callbacks.onLevels)
        m_callbacks.onLevels(rmsLevel(block.samples), std::nullopt);
    writeSilence(block.frame);
    // What lies before the start, or where silence has been written already, has come too late.
    const std::int64_t late = std::max<std::int64_t>(writtenFrames() - block.frame, 0);
    if (late < static_cast<std::int64_t>(block.samples.size()))
        append(DurableWAV::pcm(std::span(block.samples).subspan(static_cast<std::size_t>(late))));
}

void AudioRecorder::writeSilence(std::int64_t until) {
    static const std::vector<std::byte> silence(silenceFrames * 2);
    while (!m_failure && writtenFrames() < until) {
        const std::int64_t count = std::min(silenceFrames, until - writtenFrames());
        append(std::span(silence).first(static_cast<std::size_t>(count) * 2));
    }
}

void AudioRecorder::append(std::span<const std::byte> pcm) {
    if (m_failure)
        return;
    try {
        m_file->append(pcm);
    } catch (...) {
        return fail(std::current_exception());
    }
    if (m_callbacks.onPCM)
        m_callbacks.onPCM({pcm.begin(), pcm.end()});
}

std::int64_t AudioRecorder::writtenFrames() const {
    return static_cast<std::int64_t>(m_file->bytes() / 2);
}

template <class Take>
void AudioRecorder::takeRest(Take take) {
    try {
        std::optional<PlacedSamples> rest;
        {
            const std::lock_guard lock(m_converterMutex);
            rest = take(*m_converter);
        }
        if (rest)
            gather(std::move(*rest));
    } catch (...) {
        fail(std::current_exception());
    }
}

void AudioRecorder::tick() {
    if (m_failure || !m_file)
        return;
    const std::int64_t now = m_clock();
    takeRest([&](SourceConverter& converter) { return converter.finishIfQuietSince(now - quietTime.count()); });
    const auto framesAt = [&](std::int64_t time) { return (time - m_origin) / nanosecondsPerFrames * framesPer; };
    const std::int64_t known =
        m_block.samples.empty() ? writtenFrames() : m_block.frame + static_cast<std::int64_t>(m_block.samples.size());
    if (known >= framesAt(now - gapTime.count()))
        return;
    writeBlock();
    writeSilence(framesAt(now - gapMargin.count()));
    if (m_callbacks.onLevels)
        m_callbacks.onLevels(0, std::nullopt);
}

void AudioRecorder::fail(const std::exception_ptr& failure) {
    if (m_failure || !m_file)
        return;
    m_failure = failure;
    if (m_callbacks.onError)
        m_callbacks.onError(failure);
}

void AudioRecorder::finish(std::int64_t) {
    takeRest([](SourceConverter& converter) { return converter.finish(); });
    writeBlock();
    try {
        m_file->close();
    } catch (...) {
        if (!m_failure)
            m_failure = std::current_exception();
    }
    m_file.reset();
    m_callbacks = {};
    if (m_failure)
        std::rethrow_exception(m_failure);
}

/// Nothing was captured, so nothing is left lying about.
void AudioRecorder::abandon() {
    m_file.reset();
    m_callbacks = {};
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

} // namespace varnet
