#include "Varnet/models/Onboarding.h"

#include "Varnet/platform/Settings.h"

#include <QDir>

#include <algorithm>

namespace varnet {

namespace {

constexpr auto doneKey = "OnboardingDone";
constexpr auto stepKey = "OnboardingStep";

constexpr int lastStep = static_cast<int>(Onboarding::Step::engines);

QString written(const std::filesystem::path& folder) {
    const auto path = QString::fromStdString(folder.string());
    const auto home = QDir::homePath() + u'/';
    return path.startsWith(home) ? QStringLiteral("~/") + path.sliced(home.size()) : path;
}

} // namespace

Onboarding::Onboarding(Settings& settings, bool wanted, const std::filesystem::path& folder, QObject* parent)
    : QObject(parent),
      m_settings(settings),
      m_wanted(wanted),
      m_done(settings.flag(doneKey).value_or(false)),
      m_step(std::clamp(settings.number(stepKey).value_or(0), 0, lastStep)),
      m_folder(written(folder)) {}

void Onboarding::setDone(bool done) {
    if (done == m_done)
        return;
    if (!done)
        setStep(0);
    m_done = done;
    m_settings.setFlag(doneKey, done);
    Q_EMIT doneChanged();
}

void Onboarding::setStep(int step) {
    step = std::clamp(step, 0, lastStep);
    if (step == m_step)
        return;
    m_step = step;
    m_settings.setNumber(stepKey, step);
    Q_EMIT stepChanged();
}

int Onboarding::stepCount() const {
    return lastStep + 1;
}

QString Onboarding::progress() const {
    return tr("Step %1 of %2").arg(m_step + 1).arg(stepCount());
}

void Onboarding::next() {
    if (last())
        finish();
    else
        setStep(m_step + 1);
}

void Onboarding::back() {
    setStep(m_step - 1);
}

void Onboarding::finish() {
    setDone(true);
}

} // namespace varnet
