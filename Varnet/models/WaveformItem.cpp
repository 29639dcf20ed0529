#include "Varnet/models/WaveformItem.h"

#include <QMouseEvent>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace varnet {

WaveformItem::WaveformItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAntialiasing(false);
}

void WaveformItem::setPeaks(const QList<qreal>& peaks) {
    if (peaks == m_peaks)
        return;
    m_peaks = peaks;
    measureBars();
    Q_EMIT peaksChanged();
}

void WaveformItem::setPosition(qreal position) {
    if (position == m_position)
        return;
    moveHead([&] { m_position = position; });
    Q_EMIT positionChanged();
}

void WaveformItem::setDuration(qreal duration) {
    if (duration == m_duration)
        return;
    m_duration = duration;
    update();
    Q_EMIT durationChanged();
}

void WaveformItem::setColor(const QColor& color) {
    m_color = color;
    update();
    Q_EMIT colorsChanged();
}

void WaveformItem::setPlayedColor(const QColor& color) {
    m_playedColor = color;
    update();
    Q_EMIT colorsChanged();
}

void WaveformItem::seek(qreal position) {
    Q_EMIT sought(std::clamp(position, 0.0, std::max(0.0, m_duration)));
}

void WaveformItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickPaintedItem::geometryChange(now, before);
    if (now.size() != before.size())
        measureBars();
}

void WaveformItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        measureBars();
}

void WaveformItem::mousePressEvent(QMouseEvent* event) {
    drag(*event, true);
}

void WaveformItem::mouseMoveEvent(QMouseEvent* event) {
    constexpr quint64 interval = 100; // every one makes a player that plays begin anew
    drag(*event, event->timestamp() - m_soughtAt >= interval);
}

void WaveformItem::mouseReleaseEvent(QMouseEvent* event) {
    drag(*event, true);
    mouseUngrabEvent();
}

void WaveformItem::mouseUngrabEvent() {
    moveHead([this] { m_dragged.reset(); });
    m_sought.reset();
}

void WaveformItem::drag(const QMouseEvent& event, bool seeks) {
    if (width() <= 0 || m_duration <= 0)
        return;
    const auto position = std::clamp(event.position().x() / width(), 0.0, 1.0) * m_duration;
    moveHead([&] { m_dragged = position; });
    if (!seeks || position == m_sought)
        return;
    m_sought = position;
    m_soughtAt = event.timestamp();
    seek(position);
}

/// Draws only what the head has passed.
template <class Change>
void WaveformItem::moveHead(Change change) {
    const auto before = head();
    change();
    const auto now = head();
    if (now == before)
        return;
    const auto left = static_cast<int>(std::min(now, before)), right = static_cast<int>(std::max(now, before));
    update(QRect(left - 4, 0, right - left + 8, static_cast<int>(std::ceil(height()))));
}

/// Where the played part ends, on a pixel of the screen: nothing is drawn anew for less.
qreal WaveformItem::head() const {
    const auto ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    return m_duration > 0
               ? std::round(std::clamp(m_dragged.value_or(m_position) / m_duration, 0.0, 1.0) * width() * ratio) / ratio
               : 0;
}

void WaveformItem::measureBars() {
    const auto ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    m_step = std::round(3 * ratio) / ratio;
    m_barWidth = std::round(2 * ratio) / ratio;
    m_bars.clear();
    const auto bars = static_cast<qsizetype>((width() + m_step - m_barWidth) / m_step);
    for (qsizetype bar = 0; bar < bars && !m_peaks.isEmpty(); ++bar) {
        const auto first = bar * m_peaks.size() / bars;
        const auto last = std::max(first + 1, (bar + 1) * m_peaks.size() / bars);
        m_bars << *std::max_element(m_peaks.begin() + first, m_peaks.begin() + last);
    }
    // A quiet recording has a shape too; silence stays silence.
    const auto loudest = m_bars.isEmpty() ? 1.0 : std::max(0.05, *std::ranges::max_element(m_bars));
    for (auto& bar : m_bars)
        bar = std::min(1.0, bar / loudest);
    update();
}

void WaveformItem::paint(QPainter* painter) {
    const auto played = head(), middle = std::round(height() / 2);
    // Without a shape, or where it is silent, a line remains.
    const auto part = [&](qreal left, qreal right, const QColor& color) {
        const QRectF shown(left, 0, right - left, height());
        painter->save();
        painter->setClipRect(shown, Qt::IntersectClip);
        if (m_bars.isEmpty())
            painter->fillRect(QRectF(left, middle - 1, right - left, 2), color);
        for (auto bar = static_cast<qsizetype>(left / m_step); bar < m_bars.size() && bar * m_step < right; ++bar) {
            const auto half = std::max(1.0, std::round(m_bars[bar] * (middle - 1)));
            painter->fillRect(QRectF(bar * m_step, middle - half, m_barWidth, 2 * half), color);
        }
        painter->restore();
    };
    part(0, played, m_playedColor);
    part(played, width(), m_color);
    painter->fillRect(QRectF(std::min(played, width() - 2), 0, 2, height()), m_playedColor);
}

} // namespace varnet
