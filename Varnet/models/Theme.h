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
    QML_VALUE_TYPE(typeStyle)
    Q_PROPERTY(QFont font MEMBER font FINAL)
    Q_PROPERTY(qreal lineHeight MEMBER lineHeight FINAL)
    Q_PROPERTY(qreal lineGap MEMBER lineGap FINAL)
    Q_PROPERTY(qreal ascent MEMBER ascent FINAL)
    Q_PROPERTY(qreal richTextDrop MEMBER richTextDrop FINAL)

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
    Q_PROPERTY(bool dark READ dark NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor window READ window NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor surface READ surface NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor raised READ raised NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor selection READ selection NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor line READ line NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor track READ track NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor text READ text NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor secondary READ secondary NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor faint READ faint NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor accent READ accent NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor rec READ rec NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor amber READ amber NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor ok READ ok NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor onRec READ onRec NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QList<QColor> speakers READ speakers NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QList<QColor> tones READ tones NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(varnet::TypeStyle caption READ caption NOTIFY typeChanged FINAL)
    Q_PROPERTY(varnet::TypeStyle body READ body NOTIFY typeChanged FINAL)
    Q_PROPERTY(varnet::TypeStyle emphasis READ emphasis NOTIFY typeChanged FINAL)
    Q_PROPERTY(varnet::TypeStyle reading READ reading NOTIFY typeChanged FINAL)
    Q_PROPERTY(varnet::TypeStyle heading READ heading NOTIFY typeChanged FINAL)
    Q_PROPERTY(varnet::TypeStyle title READ title NOTIFY typeChanged FINAL)
    Q_PROPERTY(qreal symbol READ symbol NOTIFY typeChanged FINAL)
    Q_PROPERTY(int unit READ unit CONSTANT FINAL)
    Q_PROPERTY(int cardRadius READ cardRadius CONSTANT FINAL)
    Q_PROPERTY(int controlRadius READ controlRadius CONSTANT FINAL)
    Q_PROPERTY(int motion READ motion NOTIFY motionChanged FINAL)
    Q_PROPERTY(bool moves READ moves NOTIFY motionChanged FINAL)

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

    const TypeStyle& caption() const { return scale().caption; }
    const TypeStyle& body() const { return scale().body; }
    const TypeStyle& emphasis() const { return scale().emphasis; }
    const TypeStyle& reading() const { return scale().reading; }
    const TypeStyle& heading() const { return scale().heading; }
    const TypeStyle& title() const { return scale().title; }
    qreal symbol() const { return scale().symbol; } ///< the side of a symbol in pixels: 16, more beside larger words

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
    struct TypeScale {
        TypeStyle caption, body, emphasis, reading, heading, title;
        qreal symbol;
    };

    Theme();
    void follow();
    const TypeScale& scale() const;

    std::optional<Appearance> m_appearance;
    QFont m_ownFont; ///< the application's before the desktop named one
    DesktopPreferences m_preferences;
    DesktopPreferences::Values m_followed;    ///< what the window looks like now
    mutable std::optional<TypeScale> m_scale; ///< of the application's font, once it has been asked for
};

} // namespace varnet
