#include "Varnet/models/Onboarding.h"

#include "Varnet/platform/Settings.h"

#include <algorithm>

namespace varnet {

namespace {

constexpr auto doneKey = "OnboardingDone";
constexpr auto stepKey = "OnboardingStep";

} // namespace

Onboarding::Onboarding(Settings& settings, bool wanted, QObject* parent)
    : QObject(parent),
      m_settings(settings),
      m_wanted(wanted),
      m_done(settings.flag(doneKey).value_or(false)),
      m_step(std::max(0, settings.number(stepKey).value_or(0))) {}

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
    if (step == m_step)
        return;
    m_step = step;
    m_settings.setNumber(stepKey, step);
    Q_EMIT stepChanged();
}

} // namespace varnet
