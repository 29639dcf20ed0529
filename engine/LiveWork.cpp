#include "engine/LiveWork.h"

#include "engine/Failure.h"
#include "engine/Transcriber.h"

#include <algorithm>
#include <cstring>
#include <thread>

namespace engine {
namespace {

constexpr std::size_t sliceSamples = 1600; // how often cancellation is looked at

/// What a waiting block takes, so that many small ones are bounded too.
std::size_t cost(const QByteArray& block) {
    return static_cast<std::size_t>(block.size()) + 64;
}

} // namespace

LiveWork::LiveWork(wire::SessionSettings settings, Send send) : m_settings(settings), m_send(std::move(send)) {}

std::shared_ptr<LiveWork> LiveWork::start(ModelPool& models, std::atomic<int>& running, wire::SessionSettings settings,
                                          Send send) {
    std::shared_ptr<LiveWork> work(new LiveWork(settings, std::move(send)));
    ++running;
    std::thread([work, &models, &running] {
        work->run(models);
        --running;
    }).detach();
    return work;
}

bool LiveWork::append(const QByteArray& audio) {
    return audio.isEmpty() || wait(audio);
}

bool LiveWork::commit() {
    return wait({});
}

bool LiveWork::wait(const QByteArray& block) {
    const std::scoped_lock lock(m_lock);
    if (m_waitingBytes + cost(block) > maximumWaiting)
        return false;
    m_waitingBytes += cost(block);
    m_waiting.push_back(block);
    m_arrived.notify_one();
    return true;
}

void LiveWork::cancel() {
    const std::scoped_lock lock(m_lock);
    m_cancelled = true;
    m_arrived.notify_one();
}

std::optional<QByteArray> LiveWork::next() {
    std::unique_lock lock(m_lock);
    m_arrived.wait(lock, [this] { return m_cancelled || !m_waiting.empty(); });
    if (m_cancelled)
        return {};
    QByteArray block = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_waitingBytes -= cost(block);
    return block;
}

void LiveWork::recognise(Recognizer& recognizer) {
    Transcriber transcriber(recognizer, {m_settings.endpointSeconds, m_settings.speakers, true},
                            {[&](const std::vector<Word>& words, double seconds) {
                                 m_send(wire::transcript("transcription.delta", words, seconds), false);
                             },
                             [&](const std::vector<Word>& words, double seconds) {
                                 m_send(wire::transcript("transcription.completed", words, seconds), false);
                             }});
    std::vector<std::int16_t> samples;
    while (const std::optional<QByteArray> block = next()) {
        if (block->isEmpty()) {
            transcriber.flush();
            m_send(wire::event("input_audio_buffer.committed"), false);
            continue;
        }
        samples.resize(static_cast<std::size_t>(block->size()) / sizeof(std::int16_t));
        std::memcpy(samples.data(), block->constData(), samples.size() * sizeof(std::int16_t));
        for (std::size_t place = 0; place < samples.size() && !m_cancelled; place += sliceSamples)
            transcriber.process(std::span(samples).subspan(place, std::min(sliceSamples, samples.size() - place)));
    }
}

void LiveWork::run(ModelPool& models) {
    try {
        ModelPool::Loan loan = models.borrow();
        recognise(loan.recognizer());
    } catch (const std::exception& failure) {
        m_send(wire::error(QString::fromUtf8(failure.what())), true);
    }
}

} // namespace engine
