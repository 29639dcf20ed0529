#include "MeetingCore/audio/DurableWAV.h"

#include "MeetingCore/audio/ProcessorClones.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace varnet {

namespace {

using Kind = FileFailure::Kind;
using Header = std::array<std::byte, DurableWAV::headerSize>;

constexpr std::size_t riffSizeOffset = 4;
constexpr std::size_t formatOffset = 8;
constexpr std::size_t dataSizeOffset = 40;

void putNumber(Header& header, std::size_t offset, std::size_t size, std::uint32_t value) {
    for (std::size_t i = 0; i < size; ++i)
        header[offset + i] = static_cast<std::byte>(value >> (8 * i));
}

int openFile(const std::filesystem::path& path, int flags) {
    return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0600); });
}

/// Makes the file with its header under a passing name and then gives it its own, so that a kill in between never
/// leaves a file without a header.
FileDescriptor createWithHeader(const std::filesystem::path& path) {
    std::filesystem::path passing = path;
    passing += ".new";
    FileDescriptor file(openFile(passing, O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW), path);
    if (!file.isOpen())
        throw FileFailure(Kind::fileWriteUnknown, path, errno);
    try {
        file.writeAt(DurableWAV::header(0), 0);
        file.flush();
        if (::fchmod(file.get(), 0600) != 0 || ::rename(passing.c_str(), path.c_str()) != 0)
            throw FileFailure::writing(path, errno);
    } catch (const FileFailure& failure) {
        ::unlink(passing.c_str());
        throw FileFailure(Kind::fileWriteUnknown, path, failure.error());
    }
    return file;
}

bool isOurs(const Header& header) {
    const Header expected = DurableWAV::header(0);
    const auto equal = [&](std::size_t from, std::size_t to) {
        return std::equal(header.begin() + from, header.begin() + to, expected.begin() + from);
    };
    return equal(0, riffSizeOffset) && equal(formatOffset, dataSizeOffset);
}

/// Truncates the exact product with 32767 in single precision, where the loop is twice as wide. The rounded product can
/// only be wrong by having been rounded up to a whole number; then 32768 times the size, which is exact, less that
/// number is below the size. Sizes beyond 1.5 leave the 16 bits anyway.
VARNET_PROCESSOR_CLONES void convertToPCM(const float* samples, std::int16_t* target, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const float finite = std::isfinite(samples[i]) ? samples[i] : 0.0F;
        const float size = std::min(std::abs(finite), 1.5F);
        const auto product = static_cast<std::int32_t>(size * 32767.0F);
        const float room = size * 32768.0F - static_cast<float>(product);
        const std::int32_t truncated = product - (room < size ? 1 : 0);
        const std::int32_t signedValue = finite < 0 ? -truncated : truncated;
        target[i] = static_cast<std::int16_t>(std::min(std::max(signedValue, -32768), 32767));
    }
}

} // namespace

DurableWAV::DurableWAV(const std::filesystem::path& path) : m_file(createWithHeader(path)) {}

DurableWAV::~DurableWAV() {
    try {
        close();
    } catch (const FileFailure&) { // what reached the disk is there for `repair`
    }
}

void DurableWAV::append(std::span<const std::byte> data) {
    if (!m_file.isOpen() || data.size() % 2 != 0 || data.size() > maximumDataBytes - m_bytes)
        throw FileFailure(Kind::fileWriteOutOfSpace, m_file.path());
    m_file.writeAt(data, headerSize + m_bytes);
    m_bytes += data.size();
    if (m_bytes - m_checkpoint >= checkpointInterval) {
        updateHeader();
        m_checkpoint = m_bytes;
    }
}

void DurableWAV::updateHeader() {
    m_file.writeAt(header(m_bytes), 0);
    m_file.flush();
}

void DurableWAV::close() {
    if (!m_file.isOpen())
        return;
    updateHeader();
    m_file.close();
}

std::array<std::byte, DurableWAV::headerSize> DurableWAV::header(std::uint64_t dataBytes) {
    Header header{};
    std::memcpy(&header[0], "RIFF", 4);
    putNumber(header, riffSizeOffset, 4, static_cast<std::uint32_t>(dataBytes + 36));
    std::memcpy(&header[formatOffset], "WAVEfmt ", 8);
    putNumber(header, 16, 4, 16);     // size of the format chunk
    putNumber(header, 20, 2, 1);      // integer PCM
    putNumber(header, 22, 2, 1);      // channels
    putNumber(header, 24, 4, 16'000); // frames a second
    putNumber(header, 28, 4, 32'000); // bytes a second
    putNumber(header, 32, 2, 2);      // bytes a frame
    putNumber(header, 34, 2, 16);     // bits a sample
    std::memcpy(&header[36], "data", 4);
    putNumber(header, dataSizeOffset, 4, static_cast<std::uint32_t>(dataBytes));
    return header;
}

std::vector<std::byte> DurableWAV::pcm(std::span<const float> samples) {
    static_assert(std::endian::native == std::endian::little);
    std::vector<std::byte> bytes(samples.size() * sizeof(std::int16_t));
    convertToPCM(samples.data(), reinterpret_cast<std::int16_t*>(bytes.data()), samples.size());
    return bytes;
}

void DurableWAV::repair(const std::filesystem::path& path) {
    FileDescriptor file(openFile(path, O_RDWR), path);
    if (!file.isOpen())
        throw FileFailure::reading(path, errno);
    struct stat status{};
    if (::fstat(file.get(), &status) != 0)
        throw FileFailure(Kind::fileReadUnknown, path, errno);
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (!S_ISREG(status.st_mode) || size < headerSize || size - headerSize > maximumDataBytes)
        throw FileFailure(Kind::fileReadCorruptFile, path);
    Header header{};
    if (file.readAt(header, 0) != headerSize || !isOurs(header))
        throw FileFailure(Kind::fileReadCorruptFile, path);

    const std::uint64_t dataBytes = (size - headerSize) & ~std::uint64_t{1};
    if (uninterrupted([&] { return ::ftruncate(file.get(), static_cast<off_t>(headerSize + dataBytes)); }) != 0)
        throw FileFailure::writing(path, errno);
    file.writeAt(DurableWAV::header(dataBytes), 0);
    file.flush();
}

} // namespace varnet
