#pragma once

#include "engine/Words.h"

#include <QByteArray>
#include <QJsonObject>

#include <vector>

/// The JSON that goes over the wire.
namespace engine::wire {

/// {"type": type}
QByteArray event(const char* type);
/// {"type": "error", "error": {"message": ...}}
QByteArray error(const QString& message);
/// {"type", "transcript", "words", "audio_processed"}
QByteArray transcript(const char* type, const std::vector<Word>& words, double audioProcessed);
/// The answer to a file: {"text", "words", "duration"}
QByteArray answer(const std::vector<Word>& words, double duration);

/// What a client asks of a live session.
struct SessionSettings {
    double endpointSeconds = 0.8;
    bool speakers = true;
};

/// Reads the "session" object of "session.update". Throws Failure for another sample rate than 16000, an endpointing_ms
/// that is not within 200 to 5000, and values of a wrong type; what it does not know is ignored.
SessionSettings sessionSettings(const QJsonObject& session);

} // namespace engine::wire
