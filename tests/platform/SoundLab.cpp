#include "tests/platform/SoundLab.h"

#include <QCoro/QCoroTask>
#include <QFile>

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

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

QString writeWAV(const QTemporaryDir& folder, const QString& name, const std::vector<std::vector<float>>& channels) {
    QByteArray data;
    const auto put = [&](auto value) { data.append(reinterpret_cast<const char*>(&value), sizeof value); };
    const auto channelCount = static_cast<std::uint16_t>(channels.size());
    const auto frameCount = static_cast<std::uint32_t>(channels.front().size());
    const std::uint32_t byteCount = frameCount * channelCount * 4;
    data += "RIFF";
    put(byteCount + 36);
    data += "WAVEfmt ";
    put(std::uint32_t{16});
    put(std::uint16_t{3}); // IEEE float
    put(channelCount);
    put(std::uint32_t{48'000});
    put(std::uint32_t{48'000u * channelCount * 4});
    put(static_cast<std::uint16_t>(channelCount * 4));
    put(std::uint16_t{32});
    data += "data";
    put(byteCount);
    for (std::uint32_t frame = 0; frame < frameCount; ++frame)
        for (const std::vector<float>& channel : channels)
            put(channel[frame]);
    const QString path = folder.filePath(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
    return path;
}

std::vector<float> tone(double frequency, double seconds, float amplitude, int sampleRate) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] =
            amplitude * static_cast<float>(std::sin(2 * std::numbers::pi * frequency * double(i) / sampleRate));
    return samples;
}

double amplitude(std::span<const float> samples, double frequency, int sampleRate) {
    std::complex<double> sum = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
        sum += double(samples[i]) * std::polar(1.0, -2 * std::numbers::pi * frequency * double(i) / sampleRate);
    return samples.empty() ? 0 : 2 * std::abs(sum) / double(samples.size());
}

Tone::Tone(const QString& device, double frequency, float amplitude)
    : m_player(QStringLiteral("pw-play"),
               {QStringLiteral("-P"), QStringLiteral("{ node.dont-reconnect = true }"), QStringLiteral("--target"),
                device, writeWAV(m_folder, QStringLiteral("tone.wav"), {tone(frequency, 60, amplitude)})}) {}

CaptureLab::CaptureLab() : m_capture(makeAudioCapture()) {}

AudioCapture::Callbacks CaptureLab::callbacks() {
    return {
        .onBuffer =
            [this](const CaptureBuffer& buffer) {
                const auto channels = static_cast<std::size_t>(buffer.format.channelCount);
                Piece piece{buffer.time, buffer.format.sampleRate, {}};
                for (std::size_t i = 0; i < buffer.samples.size(); i += channels)
                    piece.samples.push_back(buffer.samples[i]);
                const std::lock_guard lock(m_mutex);
                m_pieces[buffer.source].push_back(std::move(piece));
            },
        .onError =
            [this](std::exception_ptr error) {
                const std::lock_guard lock(m_mutex);
                m_errors.push_back(describe(error));
            },
        .onNotice =
            [this](std::string text) {
                const std::lock_guard lock(m_mutex);
                m_notices.push_back(std::move(text));
            },
    };
}

void CaptureLab::start(std::vector<CaptureSource> sources) {
    await(m_capture->start(std::move(sources), callbacks()));
}

void CaptureLab::stop() {
    await(m_capture->stop());
}

std::vector<CaptureLab::Piece> CaptureLab::pieces(CaptureSource source) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_pieces.find(source);
    return found == m_pieces.end() ? std::vector<Piece>{} : found->second;
}

std::size_t CaptureLab::count(CaptureSource source) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_pieces.find(source);
    return found == m_pieces.end() ? 0 : found->second.size();
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
    const std::lock_guard lock(m_mutex);
    const auto found = m_pieces.find(source);
    std::vector<float> last;
    int sampleRate = 48'000;
    if (found != m_pieces.end())
        for (auto piece = found->second.rbegin(); piece != found->second.rend() && last.size() < 4'800; ++piece) {
            last.insert(last.begin(), piece->samples.begin(), piece->samples.end());
            sampleRate = piece->sampleRate;
        }
    return last.size() < 4'800 ? 0 : amplitude(std::span(last).last(4'800), frequency, sampleRate);
}

} // namespace varnet::test
