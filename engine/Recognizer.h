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

/// Turns one stretch of speech after another into words, each in two passes: a narrow one while the audio comes in,
/// for the text that is shown at once, and an exact one over the whole stretch with its own mean normalisation, whose
/// words stay. Nothing is carried from one stretch to the next. One object belongs to one thread at a time.
class Recognizer {
public:
    /// Loads the model, about a third of a second and 200 MB. Throws Failure.
    explicit Recognizer(const EngineConfig& config);

    /// Starts a stretch; one that was begun and not finished is forgotten.
    void begin();
    /// Audio of the stretch for the first pass, in any portions.
    void feed(std::span<const std::int16_t> samples);
    /// What the first pass has so far, timed from the start of the stretch.
    std::vector<Word> wordsSoFar();
    /// Ends the stretch; `samples` is all of it. The exact words, timed from its start.
    std::vector<Word> finish(std::span<const std::int16_t> samples);

private:
    bool startPass(const char* search);
    void endPass();
    std::vector<Word> words();

    struct Release {
        void operator()(ps_decoder_s* decoder) const;
    };
    std::unique_ptr<ps_decoder_s, Release> m_decoder;
    bool m_inPass = false;
};

} // namespace engine
