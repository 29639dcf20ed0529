#include "Varnet/notes/NotesRequest.h"

#include "MeetingCore/base/JsonEncoding.h"
#include "Varnet/notes/NotesPrompts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace varnet::NotesRequest {

namespace {

std::string quoted(const std::string& text) {
    return encodeJson(text, JsonLayout::compact);
}

/// What the model reads of the sources: it has no use for times.
std::string dataOf(std::span<const NoteSource> sources) {
    JsonWriter writer(JsonLayout::compact, DraftBuilder::chunkLimit);
    writer.beginArray();
    for (const NoteSource& source : sources) {
        writer.element();
        writer.beginObject();
        writer.plainKey("id");
        writer.text(source.id);
        writer.plainKey("speaker");
        writer.text(source.speaker);
        writer.plainKey("text");
        writer.text(source.text);
        writer.endObject();
    }
    writer.endArray();
    return writer.finish();
}

/// The members of a point stand in the order in which the engine makes the model write them.
std::string schema(NotesPass pass) {
    const bool actions = pass == NotesPass::actions;
    const std::string kinds = actions ? R"("action")" : R"("summary","decision")";
    const std::string assignment = actions ? R"(["string","null"])" : R"("null")";
    const std::string maximum = actions ? "16" : "6";
    const std::string quote = R"({"type":"object","properties":{"source":{"type":"string"},"quote":{"type":"string"}},)"
                              R"("required":["source","quote"],"additionalProperties":false})";
    const std::string item = R"({"type":"object","properties":{"kind":{"type":"string","enum":[)" + kinds +
                             R"(]},"text":{"type":"string"},"owner":{"type":)" + assignment + R"(},"due":{"type":)" +
                             assignment + R"(},"evidence":{"type":"array","items":)" + quote +
                             R"(,"minItems":1,"maxItems":4}},)"
                             R"("required":["kind","text","owner","due","evidence"],"additionalProperties":false})";
    return R"({"type":"object","properties":{"items":{"type":"array","items":)" + item + R"(,"maxItems":)" + maximum +
           R"(}},"required":["items"],"additionalProperties":false})";
}

[[noreturn]] void failIncomplete() {
    throw NotesFailure(NotesFailure::Kind::incomplete);
}

} // namespace

std::string body(std::string_view instruction, const DraftBuilder::Step& step) {
    const std::string system = std::string(instruction).append("\n\n").append(passInstruction(step.pass));
    const std::string user = "Transcript sources (data only):\n" + dataOf(step.sources);
    return R"({"model":"qwen3.5-4b-q4km","stream":false,"temperature":0,"max_tokens":2200,)"
           R"("chat_template_kwargs":{"enable_thinking":false},)"
           R"("messages":[{"role":"system","content":)" +
           quoted(system) + R"(},{"role":"user","content":)" + quoted(user) +
           R"(}],"response_format":{"type":"json_schema","json_schema":{"name":"meeting_notes","strict":true,"schema":)" +
           schema(step.pass) + "}}}";
}

std::string contentOf(const std::string& answer) {
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(answer)).object();
    const QJsonValue choice = object[QLatin1String("choices")].toArray().at(0);
    const QJsonValue content = choice[QLatin1String("message")][QLatin1String("content")];
    if (choice[QLatin1String("finish_reason")].toString() != QLatin1String("stop") || !content.isString())
        failIncomplete();
    return content.toString().toStdString();
}

NoteResponse pointsIn(std::string_view content) {
    try {
        return NoteResponse::decode(content);
    } catch (const JsonFailure&) {
        failIncomplete();
    }
}

} // namespace varnet::NotesRequest
