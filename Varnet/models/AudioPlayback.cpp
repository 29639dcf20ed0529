#include "Varnet/models/AudioPlayback.h"

#include "MeetingCore/audio/WavHeader.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/async/Worker.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"
#include "Varnet/store/WaveformCache.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace varnet {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds positionInterval{40};

/// Whether a recording is being started, runs, or has files open.
bool isRecording(const MeetingStore& store) {
    const auto* starting = store.recordingID() ? store.meeting(*store.recordingID()) : nullptr;
    return store.recording() || store.capturing() ||
           (starting && starting->status == MeetingStatus::preparingMicrophone);
}

QString clockText(double seconds) {
    return toQString(MeetingPresentation::clock(seconds));
}

} // namespace

AudioPlayback::AudioPlayback(MeetingStore& store, MakeOutput makeOutput, QObject* parent)
    : QObject(parent), m_store(store), m_makeOutput(std::move(makeOutput)), m_positionText(clockText(0)) {
    m_timer.setInterval(positionInterval);
    connect(&m_timer, &QTimer::timeout, this, &AudioPlayback::follow);
    for (const auto signal :
         {&MeetingStore::selectedIDChanged, &MeetingStore::meetingsChanged, &MeetingStore::busyChanged,
          &MeetingStore::recordingChanged, &MeetingStore::recordingIDChanged})
        connect(&store, signal, this, &AudioPlayback::load);
    connect(&store, &MeetingStore::meetingChanged, this, [this](const Uuid& id) {
        if (id == m_store.selectedID() || id == m_store.recordingID())
            load();
    });
    load();
}

AudioPlayback::~AudioPlayback() = default;

double AudioPlayback::duration() const {
    return present() ? static_cast<double>(m_frameCount) / m_sampleRate : 0;
}

QString AudioPlayback::durationText() const {
    return clockText(duration());
}

std::optional<AudioPlayback::Source> AudioPlayback::wanted() const {
    const auto* meeting = m_store.selected();
    if (!meeting || (m_store.recording() && m_store.showingLiveMeeting()))
        return {};
    const auto file = m_store.audioURL(*meeting);
    if (!file)
        return {};
    std::error_code error;
    Source source{meeting->id, *file, fs::file_size(*file, error), {}};
    source.changedAt = fs::last_write_time(*file, error);
    return source;
}

void AudioPlayback::load() {
    if (const bool recording = isRecording(m_store); recording != m_recording) {
        m_recording = recording;
        if (recording)
            pause();
        Q_EMIT enabledChanged();
    }
    auto source = wanted();
    if (source != m_source) {
        pause();
        const bool sameFile =
            source && m_source && source->meeting == m_source->meeting && source->file == m_source->file;
        m_source = std::move(source);
        open(sameFile ? m_position : 0);
    }
    indexTurns();
}

void AudioPlayback::open(double position) {
    const auto header = m_source ? WavHeader::read(m_source->file) : std::nullopt;
    const bool playable = header && header->isPlayable();
    m_frameCount = playable ? header->frameCount() : 0;
    m_sampleRate = playable ? header->sampleRate : 0;
    setProblem({});
    moveTo(std::min(position, duration()));
    m_peaks.clear();
    m_search.reset();
    if (present()) {
        m_search = std::make_unique<TaskScope>("Waveform");
        m_search->spawn(findPeaks(this, *m_source, m_search->stopToken()));
    }
    Q_EMIT peaksChanged();
    Q_EMIT loaded();
}

/// Meetings that were only passed by on the way through the library are not read.
Task<> AudioPlayback::findPeaks(QPointer<AudioPlayback> self, Source source, std::stop_token stop) {
    const auto waveform =
        co_await onWorker([file = source.file, folder = WaveformCache::folder(), stop]() -> std::optional<Waveform> {
            return stop.stop_requested() ? std::nullopt : WaveformCache::waveform(file, folder, stop);
        });
    if (!self || stop.stop_requested() || self->m_source != source || !waveform)
        co_return;
    self->m_peaks = QList<qreal>(waveform->peaks.begin(), waveform->peaks.end());
    Q_EMIT self->peaksChanged();
}

