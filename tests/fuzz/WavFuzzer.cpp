#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/audio/WavHeader.h"
#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

using namespace varnet;

namespace {

bool repair(const std::filesystem::path& file) {
    try {
        DurableWAV::repair(file);
        return true;
    } catch (const FileFailure& failure) {
        VARNET_ASSERT(failure.kind() == FileFailure::Kind::fileReadCorruptFile);
        return false;
    }
}

/// What the header tells lies inside the file.
void checkHeader(const std::filesystem::path& file, std::size_t size) {
    const auto header = WavHeader::read(file);
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
    static const test::TemporaryFolder folder("/dev/shm");
    const auto file = folder / "fuzz.wav";
    std::ofstream(file, std::ios::binary) << before;
    checkHeader(file, size);
    const bool repaired = repair(file);
    const std::string after = readFile(file);
    if (!repaired) {
        VARNET_ASSERT(after == before);
        return 0;
    }
    const std::size_t audio = (size - 44) / 2 * 2;
    VARNET_ASSERT(after.size() == 44 + audio && after.substr(44) == before.substr(44, audio));
    VARNET_ASSERT(after.substr(8, 32) == before.substr(8, 32)); // the format
    VARNET_ASSERT(test::declaredBytes(file) == audio);
    VARNET_ASSERT(repair(file) && readFile(file) == after);
    return 0;
}
