#pragma once

#include "engine/Recognizer.h"
#include "engine/SpeakerClusters.h"
#include "engine/SpeechDetector.h"
#include "engine/VoicePrint.h"
#include "engine/Words.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace engine {

/// Turns a session's audio into utterances of timed words with speakers. The audio is cut at pauses into stretches, a
/// stretch is recognised as soon as its pause is heard, and an utterance ends at a pause of `endpointSeconds`, or after
/// about half a minute at the next shorter pause. Inside a stretch the speaker may change at any pause of 0.2 s. The
/// result depends on the audio alone, not on the portions in which it comes. Belongs to one thread at a time.
class Transcriber {
public:
    struct Options {
        double endpointSeconds = 0.8; ///< 0.2 to 5
        bool speakers = true;
        bool live = true; ///< recognise as the audio comes in and call onPartial; else each stretch as a whole
    };
    struct Callbacks {
        using Take = std::function<void(const std::vector<Word>& words, double secondsProcessed)>;
        Take onPartial;   ///< the utterance so far, when it has changed
        Take onUtterance; ///< never empty
    };

    /// `recognizer` must live longer.
    Transcriber(Recognizer& recognizer, Options options, Callbacks callbacks);

    /// The next audio, in any portions. Calls back. Throws Failure.
    void process(std::span<const std::int16_t> samples);
    /// The audio has ended: the utterance that is open is completed. More audio may follow.
    void flush();

    /// Seconds of audio taken in.
    double secondsProcessed() const;
    /// The words of all utterances with the speakers that are the best, now that everything has been heard.
    std::vector<Word> withSettledSpeakers(std::vector<Word> words) const;

private:
    struct Piece {
        int first = 0, end = 0; ///< frames, counted from the start of the audio
        int speaker = 0;
    };

    void processFrame(std::span<const std::int16_t, frameSamples> frame);
    void waitForSpeech();
    void follow(bool speech);
    void feed();
    void closeStretch();
    std::vector<Word> recognized(std::size_t samples);
    void completeUtterance();
    void reportPartial();
    std::vector<Piece> pieces() const;
    static const Piece& pieceOf(const std::vector<Piece>& pieces, const Word& word);
    void nameSpeakers(std::vector<Word>& words);

    Recognizer& m_recognizer;
    Options m_options;
    Callbacks m_callbacks;
    SpeechDetector m_detector;
    VoiceAnalyzer m_voices;
    SpeakerClusters m_clusters;

    std::vector<std::int16_t> m_rest; // less than a frame
    int m_frames = 0;                 // whole frames taken in
    bool m_inStretch = false;
    int m_stretchStart = 0;              // frame
    int m_lastSpeech = 0;                // frame
    std::vector<std::int16_t> m_stretch; // audio of the stretch, or the latest audio while waiting for one
    std::vector<bool> m_speech;          // a flag for each frame of m_stretch
    std::size_t m_fed = 0;               // samples of m_stretch that the recogniser has
    std::vector<Word> m_utterance;       // words of the stretches before this one
    std::vector<Word> m_reported;        // the latest partial
    std::vector<Piece> m_history;        // all pieces in the order of m_clusters
};

} // namespace engine
