#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/audio/WavHeader.h"
#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Failures.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <string_view>

using namespace varnet;

namespace {

/// A file in memory that can be opened by its path.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes) : m_descriptor(::memfd_create("fuzz.wav", MFD_CLOEXEC)) {
        VARNET_ASSERT(m_descriptor >= 0);
        VARNET_ASSERT(::pwrite(m_descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(m_descriptor); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

    std::string content() const {
        struct stat status{};
        VARNET_ASSERT(::fstat(m_descriptor, &status) == 0);
        std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
        VARNET_ASSERT(::pread(m_descriptor, bytes.data(), bytes.size(), 0) == status.st_size);
        return bytes;
    }

private:
    int m_descriptor;
};

bool repair(const MemoryFile& file) {
    try {
        DurableWAV::repair(file.path());
        return true;
    } catch (const FileFailure& failure) {
        VARNET_ASSERT(failure.kind() == FileFailure::Kind::fileReadCorruptFile);
        return false;
    }
}

/// What the header tells lies inside the file.
void checkHeader(const MemoryFile& file, std::size_t size) {
    const auto header = WavHeader::read(file.path());
    if (!header)
        return;
    VARNET_ASSERT(header->bytesPerFrame > 0);
    VARNET_ASSERT(header->dataBytes <= size && (header->dataBytes == 0 || header->dataOffset <= size));
    VARNET_ASSERT(header->dataBytes == 0 || header->dataOffset + header->dataBytes <= size);
}

} // namespace

/// A file is left as it was, or its audio is kept to the last whole sample under a header that tells its size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view before(reinterpret_cast<const char*>(data), size);
    const MemoryFile file(before);
    checkHeader(file, size);
    const bool repaired = repair(file);
    const std::string after = file.content();
    if (!repaired) {
        VARNET_ASSERT(after == before);
        return 0;
    }
    const std::size_t audio = (size - 44) / 2 * 2;
    VARNET_ASSERT(after.size() == 44 + audio && after.substr(44) == before.substr(44, audio));
    VARNET_ASSERT(after.substr(8, 32) == before.substr(8, 32)); // the format
    VARNET_ASSERT(
        WavHeader::read(file.path()) ==
        (WavHeader{
            .sampleRate = 16'000, .bytesPerFrame = 2, .dataOffset = 44, .dataBytes = audio, .isMono16Bit = true}));
    VARNET_ASSERT(repair(file) && file.content() == after);
    return 0;
}