/// Turns stand in the order of their arrival, which is nearly, but not always, that of their starts.
void AudioPlayback::indexTurns() {
    m_turnStarts.clear();
    m_lastTurnEnd = 0;
    const auto* meeting = present() ? m_store.selected() : nullptr;
    if (meeting) {
        m_turnStarts.reserve(meeting->turns.size());
        for (const auto& turn : meeting->turns) {
            m_turnStarts.emplace_back(turn.start, static_cast<int>(m_turnStarts.size()));
            m_lastTurnEnd = std::max(m_lastTurnEnd, turn.end);
        }
        std::ranges::sort(m_turnStarts);
    }
    showTurn();
}

void AudioPlayback::toggle() {
    if (m_playing)
        pause();
    else
        play();
}

void AudioPlayback::play() {
    if (!present() || m_recording || m_playing)
        return;
    if (m_position >= duration())
        seek(0);
    start();
}

void AudioPlayback::start() {
    if (!m_output)
        m_output = m_makeOutput({.onEnded = [this] { ended(); },
                                 .onFailed = [this](const std::exception_ptr& failure) { failed(failure); }});
    setProblem({});
    setPlaying(true);
    m_output->play(m_source->file, m_position, m_rate);
}

void AudioPlayback::pause() {
    if (!m_playing)
        return;
    m_output->pause();
    setPlaying(false);
    moveTo(m_output->position());
}

void AudioPlayback::seek(double seconds) {
    if (!present() || !std::isfinite(seconds))
        return;
    moveTo(std::clamp(seconds, 0.0, duration()));
    if (m_playing)
        start();
    Q_EMIT jumped();
}

void AudioPlayback::skip(double seconds) {
    if (m_playing)
        follow();
    seek(m_position + seconds);
}

void AudioPlayback::setRate(double rate) {
    if (!(rate >= slowest && rate <= fastest) || rate == m_rate)
        return;
    if (m_playing)
        follow();
    m_rate = rate;
    if (m_playing)
        start();
    Q_EMIT rateChanged();
}

void AudioPlayback::playTurn(const QString& turn) {
    const auto id = Uuid::parse(toUtf8(turn));
    const auto* meeting = id && present() && !m_recording ? m_store.selected() : nullptr;
    if (!meeting)
        return;
    const auto found = std::ranges::find(meeting->turns, *id, &TranscriptTurn::id);
    if (found == meeting->turns.end())
        return;
    seek(found->start);
    if (!m_playing)
        start();
}

void AudioPlayback::follow() {
    moveTo(std::min(m_output->position(), duration()));
}

void AudioPlayback::ended() {
    setPlaying(false);
    moveTo(duration());
}

void AudioPlayback::failed(const std::exception_ptr& failure) {
    setPlaying(false);
    follow();
    setProblem(toQString(describe(failure)));
}

void AudioPlayback::moveTo(double position) {
    if (position != m_position) {
        m_position = position;
        Q_EMIT positionChanged();
        const auto text = position < duration() ? clockText(std::floor(position)) : durationText();
        if (std::exchange(m_positionText, text) != text)
            Q_EMIT positionTextChanged();
    }
    showTurn();
}

/// A turn lasts until the next one starts, the last one until it ends.
void AudioPlayback::showTurn() {
    int row = -1;
    const bool onTheWay = m_position > 0 && m_position < duration();
    if (m_playing || onTheWay) {
        const auto next =
            std::ranges::upper_bound(m_turnStarts, std::pair(m_position, std::numeric_limits<int>::max()));
        const bool over = next == m_turnStarts.end() && m_position >= m_lastTurnEnd;
        if (next != m_turnStarts.begin() && !over)
            row = std::prev(next)->second;
    }
    if (std::exchange(m_playingTurn, row) != row)
        Q_EMIT playingTurnChanged();
}

void AudioPlayback::setPlaying(bool playing) {
    if (playing == m_playing)
        return;
    m_playing = playing;
    if (playing)
        m_timer.start();
    else
        m_timer.stop();
    showTurn();
    Q_EMIT playingChanged();
}

void AudioPlayback::setProblem(const QString& problem) {
    if (std::exchange(m_problem, problem) != problem)
        Q_EMIT problemChanged();
}

} // namespace varnet
