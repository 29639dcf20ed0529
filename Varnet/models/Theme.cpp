#include "Varnet/models/Theme.h"

#include <QEvent>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>

#include <algorithm>
#include <utility>

namespace varnet {

namespace {

/// The size that an untouched desktop gives its interface font, in pixels at a scale of one.
constexpr qreal usualFontPixels = 13;

qreal desktopFontScale() {
    return std::clamp(QFontInfo(QGuiApplication::font()).pixelSize() / usualFontPixels, 1.0, 2.0);
}

} // namespace

Theme& Theme::shared() {
    static auto* const theme = new Theme; // lives as long as the process: engines of the last moment still read it
    return *theme;
}

Theme* Theme::create(QQmlEngine*, QJSEngine*) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

Theme::Theme() : m_ownFont(QGuiApplication::font()) {
    QCoreApplication::instance()->installEventFilter(this);
    connect(&m_preferences, &DesktopPreferences::changed, this, &Theme::follow);
}

void Theme::follow() {
    const auto before = std::exchange(m_followed, m_preferences.values());
    if (before.font != m_followed.font || before.textScale != m_followed.textScale) {
        auto font = m_followed.font.value_or(m_ownFont);
        if (font.pointSizeF() > 0)
            font.setPointSizeF(font.pointSizeF() * m_followed.textScale);
        QGuiApplication::setFont(font); // comes back as an event
    }
    if (before.colorScheme != m_followed.colorScheme || before.highContrast != m_followed.highContrast)
        Q_EMIT appearanceChanged();
    if (before.reducedMotion != m_followed.reducedMotion)
        Q_EMIT motionChanged();
}

void Theme::setAppearance(std::optional<Appearance> appearance) {
    m_appearance = appearance;
    Q_EMIT appearanceChanged();
}

bool Theme::dark() const {
    if (m_appearance)
        return *m_appearance == Appearance::dark;
    const auto scheme = m_preferences.values().colorScheme;
    if (scheme != DesktopPreferences::ColorScheme::none)
        return scheme == DesktopPreferences::ColorScheme::dark;
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < 0.5;
}

const Palette& Theme::palette() const {
    if (highContrast())
        return dark() ? Palette::highContrastDark() : Palette::highContrastLight();
    return dark() ? Palette::dark() : Palette::light();
}

QList<QColor> Theme::speakers() const {
    return {palette().speakers.begin(), palette().speakers.end()};
}

QList<QColor> Theme::tones() const {
    return {rec(), amber(), ok(), faint()};
}

const Theme::TypeScale& Theme::scale() const {
    if (m_scale)
        return *m_scale;
    const auto scale = desktopFontScale();
    const auto styled = [scale](int pixels, int lineHeight, QFont::Weight weight = QFont::Normal) {
        auto font = QGuiApplication::font();
        font.setPixelSize(qRound(pixels * scale));
        font.setWeight(weight);
        const qreal line = qRound(lineHeight * scale);
        // Rich text puts the base line at four fifths of a line of fixed height, plain text puts the letters in its
        // middle.
        const QFontMetricsF metrics(font);
        const auto gap = line - metrics.height();
        return TypeStyle{font, line, gap, metrics.ascent(), qRound(line * 4 / 5 - gap / 2 - metrics.ascent()) * 1.0};
    };
    return m_scale.emplace(styled(12, 16), styled(13, 20), styled(13, 20, QFont::DemiBold), styled(15, 24),
                           styled(18, 24, QFont::DemiBold), styled(24, 32, QFont::DemiBold), qRound(16 * scale) * 1.0);
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    if (watched == QCoreApplication::instance()) {
        if (event->type() == QEvent::ApplicationPaletteChange)
            Q_EMIT appearanceChanged();
        if (event->type() == QEvent::ApplicationFontChange) {
            m_scale.reset();
            Q_EMIT typeChanged();
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace varnet
