#include "Varnet/platform/linux/CaptureRing.h"

#include "MeetingCore/base/Assert.h"

#include <algorithm>

namespace varnet {

CaptureRing::CaptureRing(std::size_t sampleCapacity, std::size_t blockCapacity)
    : m_samples(sampleCapacity), m_entries(blockCapacity) {
    VARNET_ASSERT(sampleCapacity > 0 && blockCapacity > 0);
}

bool CaptureRing::push(CaptureFormat format, std::int64_t time, std::span<const float> samples) noexcept {
    const std::uint64_t written = m_written.load(std::memory_order_relaxed);
    const std::uint64_t read = m_read.load(std::memory_order_acquire);
    // A block lies in one piece: one that would be cut by the end starts at the beginning again.
    const std::size_t offset = m_end % m_samples.size();
    const std::uint64_t begin = offset + samples.size() > m_samples.size() ? m_end + m_samples.size() - offset : m_end;
    const std::uint64_t oldest = read == written ? begin : m_entries[read % m_entries.size()].begin;
    if (written - read == m_entries.size() || begin + samples.size() - oldest > m_samples.size()) {
        m_dropped.fetch_add(1, std::memory_order_relaxed);
        return false;
    }
    std::ranges::copy(samples, m_samples.begin() + static_cast<std::ptrdiff_t>(begin % m_samples.size()));
    m_entries[written % m_entries.size()] = {format, time, begin, samples.size()};
    m_end = begin + samples.size();
    m_written.store(written + 1, std::memory_order_release);
    return true;
}

std::optional<CaptureRing::Block> CaptureRing::front() const noexcept {
    const std::uint64_t read = m_read.load(std::memory_order_relaxed);
    if (m_written.load(std::memory_order_acquire) == read)
        return std::nullopt;
    const Entry& entry = m_entries[read % m_entries.size()];
    return Block{entry.format, entry.time, {m_samples.data() + entry.begin % m_samples.size(), entry.count}};
}

void CaptureRing::pop() noexcept {
    VARNET_ASSERT(m_written.load(std::memory_order_acquire) != m_read.load(std::memory_order_relaxed));
    m_read.fetch_add(1, std::memory_order_release);
}

} // namespace varnet
