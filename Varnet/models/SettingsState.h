#pragma once

#include "Varnet/async/TaskScope.h"
#include "Varnet/models/EngineLine.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <exception>
#include <filesystem>

namespace varnet {

class EngineSupervisor;
class MeetingStore;
class Onboarding;
class Settings;

/// What the settings show, and what can be chosen there. A choice holds at once; one that cannot be carried out changes
/// nothing and says so in `problem`. Main thread; the four objects must outlive it.
class SettingsState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool startsAtLogin READ startsAtLogin NOTIFY startsAtLoginChanged FINAL)
    Q_PROPERTY(QStringList captureModes READ captureModes CONSTANT FINAL)
    Q_PROPERTY(int captureMode READ captureMode NOTIFY captureModeChanged FINAL)
    Q_PROPERTY(bool recording READ recording NOTIFY recordingChanged FINAL)
    Q_PROPERTY(varnet::EngineLine speech READ speech NOTIFY speechChanged FINAL)
    Q_PROPERTY(varnet::EngineLine notes READ notes NOTIFY notesChanged FINAL)
    Q_PROPERTY(bool speechStartable READ speechStartable NOTIFY speechChanged FINAL)
    Q_PROPERTY(QString runtimeRoot READ runtimeRoot NOTIFY runtimeRootChanged FINAL)
    Q_PROPERTY(bool slow READ slow NOTIFY speechChanged FINAL)
    Q_PROPERTY(bool fastModeCrashed READ fastModeCrashed NOTIFY speechChanged FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)

public:
    SettingsState(MeetingStore& store, EngineSupervisor& engines, Settings& settings, Onboarding& onboarding,
                  QObject* parent = nullptr);

    bool startsAtLogin() const;
    QStringList captureModes() const; ///< as the entries of a picker
    int captureMode() const;          ///< the one in use, an index of those
    bool recording() const;           ///< neither the capture nor the speed can be chosen now
    EngineLine speech() const;
    EngineLine notes() const;
    bool speechStartable() const;                        ///< it neither answers nor is on its way
    QString runtimeRoot() const;                         ///< the folder of the engines, or that there is none
    bool slow() const;                                   ///< transcripts are made by the processor alone
    bool fastModeCrashed() const;                        ///< that is so because of a crash, and can be tried anew
    const QString& problem() const { return m_problem; } ///< of the last thing that was asked for; empty for none

    Q_INVOKABLE void setStartsAtLogin(bool starts);
    Q_INVOKABLE void chooseCaptureMode(int index); ///< refused while recording
    Q_INVOKABLE void startSpeech();
    Q_INVOKABLE void tryFastMode(); ///< refused while recording
    Q_INVOKABLE void chooseRuntimeRoot(const QUrl& folder);
    Q_INVOKABLE void runtimeChooserFailed(); ///< the window has nothing that picks a folder
    Q_INVOKABLE void showLogs();
    Q_INVOKABLE void showMeetings(); ///< their folder, in the desktop's file browser
    Q_INVOKABLE void showWelcome();  ///< from its first step
    Q_INVOKABLE void forgetProblem();

Q_SIGNALS:
    void startsAtLoginChanged();
    void captureModeChanged();
    void recordingChanged();
    void speechChanged();
    void notesChanged();
    void runtimeRootChanged();
    void problemChanged();

private:
    void setProblem(const QString& problem);
    void failed(const std::exception_ptr& failure);
    static Task<> browse(QPointer<SettingsState> self, std::filesystem::path folder);

    MeetingStore& m_store;
    EngineSupervisor& m_engines;
    Settings& m_settings;
    Onboarding& m_onboarding;
    QString m_problem;
    TaskScope m_tasks{"Settings"};
};

} // namespace varnet
