#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace varnet {

/// Draws the shape of a recording as bars, the part before the position in another colour, and asks to be elsewhere
/// when it is pressed or dragged. Times are in seconds. Main thread; `paint` runs on the render thread while the main
/// thread waits.
class WaveformItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<qreal> peaks READ peaks WRITE setPeaks NOTIFY peaksChanged FINAL)
    Q_PROPERTY(qreal position READ position WRITE setPosition NOTIFY positionChanged FINAL)
    Q_PROPERTY(qreal duration READ maximumValue WRITE setDuration NOTIFY durationChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor playedColor READ playedColor WRITE setPlayedColor NOTIFY colorsChanged FINAL)
    // What screen readers know a slider by.
    Q_PROPERTY(qreal value READ position WRITE seek NOTIFY positionChanged FINAL)
    Q_PROPERTY(qreal minimumValue READ minimumValue CONSTANT FINAL)
    Q_PROPERTY(qreal maximumValue READ maximumValue NOTIFY durationChanged FINAL)
    Q_PROPERTY(qreal stepSize READ stepSize CONSTANT FINAL)

public:
    explicit WaveformItem(QQuickItem* parent = nullptr);

    QList<qreal> peaks() const { return m_peaks; } ///< evenly over the recording, 0 to 1; without any, a line is drawn
    void setPeaks(const QList<qreal>& peaks);
    qreal position() const { return m_position; }
    void setPosition(qreal position);
    void setDuration(qreal duration);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);
    QColor playedColor() const { return m_playedColor; }
    void setPlayedColor(const QColor& color);

    qreal minimumValue() const { return 0; }
    qreal maximumValue() const { return m_duration; }
    qreal stepSize() const { return 5; }
    void seek(qreal position); ///< asks to be there

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void peaksChanged();
    void positionChanged();
    void durationChanged();
    void colorsChanged();
    void sought(qreal position); ///< the user wants this position

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    qreal head() const;
    template <class Change>
    void moveHead(Change change);
    void drag(const QMouseEvent& event, bool seeks);
    void measureBars();

    QList<qreal> m_peaks;
    qreal m_position = 0;
    std::optional<qreal> m_dragged; ///< where the pointer holds the head, seconds
    std::optional<qreal> m_sought;  ///< what this drag asked for last
    quint64 m_soughtAt = 0;         ///< when a drag last asked to be elsewhere, milliseconds
    qreal m_duration = 0;
    QColor m_color;
    QColor m_playedColor;
    qreal m_step = 3;     ///< from bar to bar, a whole number of the screen's pixels
    qreal m_barWidth = 2; ///< likewise
    QList<qreal> m_bars;  ///< the height of each bar, 0 to 1
};

} // namespace varnet
