#pragma once

#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/calendar/CalendarEvents.h"
#include "MeetingCore/records/Meeting.h"
#include "MeetingCore/records/MeetingEncoder.h"
#include "MeetingCore/records/MeetingHistory.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "MeetingCore/records/MeetingTrash.h"
#include "MeetingCore/speech/SpeakerAttribution.h"
#include "MeetingCore/speech/SpeechEvent.h"
#include "MeetingCore/speech/SpeechResponse.h"
#include "Varnet/async/Task.h"
#include "Varnet/store/CaptureMode.h"
#include "Varnet/store/StoreParts.h"

#include <QObject>

#include <exception>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

class QUndoStack;

namespace varnet {

class AudioRecorder;
class CaptureLevels;
class LiveSpeech;
class LoopbackHTTP;
class SleepInhibitor;
class SystemAudioRecorder;
class TaskScope;
struct RecorderCallbacks;

/// A delete that can be undone.
struct DeletionReceipt {
    Uuid id;
    std::vector<Uuid> meetingIDs;

    bool operator==(const DeletionReceipt&) const = default;
};

/// Saved audio on its way to a transcript.
struct AudioWork {
    Uuid meetingID;
    bool imports = false;            ///< a new meeting from an outside file, else a transcript that is made again
    std::optional<double> converted; ///< share of the file that is converted, 0 to 1; absent once the engine has it
    bool cancelling = false;

    bool operator==(const AudioWork&) const = default;
};

/// How far a drafting of notes is.
struct NotesSteps {
    int current = 0; ///< from 1; 0 until the model works
    int count = 0;

    bool operator==(const NotesSteps&) const = default;
};

/// The library in memory and everything that changes it: the meetings, the selection, the running recording and the
/// one message that the user sees. It alone writes meetings. One object lives for the whole run, on the main thread.
///
/// Every field has a signal that comes after the field has changed. Texts are UTF-8. A refused operation does nothing.
class MeetingStore : public QObject {
    Q_OBJECT
public:
    /// Opens the library at `storageRoot`, or at its place in the application's data folder. Repairs the audio of
    /// recordings that a crash interrupted and marks them so: no other process may be using the library. A library that
    /// cannot be opened leaves a store without meetings whose `error` tells why.
    explicit MeetingStore(const std::optional<std::filesystem::path>& storageRoot = {}, StoreParts parts = {});

    /// A running capture ends; its audio stays as the last block left it.
    ~MeetingStore() override;

    CaptureMode captureMode() const { return m_captureMode; }           ///< what the next recording captures
    const std::vector<Meeting>& meetings() const { return m_meetings; } ///< newest first
    const std::optional<Uuid>& selectedID() const { return m_selectedID; }
    const std::set<Uuid>& librarySelection() const { return m_librarySelection; }
    bool recording() const { return m_recording; }                 ///< capture is running
    bool busy() const { return m_busy; }                           ///< a long operation holds the store
    bool runtimeReady() const { return m_runtimeReady; }           ///< the speech engine answered its health check
    bool notesRuntimeReady() const { return m_notesRuntimeReady; } ///< the notes engine answered its health check
    const std::optional<Date>& recordingStartedAt() const { return m_recordingStartedAt; }
    const std::string& partial() const { return m_partial; } ///< live text that is not final yet; never stored
    const std::vector<TranscriptTurn>& partialTurns() const { return m_partialTurns; } ///< the same as turns
    const std::optional<std::string>& error() const { return m_error; }                ///< the message of the banner
    const std::map<Uuid, std::string>& saveFailures() const { return m_saveFailures; } ///< why a last save failed
    /// The meeting being recorded, from the first moment of a start until a stop has ended.
    const std::optional<Uuid>& recordingID() const { return m_recordingID; }
    /// The meeting whose notes are being written.
    const std::optional<Uuid>& notesMeetingID() const { return m_notesMeetingID; }
    /// How far they are; empty while none are being written.
    const std::string& notesProgress() const { return m_notesProgress; }
    const NotesSteps& notesSteps() const { return m_notesSteps; } ///< the same in numbers
    /// The drafting that runs; a stop that is requested of it ends it at once, and the previous draft is kept.
    const std::optional<std::stop_source>& notesTask() const { return m_notesTask; }
    /// Why points of the meeting's present draft were removed; empty for one that an earlier run of the program made.
    std::vector<std::string> removedPoints(const Meeting& meeting) const;
    const std::vector<DeletedMeeting>& deletedMeetings() const { return m_deletedMeetings; } ///< last deleted first
    /// The last delete, for a while.
    const std::optional<DeletionReceipt>& pendingUndo() const { return m_pendingUndo; }
    const std::optional<AudioWork>& audioWork() const { return m_audioWork; } ///< of an import or a retry that runs
    CaptureLevels& levels() const { return *m_levels; }

