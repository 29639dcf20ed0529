#pragma once

#include <QIODevice>

#include <cstdint>
#include <vector>

namespace engine {

/// Reads a WAV file of the engine's format: PCM, 16000 Hz, mono, 16-bit.
class WavReader {
public:
    /// Reads up to the first sample. `device` is open, seekable and lives longer. Throws Failure for anything that is
    /// not a WAV file of this format.
    explicit WavReader(QIODevice& device);

    /// The next samples, at most `maximum`; none at the end. A data size that a killed recorder left at zero or beyond
    /// the file's end means: up to the file's end. Throws Failure when the file can't be read.
    std::vector<std::int16_t> read(std::size_t maximum);

private:
    void checkFormat(qint64 size);

    QIODevice& m_device;
    qint64 m_left = 0; // bytes
};

} // namespace engine
