#include "Varnet/models/SoundCheck.h"

#include "MeetingCore/audio/CallAudioMonitor.h"
#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/audio/Levels.h"
#include "Varnet/async/Event.h"
#include "Varnet/async/MainThread.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"
#include "Varnet/models/Theme.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <fstream>
#include <numbers>
#include <span>

namespace varnet {

namespace {

constexpr std::chrono::milliseconds levelInterval{80};
constexpr int ticksOfSound = 3;   // a click is not a voice
constexpr float fall = 0.75F;     // of a meter, with each reading
constexpr float nothing = 0.001F; // the left end of the meter

float soundFrom(CaptureSource source) {
    const CallAudioMonitor limits(0);
    return source == CaptureSource::microphone ? limits.speechLevel : limits.soundLevel;
}

QString sentence(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const CaptureUnavailable& unavailable) {
        switch (unavailable.reason()) {
        case CaptureUnavailable::Reason::accessDenied:
            return SoundCheck::tr("The sound server doesn't let this app listen. Allow it in the privacy settings of "
                                  "your desktop and try again.");
        case CaptureUnavailable::Reason::noServer:
            return SoundCheck::tr("The sound server PipeWire is not running, so nothing can be heard or recorded. "
                                  "Start it and try again.");
        case CaptureUnavailable::Reason::noMicrophone:
            return SoundCheck::tr("No microphone was found. Connect one and try again.");
        case CaptureUnavailable::Reason::noOutput:
            return SoundCheck::tr("No loudspeaker or headphones were found, so there is no meeting audio. Connect one "
                                  "and try again.");
        case CaptureUnavailable::Reason::streamFailed:
            break;
        }
    } catch (...) {
    }
    return toQString(describe(failure));
}

/// Two soft notes of 0.7 s, a fourth apart, the second while the first dies away; 16 kHz.
std::vector<float> testSound() {
    constexpr double rate = 16'000, length = 0.7, attack = 0.02, decay = 0.18;
    std::vector<float> samples(static_cast<std::size_t>(rate * 1.2));
    for (const auto& [start, frequency] : {std::pair(0.0, 523.25), std::pair(0.3, 698.46)})
        for (auto i = static_cast<std::size_t>(start * rate); i < samples.size(); ++i) {
            const double time = static_cast<double>(i) / rate - start;
            if (time > length)
                break;
            const double loudness = std::min(time / attack, 1.0) * std::exp(-time / decay) * (1 - time / length);
            samples[i] += static_cast<float>(0.3 * loudness * std::sin(2 * std::numbers::pi * frequency * time));
        }
    return samples;
}

constexpr auto noTestFile = "The test sound could not be written to the folder for temporary files.";

void writeTestSound(const std::filesystem::path& path) {
    const auto samples = DurableWAV::pcm(testSound());
    const auto header = DurableWAV::header(samples.size());
    std::ofstream file(path, std::ios::binary);
    for (const std::span<const std::byte> part : {std::span<const std::byte>(header), std::span(samples)})
        file.write(reinterpret_cast<const char*>(part.data()), static_cast<std::streamsize>(part.size()));
    if (!file.flush())
        throw Failure(noTestFile);
}

} // namespace

/// One capture, from its start until it has stopped.
struct SoundCheck::Run {
    explicit Run(std::unique_ptr<AudioCapture> made) : capture(std::move(made)) {}

    std::unique_ptr<AudioCapture> capture;
    bool running = false;           ///< neither starting nor stopping
    bool unwanted = false;          ///< something else is to be listened to
    QString problem;                ///< why it did not start, or ended by itself
    Event over;                     ///< one of the two came about
    std::atomic<float> loudest = 0; ///< since it was last read

    void report(float level) {
        float seen = loudest;
        while (level > seen && !loudest.compare_exchange_weak(seen, level)) {
        }
    }

    static AudioCapture::Callbacks callbacks(const std::shared_ptr<Run>& run) {
        const auto end = [weak = std::weak_ptr(run)](const std::function<QString()>& problem) {
            postToMain([weak, problem] {
                if (const auto ended = weak.lock()) {
                    ended->problem = problem();
                    ended->over.set();
                }
            });
        };
        // The capture is the run's own, so the run is there for as long as it calls back.
        return {
            .onBuffer = [self = run.get()](const CaptureBuffer& buffer) { self->report(rmsLevel(buffer.samples)); },
            .onError = [end](const std::exception_ptr& failure) { end([failure] { return sentence(failure); }); },
            .onNotice =
                [end](const std::string&) {
                    end([] { return SoundCheck::tr("The device can't be heard any more. Connect it and try again."); });
                }};
    }
};