    /// The meeting with that id, or null. Valid until the store is next called or control returns to the event loop.
    const Meeting* meeting(const Uuid& id) const;
    const Meeting* selected() const;
    const DeletedMeeting* deletedMeeting(const Uuid& id) const;                ///< the same for the deleted ones
    const std::filesystem::path& storageRoot() const { return m_storageRoot; } ///< also when it could not be opened
    /// Files of a recording are open: from a start on, before `recording`, until a stop has closed them.
    bool capturing() const { return m_recorder || m_systemRecorder; }
    bool writable() const { return m_repository && m_parts.writable; } ///< meetings can be made and changed
    bool showingLiveMeeting() const { return m_selectedID && m_selectedID == m_recordingID; }

    void setCaptureMode(CaptureMode mode);
    void setError(std::optional<std::string> error);
    /// A selected meeting outside the library's selection becomes that selection; none selected empties it.
    void setSelectedID(std::optional<Uuid> id);
    /// A single selected row is selected as the meeting on display; several or none leave that as it is.
    void setLibrarySelection(std::set<Uuid> ids);

    /// Asks the engine at its address and sets the field; at most two seconds.
    Task<> checkRuntime();
    Task<> checkNotesRuntime();

    /// Saves one meeting. Never throws: a failure is kept in `saveFailures` and the meeting in memory stays.
    void persist(Uuid id);

    /// Saves every meeting whose last save failed. Whether no failure remains.
    bool retrySaving();

    /// Saves a new meeting, puts it first and selects it, unless `select` is false. Throws Failure or FileFailure with
    /// nothing changed.
    Meeting create(const std::string& title, bool select = true);

    /// The edits change the meeting, if there is one with that id, and save it; also during a recording.
    void setNotes(const std::string& text); ///< of the selected meeting
    void setNotes(const std::string& text, Uuid id);
    /// White space at the ends is dropped; a blank title changes nothing.
    void setTitle(const std::string& title, Uuid id);
    /// The text as recognised takes an earlier correction back; anything else is the correction as given.
    void editTurn(Uuid turnID, const std::string& text, Uuid id);
    /// A blank name, or the label itself, removes the name of that label.
    void nameSpeaker(const std::string& label, const std::string& name, Uuid id);

    /// The meeting's main audio file; absent when it has none, the name has a folder part, or no such file exists.
    std::optional<std::filesystem::path> audioURL(const Meeting& meeting) const;

    /// Writes the selected meeting as a Markdown text; what fails shows in `error`. Nothing without a selection.
    void exportSelected(const std::filesystem::path& file);

    /// Stores a meeting that came from a calendar or an import and selects it. A meeting with the same source gets only
    /// the new source and imported content, after a version of it was kept. False when it was refused or not saved;
    /// `error` tells.
    bool saveImported(Meeting meeting);

    using CalendarLookup = std::function<std::optional<CalendarEvent>()>;
    /// How a start of a recording learns of the event that takes place now.
    void setCalendarLookup(CalendarLookup lookup);

    /// Selects the meeting of the event, which is made if there is none. Whether one is selected.
    bool useCalendarEvent(const CalendarEvent& event);

    /// Takes over what the calendar says now about meetings that came from it.
    void reconcileCalendar(const std::vector<CalendarEvent>& events);

    /// The versions of a meeting, read on the worker. Throws as MeetingRepository::history does, and Failure without
    /// storage.
    Task<MeetingHistory> history(Uuid id) const;

    /// Puts the wanted content of a version into its meeting; see MeetingRepository::restore. Throws Failure with
    /// nothing changed, also when the store is busy or the meeting has edits that cannot be saved.
    void restoreHistory(const MeetingHistoryEntry& entry, MeetingRestoreOptions options,
                        const MeetingRevisions& expected);

    /// Why these meetings cannot be deleted now, if so.
    std::optional<std::string> deletionBlocker(const std::set<Uuid>& ids) const;

    /// Moves meetings to the deleted ones, registers an undo for those that moved and gives them; `error` names the
    /// others. Each can be deleted that has no edits which cannot be saved. Another meeting is selected in place of a
    /// deleted one: the next below it, else the one above.
    std::set<Uuid> deleteMeetings(const std::set<Uuid>& ids, QUndoStack* undoManager = nullptr);

