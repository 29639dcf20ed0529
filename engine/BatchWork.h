#pragma once

#include "engine/ModelPool.h"

#include <QByteArray>
#include <QIODevice>

#include <atomic>

namespace engine {

/// The answer to an HTTP request.
struct Answer {
    int status = 200;
    QByteArray body;
};

/// Recognises a WAV file from its start to its end and settles the speakers when all is heard. Takes as long as it
/// takes, about a tenth of the file's length; looks at `cancelled` often and then answers nothing of use. Any thread;
/// throws nothing: a file that can't be used is status 400, a failure of the engine 500.
Answer transcribeFile(ModelPool& models, QIODevice& file, bool speakers, const std::atomic<bool>& cancelled);

} // namespace engine