SoundCheck::SoundCheck(MakeCapture makeCapture, MakeOutput makeOutput, QObject* parent)
    : QObject(parent), m_makeCapture(std::move(makeCapture)), m_makeOutput(std::move(makeOutput)) {
    m_timer.setInterval(levelInterval);
    connect(&m_timer, &QTimer::timeout, this, &SoundCheck::readLevel);
}

SoundCheck::~SoundCheck() {
    // A start or a stop that is under way needs its capture until it returns; the task then lets go of it.
    if (m_run && m_run->running)
        m_run->capture.reset();
}

void SoundCheck::listenTo(std::optional<CaptureSource> source) {
    if (source == m_source)
        return;
    m_source = source;
    m_output.reset();
    m_folder.reset();
    if (m_run) {
        m_run->unwanted = true;
        m_run->over.set();
    }
    if (source)
        begin();
    else
        enter(State::off);
}

void SoundCheck::tryAgain() {
    if (failed())
        begin();
}

void SoundCheck::begin() {
    enter(State::starting);
    if (!std::exchange(m_working, true))
        m_tasks.spawn(work(this, m_tasks.stopToken()));
}

/// One capture after the other: the next starts when the last has stopped.
Task<> SoundCheck::work(SoundCheck* self, std::stop_token gone) {
    while (self->m_state == State::starting) {
        const auto run = self->m_run = std::make_shared<Run>(self->m_makeCapture());
        try {
            co_await run->capture->start({*self->m_source}, Run::callbacks(run));
            run->running = true;
        } catch (...) {
            run->problem = sentence(std::current_exception());
        }
        if (run->running && !run->unwanted && !gone.stop_requested()) {
            self->enter(State::listening);
            co_await run->over.wait(noTimeout, gone);
        }
        if (std::exchange(run->running, false) && run->capture)
            co_await stop(run.get());
        if (gone.stop_requested())
            co_return;
        self->m_run.reset();
        if (!run->unwanted)
            self->enter(State::failed, run->problem);
    }
    self->m_working = false;
}

Task<> SoundCheck::stop(Run* run) {
    try {
        co_await run->capture->stop();
    } catch (...) {
        qWarning("Sound check: %s", describe(std::current_exception()).c_str());
    }
}

void SoundCheck::enter(State state, const QString& problem) {
    m_state = state;
    m_problem = problem;
    if (state == State::listening) {
        m_soundTicks = 0;
        m_timer.start();
    } else if (state != State::heard) {
        m_timer.stop();
        setLevel(0);
    }
    Q_EMIT changed();
}

void SoundCheck::readLevel() {
    const float loudest = m_run->loudest.exchange(0);
    const float level = std::max(loudest, fall * m_level);
    setLevel(level < nothing ? 0 : level);
    if (m_state == State::listening && loudest >= soundFrom(*m_source) && ++m_soundTicks == ticksOfSound)
        enter(State::heard);
}

void SoundCheck::setLevel(float level) {
    if (level == m_level)
        return;
    m_level = level;
    Q_EMIT levelChanged();
}

double SoundCheck::level() const {
    return MeetingText::meter(m_level);
}

QString SoundCheck::words() const {
    const bool microphone = m_source == CaptureSource::microphone;
    switch (m_state) {
    case State::off:
        return tr("Not listening at the moment.");
    case State::starting:
        return tr("Getting ready to listen…");
    case State::listening:
        if (!m_problem.isEmpty())
            return m_problem;
        return microphone ? tr("Listening. Say something.") : tr("Listening. Nothing is playing yet.");
    case State::heard:
        return microphone ? tr("We can hear you.") : tr("Meeting audio works.");
    case State::failed:
        return m_problem;
    }
    return {};
}

int SoundCheck::tone() const {
    return static_cast<int>(heard() ? Theme::Tone::ok : m_problem.isEmpty() ? Theme::Tone::faint : Theme::Tone::rec);
}

std::filesystem::path SoundCheck::testFile() const {
    return std::filesystem::path(m_folder->path().toStdString()) / "test.wav";
}

void SoundCheck::playTestSound() {
    if (m_source != CaptureSource::system || failed())
        return;
    const auto complain = [this](const std::exception_ptr& failure) {
        m_problem = sentence(failure);
        Q_EMIT changed();
    };
    m_problem.clear();
    try {
        if (!m_output) {
            m_folder = std::make_unique<QTemporaryDir>();
            if (!m_folder->isValid())
                throw Failure(noTestFile);
            writeTestSound(testFile());
            m_output = m_makeOutput({.onEnded = [] {}, .onFailed = complain});
        }
        m_output->play(testFile(), 0, 1);
    } catch (...) {
        complain(std::current_exception());
    }
    Q_EMIT changed();
}

} // namespace varnet
