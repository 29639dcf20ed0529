#include "engine/Recognizer.h"

#include "engine/Failure.h"

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

namespace engine {
namespace {

constexpr char firstPass[] = "first";
constexpr char exactPass[] = "exact";

// States a frame that a pass follows. The first halves the work for a few more errors, the second costs none.
constexpr long firstPassWidth = 2000;
constexpr long firstPassWords = 8;
constexpr long exactPassWidth = 5000;

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
    cmd_ln_t* options = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", config.acousticModel.c_str(), "-dict",
                                    config.dictionary.c_str(), "-remove_silence", "no", "-dither", "yes", nullptr);
    if (!options)
        throw Failure("The speech model's settings were refused.");
    m_decoder.reset(ps_init(options));
    // A search keeps what the settings say at its making.
    cmd_ln_set_boolean_r(options, "-fwdflat", FALSE);
    cmd_ln_set_boolean_r(options, "-bestpath", FALSE);
    cmd_ln_set_int_r(options, "-maxhmmpf", firstPassWidth);
    cmd_ln_set_int_r(options, "-maxwpf", firstPassWords);
    bool loaded = m_decoder && ps_set_lm_file(m_decoder.get(), firstPass, config.languageModel.c_str()) == 0;
    if (loaded) {
        cmd_ln_set_boolean_r(options, "-fwdflat", TRUE);
        cmd_ln_set_boolean_r(options, "-bestpath", TRUE);
        cmd_ln_set_int_r(options, "-maxhmmpf", exactPassWidth);
        cmd_ln_set_int_r(options, "-maxwpf", -1);
        loaded = ps_set_lm(m_decoder.get(), exactPass, ps_get_lm(m_decoder.get(), firstPass)) == 0;
    }
    cmd_ln_free_r(options);
    if (!loaded)
        throw Failure("The speech model " + config.acousticModel.string() + " could not be loaded.");
}

void Recognizer::begin() {
    endPass();
    m_inPass = startPass(firstPass);
}

void Recognizer::feed(std::span<const std::int16_t> samples) {
    if (m_inPass)
        ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, FALSE);
}

std::vector<Word> Recognizer::wordsSoFar() {
    return m_inPass ? words() : std::vector<Word>{};
}

std::vector<Word> Recognizer::finish(std::span<const std::int16_t> samples) {
    endPass();
    m_inPass = startPass(exactPass);
    if (!m_inPass)
        throw Failure("The recogniser did not start.");
    const bool processed = ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, TRUE) >= 0;
    endPass();
    if (!processed)
        throw Failure("The recogniser failed on this audio.");
    return words();
}

bool Recognizer::startPass(const char* search) {
    // A new stream forgets the noise estimate and starts the count of frames anew.
    return ps_set_search(m_decoder.get(), search) == 0 && ps_start_stream(m_decoder.get()) == 0 &&
           ps_start_utt(m_decoder.get()) == 0;
}

void Recognizer::endPass() {
    if (m_inPass)
        ps_end_utt(m_decoder.get());
    m_inPass = false;
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
