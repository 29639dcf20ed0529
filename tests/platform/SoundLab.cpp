#include "tests/platform/SoundLab.h"

#include "tests/support/WavFile.h"

#include <QCoro/QCoroTask>

#include <gtest/gtest.h>

namespace varnet::test {

void listen(std::chrono::milliseconds duration) {
    eventually([] { return false; }, duration);
}

std::string run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(10'000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << program.toStdString() << " " << arguments.join(u' ').toStdString() << ": "
                                     << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().toStdString();
}

Background::Background(const QString& program, const QStringList& arguments) {
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(program, arguments);
    EXPECT_TRUE(m_process.waitForStarted()) << program.toStdString();
}

Background::~Background() {
    m_process.terminate();
    m_process.waitForFinished(3'000);
}

std::filesystem::path writeSound(const TemporaryFolder& folder, const std::vector<float>& sound, int sampleRate) {
    std::vector<std::int16_t> samples;
    for (const float sample : sound)
        samples.push_back(static_cast<std::int16_t>(std::lround(sample * 32'767)));
    const auto file = folder / "sound.wav";
    writeRecording(file, samples, static_cast<std::uint32_t>(sampleRate));
    return file;
}

Tone::Tone(const QString& device, double frequency)
    : m_player("pw-play",
               {"-P", "{ node.dont-reconnect = true }", "--target", device,
                QString::fromStdString(writeSound(m_folder, tone(frequency, 60, 0.5f, 48'000), 48'000).string())}) {}

void CaptureLab::start(std::vector<CaptureSource> sources) {
    AudioCapture::Callbacks callbacks;
    callbacks.onBuffer = [this](const CaptureBuffer& buffer) {
        Piece piece{buffer.time, buffer.format.sampleRate, {}};
        for (std::size_t i = 0; i < buffer.samples.size(); i += static_cast<std::size_t>(buffer.format.channelCount))
            piece.samples.push_back(buffer.samples[i]);
        const std::lock_guard lock(m_mutex);
        m_pieces[buffer.source].push_back(std::move(piece));
    };
    callbacks.onError = [this](const std::exception_ptr& error) {
        const std::lock_guard lock(m_mutex);
        m_errors.push_back(describe(error));
    };
    callbacks.onNotice = [this](std::string text) {
        const std::lock_guard lock(m_mutex);
        m_notices.push_back(std::move(text));
    };
    await(m_capture->start(std::move(sources), std::move(callbacks)));
}

std::vector<CaptureLab::Piece> CaptureLab::pieces(CaptureSource source) const {
    const std::lock_guard lock(m_mutex);
    return m_pieces[source];
}

std::vector<std::string> CaptureLab::notices() const {
    const std::lock_guard lock(m_mutex);
    return m_notices;
}

std::vector<std::string> CaptureLab::errors() const {
    const std::lock_guard lock(m_mutex);
    return m_errors;
}

double CaptureLab::hears(CaptureSource source, double frequency) const {
    std::vector<float> last;
    int sampleRate = 48'000;
    const auto all = pieces(source);
    for (auto piece = all.rbegin(); piece != all.rend() && last.size() < 4'800; ++piece) {
        last.insert(last.begin(), piece->samples.begin(), piece->samples.end());
        sampleRate = piece->sampleRate;
    }
    return last.size() < 4'800 ? 0 : std::abs(toneIn(std::span(last).last(4'800), frequency, sampleRate));
}

} // namespace varnet::test
