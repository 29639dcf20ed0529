#include "engine/BatchWork.h"

#include "engine/Failure.h"
#include "engine/Transcriber.h"
#include "engine/WavReader.h"
#include "engine/Wire.h"

namespace engine {
namespace {

constexpr std::size_t blockSamples = 1600;

Answer transcribe(ModelPool& models, WavReader& audio, bool speakers, const std::atomic<bool>& cancelled) {
    if (cancelled)
        return {};
    ModelPool::Loan loan = models.borrow();
    std::vector<Word> words;
    const auto collect = [&](const std::vector<Word>& utterance, double) {
        words.insert(words.end(), utterance.begin(), utterance.end());
    };
    Transcriber transcriber(loan.recognizer(), {.speakers = speakers, .live = false}, {{}, collect});
    for (auto block = audio.read(blockSamples); !block.empty() && !cancelled; block = audio.read(blockSamples))
        transcriber.process(block);
    if (cancelled)
        return {};
    transcriber.flush();
    return {200, wire::answer(transcriber.withSettledSpeakers(std::move(words)), transcriber.secondsProcessed())};
}

} // namespace

Answer transcribeFile(ModelPool& models, QIODevice& file, bool speakers, const std::atomic<bool>& cancelled) {
    try {
        if (!file.seek(0))
            return {500, "The engine could not read the file back"};
        WavReader audio(file);
        try {
            return transcribe(models, audio, speakers, cancelled);
        } catch (const std::exception& failure) {
            return {500, failure.what()};
        }
    } catch (const Failure& failure) {
        return {400, failure.what()};
    }
}

} // namespace engine
