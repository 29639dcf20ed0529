#include "Varnet/speech/SpeechClient.h"

#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/base/Uuid.h"
#include "Varnet/platform/FileBody.h"
#include "Varnet/platform/LoopbackHTTP.h"

namespace varnet::SpeechClient {

namespace {

constexpr std::chrono::seconds silence(1800);
constexpr std::int64_t largestAnswer = 64 * 1024 * 1024; // hundreds of hours of words

std::unique_ptr<FileBody> multipartBody(const QByteArray& boundary, std::filesystem::path file) {
    const auto field = [&](const QByteArray& rest) {
        return "--" + boundary + "\r\nContent-Disposition: form-data; name=" + rest + "\r\n";
    };
    const QByteArray before = field("\"response_format\"\r\n\r\nverbose_json") + field("\"diarization\"\r\n\r\ntrue") +
                              field("\"file\"; filename=\"audio.wav\"\r\nContent-Type: audio/wav\r\n");
    return std::make_unique<FileBody>(before, std::move(file), "\r\n--" + boundary + "--\r\n");
}

} // namespace

Task<SpeechResponse> transcribe(std::filesystem::path file, QUrl baseURL, std::stop_token stop) {
    const QByteArray boundary = QByteArray::fromStdString(Uuid::random().text());
    std::unique_ptr<FileBody> body = multipartBody(boundary, std::move(file));
    LoopbackHTTP client(largestAnswer);
    const QUrl url = appendingPath(std::move(baseURL), QStringLiteral("v1/audio/transcriptions"));
    const HTTPReply reply = co_await client.post(url, {"multipart/form-data; boundary=" + boundary}, std::move(body),
                                                 silence, std::move(stop));
    if (reply.status != 200) {
        const std::string words = validUtf8(reply.body) == reply.body ? reply.body : "No response";
        throw SpeechFailure("Transcription failed: " + words + ". Audio remains saved locally.");
    }
    co_return SpeechResponse::decode(reply.body);
}

} // namespace varnet::SpeechClient
