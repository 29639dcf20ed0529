#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <filesystem>

namespace varnet {

class Settings;

/// Whether the welcome flow has been finished, and where it stands; both survive the program, under "OnboardingDone"
/// and "OnboardingStep". Main thread; the settings must outlive it.
class Onboarding : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes it")
    Q_PROPERTY(bool done READ done WRITE setDone NOTIFY doneChanged FINAL)
    Q_PROPERTY(bool showing READ showing NOTIFY doneChanged FINAL)
    Q_PROPERTY(int step READ step WRITE setStep NOTIFY stepChanged FINAL)
    Q_PROPERTY(int stepCount READ stepCount CONSTANT FINAL)
    Q_PROPERTY(bool first READ first NOTIFY stepChanged FINAL)
    Q_PROPERTY(bool last READ last NOTIFY stepChanged FINAL)
    Q_PROPERTY(QString progress READ progress NOTIFY stepChanged FINAL)
    Q_PROPERTY(QString folder READ folder CONSTANT FINAL)

public:
    /// What the flow shows, in this order.
    enum class Step { about, microphone, meetingAudio, engines };
    Q_ENUM(Step)

    /// `wanted` false: the flow is never shown, whether it has been finished or not. `folder` is where meetings live.
    explicit Onboarding(Settings& settings, bool wanted = true, const std::filesystem::path& folder = {},
                        QObject* parent = nullptr);

    bool done() const { return m_done; }
    void setDone(bool done); ///< not done begins the flow anew, at its first step

    /// The welcome flow stands in the window in place of everything else.
    bool showing() const { return m_wanted && !m_done; }

    int step() const { return m_step; } ///< a Step
    void setStep(int step);             ///< to the nearest one that there is
    int stepCount() const;
    bool first() const { return m_step == 0; }
    bool last() const { return m_step == stepCount() - 1; }
    QString progress() const;                          ///< such as "Step 2 of 4"
    const QString& folder() const { return m_folder; } ///< as people write it, such as "~/Meetings"

    Q_INVOKABLE void next();   ///< finishes the flow at its last step
    Q_INVOKABLE void back();   ///< does nothing at the first step
    Q_INVOKABLE void finish(); ///< also with steps left

Q_SIGNALS:
    void doneChanged();
    void stepChanged();

private:
    Settings& m_settings;
    bool m_wanted;
    bool m_done;
    int m_step;
    QString m_folder;
};

} // namespace varnet
