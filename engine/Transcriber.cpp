#include "engine/Transcriber.h"

#include <algorithm>
#include <array>
#include <utility>

namespace engine {
namespace {

constexpr int leadFrames = 25; // kept before the first speech of a stretch
constexpr int tailFrames = 25; // kept after its last
constexpr int startRun = 5;    // of the latest startWindow frames: speech has begun
constexpr int startWindow = 8;
constexpr int stretchPause = 40; // ends a stretch
constexpr int longStretch = 700; // from here on a shorter pause ends it
constexpr int longStretchPause = 12;
constexpr int longestStretch = 1200;   // ends it in any case
constexpr int longestUtterance = 2500; // ends with the stretch that reaches it
constexpr int speakerPause = 20;       // the speaker may change here
constexpr int partialEvery = 25;       // frames between two looks at the words so far
constexpr std::size_t feedSamples = 800;

std::size_t samplesOf(int frames) {
    return static_cast<std::size_t>(frames) * frameSamples;
}

} // namespace

Transcriber::Transcriber(Recognizer& recognizer, Options options, Callbacks callbacks)
    : m_recognizer(recognizer), m_options(options), m_callbacks(std::move(callbacks)) {}

double Transcriber::secondsProcessed() const {
    return m_frames * frameSeconds + static_cast<double>(m_rest.size()) / sampleRate;
}

void Transcriber::process(std::span<const std::int16_t> samples) {
    while (!samples.empty()) {
        const std::size_t taken = std::min(samples.size(), frameSamples - m_rest.size());
        m_rest.insert(m_rest.end(), samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(taken));
        samples = samples.subspan(taken);
        if (m_rest.size() < frameSamples)
            return;
        std::array<std::int16_t, frameSamples> frame;
        std::copy(m_rest.begin(), m_rest.end(), frame.begin());
        m_rest.clear();
        processFrame(frame);
    }
}

void Transcriber::flush() {
    if (m_inStretch)
        closeStretch();
    completeUtterance();
}

void Transcriber::processFrame(std::span<const std::int16_t, frameSamples> frame) {
    const bool speech = m_detector.isSpeech(frame);
    ++m_frames;
    m_stretch.insert(m_stretch.end(), frame.begin(), frame.end());
    m_speech.push_back(speech);
    if (m_inStretch)
        follow(speech);
    else
        waitForSpeech();
}

void Transcriber::waitForSpeech() {
    const int kept = static_cast<int>(m_speech.size());
    if (kept > leadFrames + startWindow) {
        m_stretch.erase(m_stretch.begin(), m_stretch.begin() + frameSamples);
        m_speech.erase(m_speech.begin());
    }
    const auto recent = m_speech.end() - std::min<std::ptrdiff_t>(startWindow, std::ssize(m_speech));
    if (std::count(recent, m_speech.end(), true) >= startRun) {
        m_inStretch = true;
        m_stretchStart = m_frames - static_cast<int>(m_speech.size());
        m_lastSpeech = m_frames;
        m_fed = 0;
        if (m_options.live)
            m_recognizer.begin();
    } else if (!m_utterance.empty() && (m_frames - m_lastSpeech) * frameSeconds >= m_options.endpointSeconds) {
        completeUtterance();
    }
}

void Transcriber::follow(bool speech) {
    if (speech)
        m_lastSpeech = m_frames;
    const int length = m_frames - m_stretchStart;
    const int pause = m_frames - m_lastSpeech;
    const bool ends = pause >= stretchPause || (length >= longStretch && pause >= longStretchPause);
    if (ends || length >= longestStretch) {
        closeStretch();
        return;
    }
    if (!m_options.live)
        return;
    if (m_stretch.size() - m_fed >= feedSamples)
        feed();
    if (length % partialEvery == 0)
        reportPartial();
}

void Transcriber::feed() {
    m_recognizer.feed(std::span(m_stretch).subspan(m_fed));
    m_fed = m_stretch.size();
}

std::vector<Word> Transcriber::recognized(std::size_t samples) {
    if (!m_options.live)
        return m_recognizer.recognize(std::span(m_stretch).first(samples));
    feed();
    return m_recognizer.finish();
}

void Transcriber::closeStretch() {
    m_inStretch = false;
    const int end = std::min(m_frames, m_lastSpeech + tailFrames) - m_stretchStart;
    std::vector<Word> words = recognized(samplesOf(end));
    for (Word& word : words) {
        word.start += m_stretchStart * frameSeconds;
        word.end += m_stretchStart * frameSeconds;
    }
    if (m_options.speakers && !words.empty())
        nameSpeakers(words);
    m_utterance.insert(m_utterance.end(), words.begin(), words.end());
    // What follows the stretch is the lead of the next one.
    m_stretch.erase(m_stretch.begin(), m_stretch.begin() + static_cast<std::ptrdiff_t>(samplesOf(end)));
    m_speech.erase(m_speech.begin(), m_speech.begin() + end);
    const bool tooLong =
        !m_utterance.empty() && m_frames * frameSeconds - m_utterance.front().start >= longestUtterance * frameSeconds;
    if (tooLong)
        completeUtterance();
    else if (m_options.live)
        reportPartial();
}

void Transcriber::completeUtterance() {
    m_reported.clear();
    if (m_utterance.empty())
        return;
    const std::vector<Word> words = std::exchange(m_utterance, {});
    m_callbacks.onUtterance(words, secondsProcessed());
}

void Transcriber::reportPartial() {
    std::vector<Word> words = m_utterance;
    for (Word word : m_recognizer.wordsSoFar()) {
        word.start += m_stretchStart * frameSeconds;
        word.end += m_stretchStart * frameSeconds;
        words.push_back(std::move(word));
    }
    if (words.empty() || words == m_reported)
        return;
    m_reported = words;
    m_callbacks.onPartial(m_reported, secondsProcessed());
}

std::vector<Transcriber::Piece> Transcriber::pieces() const {
    std::vector<Piece> result;
    int lastSpeech = -speakerPause;
    for (int frame = 0; frame < static_cast<int>(m_speech.size()); ++frame) {
        if (!m_speech[static_cast<std::size_t>(frame)])
            continue;
        if (result.empty() || frame - lastSpeech > speakerPause)
            result.push_back({frame, frame + 1});
        result.back().end = frame + 1;
        lastSpeech = frame;
    }
    return result;
}

const Transcriber::Piece& Transcriber::pieceOf(const std::vector<Piece>& pieces, const Word& word) {
    const int middle = static_cast<int>((word.start + word.end) / 2 / frameSeconds);
    const auto after = std::partition_point(pieces.begin(), pieces.end(),
                                            [middle](const Piece& piece) { return piece.end <= middle; });
    if (after == pieces.begin())
        return *after;
    const auto before = std::prev(after);
    return after == pieces.end() || middle - before->end < after->first - middle ? *before : *after;
}

void Transcriber::nameSpeakers(std::vector<Word>& words) {
    std::vector<Piece> found = pieces();
    for (Piece& piece : found) {
        const auto audio = std::span(m_stretch).subspan(samplesOf(piece.first), samplesOf(piece.end - piece.first));
        piece.first += m_stretchStart;
        piece.end += m_stretchStart;
        piece.speaker = m_clusters.assign(m_voices.measure(audio));
        m_history.push_back(piece);
    }
    for (Word& word : words)
        word.speaker = pieceOf(found, word).speaker;
}

std::vector<Word> Transcriber::withSettledSpeakers(std::vector<Word> words) const {
    if (m_history.empty())
        return words;
    std::vector<Piece> settled = m_history;
    const std::vector<int> speakers = m_clusters.reassign();
    for (std::size_t i = 0; i < settled.size(); ++i)
        settled[i].speaker = speakers[i];
    for (Word& word : words)
        word.speaker = pieceOf(settled, word).speaker;
    return words;
}

} // namespace engine
