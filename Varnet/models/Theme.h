#pragma once

#include "Varnet/models/Palette.h"
#include "Varnet/platform/DesktopPreferences.h"

#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

class QJSEngine;
class QQmlEngine;

namespace varnet {

/// One step of the type scale.
struct TypeStyle {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QFont font MEMBER font)
    Q_PROPERTY(qreal lineHeight MEMBER lineHeight)
    Q_PROPERTY(qreal lineGap MEMBER lineGap)
    Q_PROPERTY(qreal ascent MEMBER ascent)
    Q_PROPERTY(qreal richTextDrop MEMBER richTextDrop)

public:
    QFont font;
    qreal lineHeight = 0;   ///< pixels
    qreal lineGap = 0;      ///< pixels of the line that the letters leave free
    qreal ascent = 0;       ///< pixels above the base line; letters of another font can have more
    qreal richTextDrop = 0; ///< pixels that rich text in such lines stands lower than plain text

    bool operator==(const TypeStyle&) const = default;
};

/// The one place that names colours, type, spacing, radii and motion; QML reads everything from here. It follows what
/// the desktop's user prefers, as that changes: light or dark (where the desktop does not say, a dark window ground of
/// the toolkit's palette means dark), high contrast, the interface font with its size and scale, and stillness. The
/// font becomes the application's own, so that the toolkit's parts have it too. Main thread.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY appearanceChanged)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY appearanceChanged)
    Q_PROPERTY(QColor window READ window NOTIFY appearanceChanged)
    Q_PROPERTY(QColor surface READ surface NOTIFY appearanceChanged)
    Q_PROPERTY(QColor raised READ raised NOTIFY appearanceChanged)
    Q_PROPERTY(QColor selection READ selection NOTIFY appearanceChanged)
    Q_PROPERTY(QColor line READ line NOTIFY appearanceChanged)
    Q_PROPERTY(QColor track READ track NOTIFY appearanceChanged)
    Q_PROPERTY(QColor text READ text NOTIFY appearanceChanged)
    Q_PROPERTY(QColor secondary READ secondary NOTIFY appearanceChanged)
    Q_PROPERTY(QColor faint READ faint NOTIFY appearanceChanged)
    Q_PROPERTY(QColor accent READ accent NOTIFY appearanceChanged)
    Q_PROPERTY(QColor rec READ rec NOTIFY appearanceChanged)
    Q_PROPERTY(QColor amber READ amber NOTIFY appearanceChanged)
    Q_PROPERTY(QColor ok READ ok NOTIFY appearanceChanged)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY appearanceChanged)
    Q_PROPERTY(QColor onRec READ onRec NOTIFY appearanceChanged)
    Q_PROPERTY(QList<QColor> speakers READ speakers NOTIFY appearanceChanged)
    Q_PROPERTY(QList<QColor> tones READ tones NOTIFY appearanceChanged)
    Q_PROPERTY(varnet::TypeStyle caption READ caption NOTIFY typeChanged)
    Q_PROPERTY(varnet::TypeStyle body READ body NOTIFY typeChanged)
    Q_PROPERTY(varnet::TypeStyle emphasis READ emphasis NOTIFY typeChanged)
    Q_PROPERTY(varnet::TypeStyle reading READ reading NOTIFY typeChanged)
    Q_PROPERTY(varnet::TypeStyle heading READ heading NOTIFY typeChanged)
    Q_PROPERTY(varnet::TypeStyle title READ title NOTIFY typeChanged)
    Q_PROPERTY(qreal symbol READ symbol NOTIFY typeChanged)
    Q_PROPERTY(int unit READ unit CONSTANT)
    Q_PROPERTY(int cardRadius READ cardRadius CONSTANT)
    Q_PROPERTY(int controlRadius READ controlRadius CONSTANT)
    Q_PROPERTY(int motion READ motion NOTIFY motionChanged)
    Q_PROPERTY(bool moves READ moves NOTIFY motionChanged)

public:
    enum class Appearance { light, dark };

    /// The colour of a badge or a status dot; an index into `tones`.
    enum class Tone { rec, amber, ok, faint };
    Q_ENUM(Tone)

    /// The application's theme; made with the first call, which must come after the application object.
    static Theme& shared();
    static Theme* create(QQmlEngine*, QJSEngine*);

    /// Fixes the appearance; absent follows the desktop again.
    void setAppearance(std::optional<Appearance> appearance);

    /// Takes what the desktop prefers if its answer is here already; for the moment before the first window shows.
    void takePreferences() { m_preferences.takeAnswer(); }

    bool dark() const;
    bool highContrast() const { return m_preferences.values().highContrast; }
    const Palette& palette() const;
    QColor window() const { return palette().window; }
    QColor surface() const { return palette().surface; }
    QColor raised() const { return palette().raised; }
    QColor selection() const { return palette().selection; }
    QColor line() const { return palette().line; }
    QColor track() const { return palette().track; }
    QColor text() const { return palette().text; }
    QColor secondary() const { return palette().secondary; }
    QColor faint() const { return palette().faint; }
    QColor accent() const { return palette().accent; }
    QColor rec() const { return palette().rec; }
    QColor amber() const { return palette().amber; }
    QColor ok() const { return palette().ok; }
    QColor onAccent() const { return palette().onAccent; }
    QColor onRec() const { return palette().onRec; }
    QList<QColor> speakers() const;
    QList<QColor> tones() const;

    const TypeStyle& caption() const { return m_caption; }
    const TypeStyle& body() const { return m_body; }
    const TypeStyle& emphasis() const { return m_emphasis; }
    const TypeStyle& reading() const { return m_reading; }
    const TypeStyle& heading() const { return m_heading; }
    const TypeStyle& title() const { return m_title; }
    qreal symbol() const { return m_symbol; } ///< the side of a symbol in pixels: 16, more where the words are larger

    int unit() const { return 4; }
    int cardRadius() const { return 8; }
    int controlRadius() const { return 6; }
    int motion() const { return moves() ? 140 : 0; } ///< milliseconds
    bool moves() const { return !m_preferences.values().reducedMotion; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void appearanceChanged();
    void typeChanged();
    void motionChanged();

private:
    Theme();
    void follow();
    void measure();

    std::optional<Appearance> m_appearance;
    QFont m_ownFont; ///< the application's before the desktop named one
    DesktopPreferences m_preferences;
    DesktopPreferences::Values m_followed; ///< what the window looks like now
    TypeStyle m_caption, m_body, m_emphasis, m_reading, m_heading, m_title;
    qreal m_symbol = 0;
};

} // namespace varnet
