#pragma once

#include "engine/EngineConfig.h"
#include "engine/Words.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct ps_decoder_s;

namespace engine {

/// Turns one stretch of speech after another into words: live, in portions, with the words so far at any time, or
/// whole. The normalisation of a live stretch starts from the ones before it, that of a whole one is its own and a
/// little better. One object belongs to one thread at a time.
class Recognizer {
public:
    /// Loads the model, about a third of a second and 100 MB. Throws Failure.
    explicit Recognizer(const EngineConfig& config);

    /// Forgets what was heard, for the next session.
    void reset();

    /// Starts a live stretch; one that was begun and not finished is forgotten.
    void begin();
    /// The next audio of the stretch.
    void feed(std::span<const std::int16_t> samples);
    /// What stands so far, timed from the start of the stretch; it may still change.
    std::vector<Word> wordsSoFar();
    /// Ends the stretch, after two more passes over what the first one left open: its words.
    std::vector<Word> finish();

    /// The words of a whole stretch.
    std::vector<Word> recognize(std::span<const std::int16_t> samples);

private:
    void start();
    void end();
    std::vector<Word> words();

    struct Release {
        void operator()(ps_decoder_s* decoder) const;
    };
    std::unique_ptr<ps_decoder_s, Release> m_decoder;
    std::vector<float> m_firstMean; // of the normalisation of live audio
    bool m_inStretch = false;
};

} // namespace engine