    /// Brings deleted meetings back, registers the opposite undo for those that came and gives them; `error` names the
    /// others. The selection stays, unless there was none.
    std::set<Uuid> restoreMeetings(const std::set<Uuid>& ids, QUndoStack* undoManager = nullptr);

    /// Erases deleted meetings for good; `error` names those that could not be.
    void eraseDeleted(const std::set<Uuid>& ids);

    /// The offer to undo the last delete is over; the delete itself can still be undone.
    void dismissPendingUndo();

    /// Starts a recording, into the selected calendar meeting if that has no audio yet, else into a new meeting. What
    /// fails shows in `error` and in the meeting's status: without a speech engine it records without a transcript,
    /// without the sound of the call it records the microphone. Refused while recording or busy, and without storage.
    Task<> startRecording();

    /// Closes the files, waits for the last words of the transcript and stores the final status. `captureError` is
    /// what ended the capture, if it ended by itself. Refused unless recording.
    Task<> stopRecording(std::exception_ptr captureError = {});

    /// Takes one event of the live session; dropped unless that meeting is being recorded. Its text is UTF-8 and its
    /// times are bounded, as SpeechEvent::decode leaves them.
    void receive(const SpeechEvent& event, Uuid id);

    /// Has the engine transcribe the meeting's audio again. The present transcript is kept as a version first; when it
    /// fails, `error` tells, and the transcript stays as it was. Refused while recording or busy, and without audio.
    Task<> retryTranscription(Uuid id);

    /// Makes a meeting from an audio file of any kind, titled as the file and selected at once, unless `select` is
    /// false: the audio is converted and transcribed. What fails shows in `error` and in the meeting's status; the file
    /// itself is never changed. Refused while recording or busy, and without storage.
    Task<> importAudio(std::filesystem::path file, bool select = true);

    /// Ends the import or the retry that runs, as a failure would: what there is by then is kept.
    void cancelAudioWork();

    /// Has the local notes engine draft the meeting's notes, or the selected meeting's if there is none with that id. A
    /// draft that was there is kept as a version; what fails, also that the transcript changed meanwhile, shows in
    /// `error` and leaves it. Returns at once. Refused while recording or busy, without turns, and without storage.
    void generateNotes(std::optional<Uuid> meetingID = {});

    /// Measures in the background who of a meeting's speakers is the local user, then names the speakers.
    void attributeSpeakers(Uuid id);

    /// Names the speakers by levels that were measured for the turns `basedOn`; nothing if the meeting's turns are
    /// others by now, or nobody new can be named.
    void applySpeakerNames(Uuid id, const std::vector<TurnLevels>& levels, const std::vector<TranscriptTurn>& basedOn);

Q_SIGNALS:
    void captureModeChanged();
    void meetingsChanged();                         ///< the list as a whole is another one
    void meetingInserted(varnet::Uuid id);          ///< at the front
    void meetingChanged(varnet::Uuid id);           ///< anything of that meeting, apart from appended turns
    void turnsAppended(varnet::Uuid id, int count); ///< its last `count` turns are new
    void selectedIDChanged();
    void librarySelectionChanged();
    void recordingChanged();
    void busyChanged();
    void runtimeReadyChanged();
    void notesRuntimeReadyChanged();
    void recordingStartedAtChanged();
    void partialChanged();
    void partialTurnsChanged();
    void errorChanged();
    void saveFailuresChanged();
    void recordingIDChanged();
    void notesMeetingIDChanged();
    void notesProgressChanged(); ///< also of the numbers
    void notesTaskChanged();
    void audioWorkChanged();
    void deletedMeetingsChanged();
    void pendingUndoChanged();

private:
    using Signal = void (MeetingStore::*)();

    /// What the model proposed for a draft and the transcript did not carry.
    struct RemovedPoints {
        Date createdAt; ///< of the draft
        std::vector<std::string> reasons;
    };

    template <class Field>
    void assign(Field& field, std::type_identity_t<Field> value, Signal changed);
    template <class Change>
    void update(Uuid id, Change change);
    Meeting* find(const Uuid& id);
    void open();
    void recoverInterrupted();
    const Meeting* meetingFrom(const MeetingSource& source) const;
    void takeOut(const std::set<Uuid>& moved, Date deletedAt);
    void withdrawUndo(const std::set<Uuid>& ids);
    void forgetDeleted(const std::set<Uuid>& ids, bool allWentWell);
    Task<> checkHealth(QUrl engine, bool MeetingStore::* field, Signal changed);

