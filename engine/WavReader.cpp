#include "engine/WavReader.h"

#include "engine/Failure.h"
#include "engine/Words.h"

#include <QtEndian>

#include <algorithm>

namespace engine {
namespace {

constexpr quint16 pcm = 1;
constexpr quint16 extensible = 0xFFFE; // says its real format further behind; of 16-bit mono it is PCM in practice

[[noreturn]] void refuse() {
    throw Failure("The file is not a WAV file of 16-bit mono PCM at 16000 Hz");
}

} // namespace

WavReader::WavReader(QIODevice& device) : m_device(device) {
    const QByteArray riff = m_device.read(12);
    if (riff.size() < 12 || !riff.startsWith("RIFF") || !riff.endsWith("WAVE"))
        refuse();
    for (bool formatKnown = false;;) {
        const QByteArray chunk = m_device.read(8);
        if (chunk.size() < 8)
            refuse();
        const qint64 size = qFromLittleEndian<quint32>(chunk.constData() + 4);
        const qint64 next = m_device.pos() + size + size % 2;
        if (chunk.startsWith("data")) {
            if (!formatKnown)
                refuse();
            const qint64 rest = m_device.size() - m_device.pos();
            m_left = size == 0 ? rest : std::min(size, rest);
            return;
        }
        if (chunk.startsWith("fmt ")) {
            checkFormat(size);
            formatKnown = true;
        }
        if (!m_device.seek(next))
            refuse();
    }
}

void WavReader::checkFormat(qint64 size) {
    const QByteArray format = m_device.read(16);
    if (size < 16 || format.size() < 16)
        refuse();
    const auto field = [&](int offset) { return qFromLittleEndian<quint16>(format.constData() + offset); };
    const bool fits = (field(0) == pcm || field(0) == extensible) && field(2) == 1 &&
                      qFromLittleEndian<quint32>(format.constData() + 4) == sampleRate && field(14) == 16;
    if (!fits)
        refuse();
}

std::vector<std::int16_t> WavReader::read(std::size_t maximum) {
    const qint64 bytes = std::min<qint64>(m_left, static_cast<qint64>(maximum * sizeof(std::int16_t))) & ~qint64{1};
    std::vector<std::int16_t> samples(static_cast<std::size_t>(bytes) / sizeof(std::int16_t));
    if (bytes > 0 && m_device.read(reinterpret_cast<char*>(samples.data()), bytes) != bytes)
        throw Failure("The file can't be read");
    m_left -= bytes;
    return samples;
}

} // namespace engine
