#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class Settings;

/// Whether the welcome flow has been finished, and where it stands; both survive the program, under "OnboardingDone"
/// and "OnboardingStep". Main thread; the settings must outlive it.
class Onboarding : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes it")
    Q_PROPERTY(bool done READ done WRITE setDone NOTIFY doneChanged)
    Q_PROPERTY(bool showing READ showing NOTIFY doneChanged)
    Q_PROPERTY(int step READ step WRITE setStep NOTIFY stepChanged)

public:
    /// `wanted` false: the flow is never shown, whether it has been finished or not.
    explicit Onboarding(Settings& settings, bool wanted = true, QObject* parent = nullptr);

    bool done() const { return m_done; }
    void setDone(bool done); ///< not done begins the flow anew, at its first step

    /// The welcome flow stands in the window in place of everything else.
    bool showing() const { return m_wanted && !m_done; }

    int step() const { return m_step; } ///< from 0
    void setStep(int step);

Q_SIGNALS:
    void doneChanged();
    void stepChanged();

private:
    Settings& m_settings;
    bool m_wanted;
    bool m_done;
    int m_step;
};

} // namespace varnet
