#pragma once

#include "Varnet/platform/AudioCapture.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Tone.h"

#include <QProcess>

#include <chrono>
#include <map>
#include <mutex>

namespace varnet::test {

using namespace std::chrono_literals;

/// Runs the event loop for as long as sound has to go on.
void listen(std::chrono::milliseconds duration);

/// A process of the session, by the variable that names it.
inline pid_t processID(const char* variable) {
    return static_cast<pid_t>(qEnvironmentVariableIntValue(variable));
}

/// Runs a command to its end and returns its output; a failure fails the test.
std::string run(const QString& program, const QStringList& arguments);

/// Processes of the session, ended with this object.
class Background {
public:
    explicit Background(const QString& program, const QStringList& arguments);
    ~Background();

private:
    QProcess m_process;
};

/// Writes a mono file.
std::filesystem::path writeSound(const TemporaryFolder& folder, const std::vector<float>& sound, int sampleRate);

/// Plays a tone into a device until it is destroyed.
class Tone {
public:
    Tone(const QString& device, double frequency);

private:
    TemporaryFolder m_folder;
    Background m_player;
};

/// A capture whose buffers are kept, as mono.
class CaptureLab {
public:
    struct Piece {
        std::int64_t time = 0;
        int sampleRate = 0;
        std::vector<float> samples;
    };

    void start(std::vector<CaptureSource> sources = {CaptureSource::microphone, CaptureSource::system});
    void stop() { await(m_capture->stop()); }

    std::vector<Piece> pieces(CaptureSource source) const;
    std::size_t count(CaptureSource source) const { return pieces(source).size(); }
    std::vector<std::string> notices() const;
    std::vector<std::string> errors() const;

    /// Amplitude of `frequency` in the last 100 ms of a source; 0 before there is as much.
    double hears(CaptureSource source, double frequency) const;

private:
    mutable std::mutex m_mutex;
    mutable std::map<CaptureSource, std::vector<Piece>> m_pieces;
    std::vector<std::string> m_notices;
    std::vector<std::string> m_errors;
    std::unique_ptr<AudioCapture> m_capture = makeAudioCapture(); ///< last: it calls back until it is gone
};

} // namespace varnet::test