    // The recording flow. Coroutines hold a stop token of m_tasks and leave the store alone once it is stopped.
    bool hasBeenRecorded(const CalendarEvent& event) const;
    Uuid meetingToRecord();
    Task<> beginCapture(Uuid id);
    Task<> connectLive(Uuid id);
    Task<> startMicrophone(Uuid id);
    Task<> startMeetingCapture(Uuid id);
    void recordingStarted(Uuid id);
    Task<> abandonStart(std::optional<Uuid> id, std::exception_ptr cause);
    Task<bool> closeCapture();
    Task<bool> finishTranscript(bool captureIncomplete);
    RecorderCallbacks captureCallbacks(Uuid id, const std::shared_ptr<void>& recorder);
    bool capturesWith(const std::weak_ptr<void>& recorder, Uuid id) const;
    Task<> captureFailed(std::exception_ptr failure);
    static Task<> deliver(MeetingStore* store, std::stop_token gone, SpeechEvent event, Uuid id);
    void liveFailed(const std::weak_ptr<LiveSpeech>& session, const std::exception_ptr& failure, Uuid id);
    void closeLive();
    Task<> inhibitSleep(Uuid id);
    void appendFinalizedTurns(std::vector<TranscriptTurn> turns, Uuid id);
    void setRecordingID(std::optional<Uuid> id);
    void setStatus(Uuid id, std::string_view status);
    void clearPartial();

    // Saved audio on its way to a transcript.
    std::stop_token beginAudioWork(Uuid id, bool imports);
    void setConverted(std::optional<double> share);
    void endAudioWork();
    Task<> transcribeAgain(Uuid id, std::filesystem::path audio, std::stop_token stop);
    Task<> convertAndTranscribe(Uuid id, std::filesystem::path source, std::stop_token stop);
    Task<> measureSpeakers(Uuid id);

    // The drafting of notes.
    void setNotesProgress(std::string text, NotesSteps steps);
    Task<> draftNotes(Meeting meeting, std::stop_token stop);
    Task<> replaceDraft(Meeting meeting, std::stop_token stop);
    void endNotes();

    StoreParts m_parts;
    CalendarLookup m_calendarLookup;
    std::filesystem::path m_storageRoot;
    std::optional<MeetingRepository> m_repository; ///< absent when storage could not be opened

    CaptureMode m_captureMode = CaptureMode::meeting;
    std::vector<Meeting> m_meetings;
    std::optional<Uuid> m_selectedID;
    std::set<Uuid> m_librarySelection;
    bool m_recording = false;
    bool m_busy = false;
    bool m_runtimeReady = false;
    bool m_notesRuntimeReady = false;
    std::optional<Date> m_recordingStartedAt;
    std::string m_partial;
    std::vector<TranscriptTurn> m_partialTurns;
    std::optional<std::string> m_error;
    std::map<Uuid, std::string> m_saveFailures;
    std::optional<Uuid> m_recordingID;
    MeetingEncoder m_recordingEncoder; ///< a long recording is saved with every turn
    std::optional<Uuid> m_notesMeetingID;
    std::string m_notesProgress;
    NotesSteps m_notesSteps;
    std::optional<std::stop_source> m_notesTask;
    std::map<Uuid, RemovedPoints> m_removedPoints;
    std::optional<AudioWork> m_audioWork;
    std::stop_source m_audioWorkStop;
    std::vector<DeletedMeeting> m_deletedMeetings;
    std::optional<DeletionReceipt> m_pendingUndo;

    // Shared with the coroutines that wait for them, which may outlive the store.
    std::shared_ptr<AudioRecorder> m_recorder;
    std::shared_ptr<SystemAudioRecorder> m_systemRecorder;
    std::shared_ptr<LiveSpeech> m_live;
    std::shared_ptr<LoopbackHTTP> m_http;
    std::unique_ptr<SleepInhibitor> m_sleepInhibitor;
    std::unique_ptr<CaptureLevels> m_levels;
    std::unique_ptr<TaskScope> m_tasks;
};

template <class Field>
void MeetingStore::assign(Field& field, std::type_identity_t<Field> value, Signal changed) {
    if (field == value)
        return;
    field = std::move(value);
    (this->*changed)();
}

template <class Change>
void MeetingStore::update(Uuid id, Change change) {
    Meeting* meeting = find(id);
    if (!meeting)
        return;
    change(*meeting);
    persist(id);
    Q_EMIT meetingChanged(id);
}

} // namespace varnet
