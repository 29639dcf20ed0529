#include "Varnet/capture/SystemAudioRecorder.h"

#include "MeetingCore/audio/Levels.h"
#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <system_error>

namespace varnet {

using namespace std::chrono_literals;

namespace {

constexpr std::int64_t sampleRate = 16'000;
constexpr std::int64_t timelineCapacity = 64'000;
constexpr std::int64_t blockFrames = 2'560;
constexpr std::chrono::nanoseconds playoutDelay = 400ms;
constexpr std::chrono::nanoseconds tickPeriod = 80ms; // half a block, so that a block is read soon after it is due

/// How long a source may deliver nothing before what its converter holds back is taken: long enough to be no hiccup,
/// short enough to come before the playout delay is over.
constexpr std::chrono::nanoseconds quietTime = 240ms;

std::int64_t wholeFrames(std::int64_t nanoseconds) {
    return std::max<std::int64_t>(nanoseconds, 0) * (sampleRate / 1'000) / 1'000'000;
}

/// Runs one step of an ending; the first failure is kept, and none keeps the next step from being done.
template <class Step>
void keepFirst(std::exception_ptr& failure, Step step) {
    try {
        step();
    } catch (...) {
        if (!failure)
            failure = std::current_exception();
    }
}

} // namespace

SystemAudioRecorder::SystemAudioRecorder(std::unique_ptr<AudioCapture> capture, Clock clock)
    : m_clock(clock), m_run(*this, std::move(capture), "varnet.system-capture", std::move(clock)) {}

std::int64_t SystemAudioRecorder::dueFrames(std::int64_t elapsed) {
    return wholeFrames(elapsed - playoutDelay.count()) / blockFrames * blockFrames;
}

Task<> SystemAudioRecorder::start(std::filesystem::path mixedFile, RecorderCallbacks callbacks) {
    m_callbacks = std::move(callbacks);
    return m_run.start(
        {allCaptureSources.begin(), allCaptureSources.end()}, [this, file = std::move(mixedFile)] { open(file); },
        m_callbacks.onNotice);
}

void SystemAudioRecorder::started() {
    if (m_failed)
        throw SpeechFailure("Audio capture failed while starting. Check recording permissions and audio devices.");
    m_started = true;
    for (auto& mix : std::exchange(m_unsent, {}))
        m_callbacks.onPCM(std::move(mix));
}

void SystemAudioRecorder::open(const std::filesystem::path& mixedFile) {
    const auto folder = mixedFile.parent_path();
    decltype(m_files) files;
    files["mixed"] = std::make_unique<DurableWAV>(mixedFile);
    files["microphone"] = std::make_unique<DurableWAV>(folder / "microphone.wav");
    files["system"] = std::make_unique<DurableWAV>(folder / "system.wav");
    m_files = std::move(files);
    m_mixedFile = mixedFile;
    m_timeline = std::make_unique<AudioTimeline>(timelineCapacity);
    m_failed = false;
    m_origin = m_clock();
    for (const CaptureSource source : allCaptureSources)
        m_converters.insert_or_assign(source, SourceConverter(m_origin));
    m_run.queue().startTimer(playoutDelay, tickPeriod, [this] { tick(); });
}

void SystemAudioRecorder::deliver(const CaptureBuffer& buffer) {
    try {
        std::vector<PlacedSamples> placed;
        {
            const std::lock_guard lock(m_converterMutex);
            placed = m_converters.at(buffer.source).convert(buffer, m_clock());
        }
        m_run.queue().post([this, source = buffer.source, placed = std::move(placed)] { place(source, placed); });
    } catch (...) {
        m_run.queue().post([this, failure = std::current_exception()] { fail(failure); });
    }
}

void SystemAudioRecorder::place(CaptureSource source, const std::vector<PlacedSamples>& placed) {
    if (m_failed || m_files.empty())
        return;
    try {
        for (const PlacedSamples& next : placed)
            m_timeline->append(next.samples, source, next.frame);
        ++m_received[source];
    } catch (...) {
        fail(std::current_exception());
    }
}

template <class Take>
void SystemAudioRecorder::placeRests(Take take) {
    const std::lock_guard lock(m_converterMutex);
    for (auto& [source, converter] : m_converters)
        if (const std::optional<PlacedSamples> rest = take(converter))
            m_timeline->append(rest->samples, source, rest->frame);
}

void SystemAudioRecorder::tick() {
    if (m_failed)
        return;
    try {
        const std::int64_t now = m_clock();
        placeRests([&](SourceConverter& converter) { return converter.finishIfQuietSince(now - quietTime.count()); });
        flush(dueFrames(now - m_origin));
    } catch (...) {
        fail(std::current_exception());
    }
}

void SystemAudioRecorder::flush(std::int64_t until) {
    for (const AudioBlock& block : m_timeline->drain(until, blockFrames))
        writeBlock(block);
}

void SystemAudioRecorder::writeBlock(const AudioBlock& block) {
    auto mix = DurableWAV::pcm(block.mixed());
    m_files.at("microphone")->append(DurableWAV::pcm(block.microphone));
    m_files.at("system")->append(DurableWAV::pcm(block.system));
    m_files.at("mixed")->append(mix);
    if (m_callbacks.onPCM && m_started)
        m_callbacks.onPCM(std::move(mix));
    else if (m_callbacks.onPCM)
        m_unsent.push_back(std::move(mix));
    if (m_callbacks.onLevels)
        m_callbacks.onLevels(rmsLevel(block.microphone), rmsLevel(block.system));
}

void SystemAudioRecorder::fail(const std::exception_ptr& failure) {
    if (m_failed || m_files.empty())
        return;
    m_failed = true;
    m_run.queue().stopTimer();
    if (m_callbacks.onError)
        m_callbacks.onError(failure);
}

void SystemAudioRecorder::finish(std::int64_t stopTime) {
    std::exception_ptr failure;
    if (!m_failed) {
        keepFirst(failure, [this] { placeRests([](SourceConverter& converter) { return converter.finish(); }); });
        keepFirst(failure, [&] { flush(wholeFrames(stopTime - m_origin)); });
    }
    for (const auto& [key, file] : m_files)
        keepFirst(failure, [&file] { file->close(); });
    m_files.clear();
    keepFirst(failure, [this] { writeDiagnostics(); });
    m_callbacks = {};
    if (failure)
        std::rethrow_exception(failure);
    if (m_failed)
        throw SpeechFailure("One of the audio streams stopped unexpectedly.");
    if (m_received[CaptureSource::microphone] == 0)
        throw SpeechFailure("No microphone buffers were received. Check microphone access and the selected device.");
}

/// Nothing was captured, so nothing is left lying about.
void SystemAudioRecorder::abandon() {
    m_files.clear();
    m_callbacks = {};
    std::error_code ignored;
    for (const char* name : {"microphone.wav", "system.wav"})
        std::filesystem::remove(m_mixedFile.parent_path() / name, ignored);
    std::filesystem::remove(m_mixedFile, ignored);
}

void SystemAudioRecorder::writeDiagnostics() const {
    const auto received = [this](CaptureSource source) {
        const auto found = m_received.find(source);
        return static_cast<qint64>(found == m_received.end() ? 0 : found->second);
    };
    const QJsonObject diagnostics{
        {"capture_failed", m_failed},
        {"frames", static_cast<qint64>(m_timeline->renderedFrames())},
        {"late_frames_dropped", static_cast<qint64>(m_timeline->lateFrames())},
        {"microphone_buffers", received(CaptureSource::microphone)},
        {"playout_delay_seconds", 0.4},
        {"sample_rate", static_cast<qint64>(sampleRate)},
        {"system_buffers", received(CaptureSource::system)},
    };
    writeFileAtomically(m_mixedFile.parent_path() / "capture-diagnostics.json",
                        QJsonDocument(diagnostics).toJson(QJsonDocument::Indented).toStdString());
}

} // namespace varnet
