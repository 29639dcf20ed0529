#include "Varnet/platform/linux/PlaybackReader.h"

#include "MeetingCore/base/Failures.h"

#include <SoundTouch.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>

namespace varnet {

namespace {

constexpr std::size_t chunkFrames = 4'096;

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

PlaybackReader::PlaybackReader(const std::filesystem::path& wav, double position, double rate)
    : m_path(wav), m_chunk(chunkFrames) {
    const auto header = WavHeader::read(wav);
    m_descriptor = ::open(wav.c_str(), O_RDONLY | O_CLOEXEC);
    if (m_descriptor < 0)
        throw FileFailure::reading(wav, errno);
    if (!header || !header->isMono16Bit || header->sampleRate == 0) {
        ::close(m_descriptor);
        throw Failure("The audio file is of a kind that cannot be played.");
    }
    m_header = *header;
    m_frame = std::min(static_cast<std::uint64_t>(std::llround(std::max(0.0, position) * m_header.sampleRate)),
                       m_header.frameCount());
    m_fadeFrames = m_frame == 0 ? 0 : static_cast<std::size_t>(fadeSeconds * m_header.sampleRate);
    if (rate != 1)
        m_stretcher = makeStretcher(m_header.sampleRate, rate);
}

PlaybackReader::~PlaybackReader() {
    ::close(m_descriptor);
}

std::size_t PlaybackReader::read(std::span<float> samples) {
    const std::size_t count = m_stretcher ? readStretched(samples) : readFile(samples);
    for (std::size_t i = 0; i < count && m_faded < m_fadeFrames; ++i)
        samples[i] *= static_cast<float>(++m_faded) / static_cast<float>(m_fadeFrames);
    return count;
}

std::size_t PlaybackReader::readFile(std::span<float> samples) {
    std::size_t done = 0;
    while (done < samples.size() && m_frame < m_header.frameCount()) {
        const std::size_t wanted = std::min(
            {samples.size() - done, m_chunk.size(), static_cast<std::size_t>(m_header.frameCount() - m_frame)});
        const auto offset = static_cast<off_t>(m_header.dataOffset + m_frame * sizeof(std::int16_t));
        const ssize_t bytes = ::pread(m_descriptor, m_chunk.data(), wanted * sizeof(std::int16_t), offset);
        if (bytes < 0 && errno == EINTR)
            continue;
        if (bytes < 0)
            throw FileFailure::reading(m_path, errno);
        const std::size_t count = static_cast<std::size_t>(bytes) / sizeof(std::int16_t);
        if (count == 0)
            throw Failure("The audio file ends too early, so playback has stopped.");
        for (std::size_t i = 0; i < count; ++i)
            samples[done + i] = static_cast<float>(m_chunk[i]) / 32'768;
        done += count;
        m_frame += count;
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
