#include "engine/Wire.h"

#include "engine/Failure.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace engine::wire {
namespace {

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

double milliseconds(double seconds) {
    return std::round(seconds * 1000) / 1000;
}

QJsonArray array(const std::vector<Word>& words) {
    QJsonArray result;
    for (const Word& word : words) {
        QJsonObject entry{{"word", QString::fromStdString(word.text)},
                          {"start", milliseconds(word.start)},
                          {"end", milliseconds(word.end)}};
        if (word.speaker)
            entry.insert("speaker", *word.speaker);
        result.append(entry);
    }
    return result;
}

QJsonValue typed(const QJsonObject& object, const char* key, QJsonValue::Type type, const QJsonValue& otherwise) {
    QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined())
        return otherwise;
    if (value.type() != type)
        throw Failure(std::string("The session's \"") + key + "\" has the wrong type.");
    return value;
}

} // namespace

QByteArray event(const char* type) {
    return compact({{"type", type}});
}

QByteArray error(const QString& message) {
    return compact({{"type", "error"}, {"error", QJsonObject{{"message", message}}}});
}

QByteArray transcript(const char* type, const std::vector<Word>& words, double audioProcessed) {
    return compact({{"type", type},
                    {"transcript", QString::fromStdString(joined(words))},
                    {"words", array(words)},
                    {"audio_processed", milliseconds(audioProcessed)}});
}

QByteArray answer(const std::vector<Word>& words, double duration) {
    return compact({{"text", QString::fromStdString(joined(words))},
                    {"words", array(words)},
                    {"duration", milliseconds(duration)}});
}

SessionSettings sessionSettings(const QJsonObject& session) {
    const double rate = typed(session, "sample_rate", QJsonValue::Double, sampleRate).toDouble();
    if (rate != sampleRate)
        throw Failure("Only a sample rate of 16000 is supported.");
    const double endpoint = typed(session, "endpointing_ms", QJsonValue::Double, 800).toDouble();
    if (!(endpoint >= 200 && endpoint <= 5000))
        throw Failure("The session's \"endpointing_ms\" must be from 200 to 5000.");
    typed(session, "word_timestamps", QJsonValue::Bool, true);
    return {endpoint / 1000, typed(session, "speaker_diarization", QJsonValue::Bool, true).toBool()};
}

} // namespace engine::wire
