#include "Varnet/platform/linux/PlaybackReader.h"

#include "MeetingCore/base/Failures.h"

#include <SoundTouch.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace varnet {

namespace {

std::unique_ptr<soundtouch::SoundTouch> makeStretcher(std::uint32_t sampleRate, double rate) {
    auto stretcher = std::make_unique<soundtouch::SoundTouch>();
    stretcher->setSampleRate(sampleRate);
    stretcher->setChannels(1);
    stretcher->setTempo(rate);
    // Short pieces, as speech wants them: with those for music the syllables echo.
    stretcher->setSetting(SETTING_SEQUENCE_MS, 40);
    stretcher->setSetting(SETTING_SEEKWINDOW_MS, 15);
    stretcher->setSetting(SETTING_OVERLAP_MS, 8);
    return stretcher;
}

} // namespace

PlaybackReader::PlaybackReader(const std::filesystem::path& wav, double position, double rate) : m_file(wav) {
    const auto header = WavHeader::read(m_file);
    if (!header || !header->isPlayable())
        throw Failure("The audio file is of a kind that cannot be played.");
    m_header = *header;
    m_frame = std::min(static_cast<std::uint64_t>(std::llround(std::max(0.0, position) * m_header.sampleRate)),
                       m_header.frameCount());
    m_fadeFrames = m_frame == 0 ? 0 : static_cast<std::size_t>(fadeSeconds * m_header.sampleRate);
    if (rate != 1)
        m_stretcher = makeStretcher(m_header.sampleRate, rate);
}

PlaybackReader::~PlaybackReader() = default;

std::size_t PlaybackReader::read(std::span<float> samples) {
    const std::size_t count = m_stretcher ? readStretched(samples) : readFile(samples);
    for (std::size_t i = 0; i < count && m_faded < m_fadeFrames; ++i)
        samples[i] *= static_cast<float>(++m_faded) / static_cast<float>(m_fadeFrames);
    return count;
}

std::size_t PlaybackReader::readFile(std::span<float> samples) {
    std::size_t done = 0;
    while (done < samples.size() && m_frame < m_header.frameCount()) {
        std::array<std::int16_t, 1'024> chunk{};
        const auto part = std::span(chunk).first(
            std::min({samples.size() - done, chunk.size(), static_cast<std::size_t>(m_header.frameCount() - m_frame)}));
        const std::uint64_t offset = m_header.dataOffset + m_frame * sizeof(std::int16_t);
        if (m_file.read(std::as_writable_bytes(part), offset) < part.size_bytes())
            throw Failure("The audio file ends too early, so playback has stopped.");
        for (const std::int16_t sample : part)
            samples[done++] = static_cast<float>(sample) / 32'768;
        m_frame += part.size();
    }
    return done;
}

std::size_t PlaybackReader::readStretched(std::span<float> samples) {
    std::size_t done = 0;
    while (done < samples.size()) {
        const auto room = static_cast<unsigned>(samples.size() - done);
        const std::size_t count = m_stretcher->receiveSamples(samples.data() + done, room);
        done += count;
        if (count > 0)
            continue;
        std::array<float, 1'024> piece{};
        if (const std::size_t fresh = readFile(piece); fresh > 0)
            m_stretcher->putSamples(piece.data(), static_cast<unsigned>(fresh));
        else if (!std::exchange(m_flushed, true))
            m_stretcher->flush();
        else
            break;
    }
    return done;
}

} // namespace varnet
