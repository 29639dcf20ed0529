#include "Varnet/capture/AudioFileConverter.h"

#include "MeetingCore/audio/DurableWAV.h"
#include "Varnet/capture/AudioFailure.h"
#include "Varnet/capture/MediaModule.h"
#include "Varnet/platform/AudioFileReader.h"
#include "Varnet/platform/MonoResampler.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <iterator>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <utility>
#include <vector>

extern "C" {
#include <libavutil/frame.h>
}

namespace varnet {

namespace {

using std::chrono::steady_clock;

/// Enough to hand over seldom, and little enough to stay in the processor's cache.
constexpr std::int64_t samplesOfBatch = 1 << 16;
constexpr std::size_t batchesAhead = 2;
constexpr std::size_t samplesOfWrite = 1 << 15;
constexpr auto progressInterval = std::chrono::milliseconds(80);

struct Batch {
    std::vector<AudioFrame> frames; ///< none at the end
    double progress = 0;
    std::exception_ptr failure;
};

/// What is decoded ahead of the resampler. Either side waits for the other.
class BatchQueue {
public:
    /// False when nobody takes it any more.
    bool push(Batch batch) {
        std::vector<AudioFrame> spent; // freed behind the lock
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_closed || m_batches.size() < batchesAhead; });
        if (m_closed)
            return false;
        m_batches.push_back(std::move(batch));
        spent.swap(m_spent);
        lock.unlock();
        m_changed.notify_all();
        return true;
    }

    /// Takes the frames back that are done with: freeing them where they were made spares both threads a fight over
    /// the decoder's pool.
    Batch pop(std::vector<AudioFrame> spent) {
        std::unique_lock lock(m_mutex);
        std::ranges::move(spent, std::back_inserter(m_spent));
        m_changed.wait(lock, [this] { return !m_batches.empty(); });
        Batch batch = std::move(m_batches.front());
        m_batches.pop_front();
        m_changed.notify_all();
        return batch;
    }

    void close() {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Batch> m_batches;
    std::vector<AudioFrame> m_spent;
    bool m_closed = false;
};

/// Decodes on a thread of its own, beginning with a frame that is decoded already.
class Decoding {
public:
    Decoding(AudioFileReader& reader, AudioFrame first)
        : m_thread([this, &reader, frame = std::move(first)]() mutable { run(reader, std::move(frame)); }) {}
    Decoding(const Decoding&) = delete;
    Decoding& operator=(const Decoding&) = delete;
    ~Decoding() { m_queue.close(); }

    /// Takes the frames of the last batch back. Rethrows what decoding failed with.
    Batch next(std::vector<AudioFrame> spent) {
        Batch batch = m_queue.pop(std::move(spent));
        if (batch.failure)
            std::rethrow_exception(batch.failure);
        return batch;
    }

private:
    void run(AudioFileReader& reader, AudioFrame frame) {
        try {
            Batch batch;
            for (std::int64_t samples = 0; frame; frame = reader.next()) {
                samples += std::int64_t{frame->nb_samples} * frame->ch_layout.nb_channels;
                batch.frames.push_back(std::move(frame));
                if (samples < samplesOfBatch)
                    continue;
                batch.progress = reader.progress();
                if (!m_queue.push(std::exchange(batch, {})))
                    return;
                samples = 0;
            }
            if (batch.frames.empty() || m_queue.push(std::move(batch)))
                m_queue.push({});
        } catch (...) {
            m_queue.push({{}, 0, std::current_exception()});
        }
    }

    BatchQueue m_queue;
    std::jthread m_thread;
};

/// The new WAV file. Nothing durable is promised before `finish`.
class Target {
public:
    // O_TRUNC would empty the source when both are the same file.
    explicit Target(const std::filesystem::path& path)
        : m_file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600), path) {
        if (!m_file.isOpen())
            throw FileFailure::writing(path, errno);
    }

    void begin(const AudioFileReader& source) {
        struct stat status{};
        if (::fstat(m_file.get(), &status) != 0)
            throw FileFailure::writing(m_file.path(), errno);
        if (source.isFile(status))
            throw FileFailure::writing(m_file.path(), EEXIST);
        if (::fchmod(m_file.get(), 0600) != 0 || ::ftruncate(m_file.get(), 0) != 0)
            throw FileFailure::writing(m_file.path(), errno);
        m_file.writeAt(DurableWAV::header(0), 0);
    }

    void append(std::span<const std::int16_t> samples) {
        static_assert(std::endian::native == std::endian::little);
        const auto bytes = std::as_bytes(samples);
        if (bytes.size() > DurableWAV::maximumDataBytes - m_bytes)
            throw FileFailure::writing(m_file.path(), EFBIG);
        m_file.writeAt(bytes, DurableWAV::headerSize + m_bytes);
        m_bytes += bytes.size();
    }

    void finish() {
        m_file.writeAt(DurableWAV::header(m_bytes), 0);
        m_file.flush();
    }

private:
    FileDescriptor m_file;
    std::uint64_t m_bytes = 0;
};

/// Tells of progress now and then, and never of a step back.
class Progress {
public:
    explicit Progress(const std::function<void(double)>& told) : m_told(told) {}

    void report(double share) {
        const auto now = steady_clock::now();
        if (!m_told || now < m_next)
            return;
        m_next = now + progressInterval;
        m_share = std::max(m_share, share);
        m_told(m_share);
    }

private:
    const std::function<void(double)>& m_told;
    steady_clock::time_point m_next;
    double m_share = 0;
};

void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested())
        throw Cancelled();
}

void resample(AudioFileReader& reader, AudioFrame first, Target& target, Progress progress,
              const std::stop_token& stop) {
    Decoding decoding(reader, std::move(first));
    MonoResampler resampler;
    std::vector<std::int16_t> samples;
    samples.reserve(2 * samplesOfWrite);
    const auto write = [&] {
        target.append(samples);
        samples.clear();
    };
    Batch batch;
    for (;;) {
        batch = decoding.next(std::move(batch.frames));
        throwIfStopped(stop);
        if (batch.frames.empty())
            break;
        for (const AudioFrame& frame : batch.frames) {
            resampler.convert(*frame, samples);
            if (samples.size() >= samplesOfWrite)
                write();
        }
        progress.report(batch.progress);
    }
    resampler.finish(samples);
    write();
}

void convert(const std::filesystem::path& source, const std::filesystem::path& target,
             const std::function<void(double)>& onProgress, const std::stop_token& stop) {
    AudioFileReader reader(source, stop);
    const double declaredBytes = reader.declaredSeconds().value_or(0) * 2 * MonoResampler::outputRate;
    if (declaredBytes > static_cast<double>(DurableWAV::maximumDataBytes))
        throw FileFailure::writing(target, EFBIG);
    AudioFrame first = reader.next();
    Target file(target);
    file.begin(reader);
    if (first)
        resample(reader, std::move(first), file, Progress(onProgress), stop);
    throwIfStopped(stop);
    file.finish();
    if (onProgress)
        onProgress(1);
}

} // namespace

void convertFile(const std::filesystem::path& source, const std::filesystem::path& target,
                 const std::function<void(double)>& onProgress, const std::stop_token& stop) {
    try {
        convert(source, target, onProgress, stop);
    } catch (const UnreadableAudio& failure) {
        throw AudioFailure(AudioFailure::Kind::conversion, failure.what());
    }
}

} // namespace varnet

extern "C" [[gnu::visibility("default")]] const varnet::FileConversion varnetFileConversion = &varnet::convertFile;
