#include "engine/Recognizer.h"

#include "engine/Failure.h"

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

namespace engine {
namespace {

// Each frame follows at most this many states: less work in noise, no more errors in speech.
constexpr char widestSearch[] = "5000";

/// "[NOISE]", "<sil>" and the like stand for no word.
bool isFiller(std::string_view word) {
    return word.empty() || word.front() == '<' || word.front() == '[' || word.starts_with("++");
}

/// "read(2)" is a second pronunciation of "read".
std::string spelling(std::string_view word) {
    return std::string(word.substr(0, word.find('(')));
}

} // namespace

void Recognizer::Release::operator()(ps_decoder_s* decoder) const {
    ps_free(decoder);
}

Recognizer::Recognizer(const EngineConfig& config) {
    err_set_logfp(nullptr);
    cmd_ln_t* options =
        cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", config.acousticModel.c_str(), "-lm", config.languageModel.c_str(),
                    "-dict", config.dictionary.c_str(), "-remove_silence", "no", "-maxhmmpf", widestSearch, nullptr);
    if (options)
        m_decoder.reset(ps_init(options));
    cmd_ln_free_r(options);
    if (!m_decoder)
        throw Failure("The speech model " + config.acousticModel.string() + " could not be loaded.");
    const feat_t* features = ps_get_feat(m_decoder.get());
    m_firstMean.resize(static_cast<std::size_t>(feat_cepsize(features)));
    cmn_live_get(features->cmn_struct, m_firstMean.data());
}

void Recognizer::reset() {
    end();
    cmn_live_set(ps_get_feat(m_decoder.get())->cmn_struct, m_firstMean.data());
}

void Recognizer::begin() {
    end();
    start();
}

void Recognizer::feed(std::span<const std::int16_t> samples) {
    if (m_inStretch && ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, FALSE) < 0)
        throw Failure("The recogniser failed on this audio.");
}

std::vector<Word> Recognizer::wordsSoFar() {
    return m_inStretch ? words() : std::vector<Word>{};
}

std::vector<Word> Recognizer::finish() {
    end();
    return words();
}

std::vector<Word> Recognizer::recognize(std::span<const std::int16_t> samples) {
    begin();
    if (ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, TRUE) < 0)
        throw Failure("The recogniser failed on this audio.");
    return finish();
}

void Recognizer::start() {
    // A new stream forgets the noise estimate and starts the count of frames anew.
    if (ps_start_stream(m_decoder.get()) != 0 || ps_start_utt(m_decoder.get()) != 0)
        throw Failure("The recogniser did not start.");
    m_inStretch = true;
}

void Recognizer::end() {
    if (m_inStretch)
        ps_end_utt(m_decoder.get());
    m_inStretch = false;
}

std::vector<Word> Recognizer::words() {
    std::vector<Word> result;
    for (ps_seg_t* segment = ps_seg_iter(m_decoder.get()); segment; segment = ps_seg_next(segment)) {
        const std::string_view word = ps_seg_word(segment);
        if (isFiller(word))
            continue;
        int first = 0, last = 0;
        ps_seg_frames(segment, &first, &last);
        result.push_back({spelling(word), first * frameSeconds, (last + 1) * frameSeconds, {}});
    }
    return result;
}

std::string joined(const std::vector<Word>& words) {
    std::string text;
    for (const Word& word : words) {
        if (!text.empty())
            text += ' ';
        text += word.text;
    }
    return text;
}

} // namespace engine
