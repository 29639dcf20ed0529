#include "Varnet/models/TrayState.h"

#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/EngineLine.h"
#include "Varnet/models/RecordingClock.h"
#include "Varnet/models/Text.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/store/MeetingStore.h"

#include <QGuiApplication>

namespace varnet {

namespace {

constexpr qsizetype longestTitle = 60; // letters; menus of the desktop take any width they are given

QString shortened(const QString& text) {
    auto line = text.simplified();
    if (line.size() <= longestTitle)
        return line;
    const auto kept = longestTitle - (line[longestTitle - 2].isHighSurrogate() ? 2 : 1);
    return line.first(kept).trimmed() + u'…';
}

const TrayRow divider{{}, false, true, true};

TrayRow words(QString text, bool visible = true) {
    return {std::move(text), false, visible};
}

} // namespace

TrayState::TrayState(const MeetingStore& store, const EngineSupervisor& engines, const RecordingClock& clock,
                     const AppCommands& commands, QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines), m_clock(clock), m_commands(commands), m_content(now()) {
    connect(&store, &MeetingStore::recordingChanged, this, &TrayState::update);
    connect(&store, &MeetingStore::selectedIDChanged, this, &TrayState::update);
    connect(&store, &MeetingStore::meetingsChanged, this, &TrayState::update);
    connect(&store, &MeetingStore::meetingChanged, this, &TrayState::update);
    connect(&store.levels(), &CaptureLevels::callMissingChanged, this, &TrayState::update);
    connect(&engines, &EngineSupervisor::speechChanged, this, &TrayState::update);
    connect(&engines, &EngineSupervisor::notesChanged, this, &TrayState::update);
    connect(&clock, &RecordingClock::changed, this, &TrayState::update);
    connect(&commands, &AppCommands::recordChanged, this, &TrayState::update);
}

TrayContent TrayState::now() const {
    const auto name = QGuiApplication::applicationDisplayName();
    const bool recording = m_store.recording();
    const bool missing = recording && m_store.levels().callMissing();
    const auto* meeting = recording ? m_store.selected() : nullptr;
    const auto notHeard = tr("Not hearing the call. Open %1 for details.").arg(name);
    const auto withClock = [this](const QString& text) {
        return m_clock.text().isEmpty() ? text : tr("%1 · %2").arg(text, m_clock.text());
    };

    TrayContent content;
    content.title = name;
    content.icon = missing     ? QStringLiteral("org.varnet.Varnet-call-missing-symbolic")
                   : recording ? QStringLiteral("org.varnet.Varnet-recording-symbolic")
                               : QStringLiteral("org.varnet.Varnet-tray-symbolic");
    content.tooltip = missing     ? withClock(tr("Recording, not hearing the call"))
                      : recording ? withClock(tr("Recording"))
                                  : tr("Not recording");
    content.rows = {{withClock(m_commands.recordTitle()), m_commands.recordEnabled()},
                    words(meeting ? shortened(toQString(meeting->title)) : QString(), meeting != nullptr),
                    words(notHeard, missing),
                    divider,
                    {tr("Open %1").arg(name)},
                    divider,
                    words(tr("Speech engine: %1").arg(EngineLine::of(m_engines.speech()).words)),
                    words(tr("Notes engine: %1").arg(EngineLine::of(m_engines.notes()).words)),
                    divider,
                    {tr("Settings")},
                    {tr("Quit %1").arg(name)}};
    return content;
}

void TrayState::update() {
    auto content = now();
    if (content == m_content)
        return;
    m_content = std::move(content);
    Q_EMIT changed();
}

} // namespace varnet
