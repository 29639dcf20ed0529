#include "Varnet/platform/DesktopPreferences.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(DesktopPreferences, AreReadOutOfTheSettingsOfEveryDesktop) {
    const QString appearance = "org.freedesktop.appearance", gnome = "org.gnome.desktop.interface",
                  access = "org.gnome.desktop.a11y.interface", kde = "org.kde.kdeglobals.KDE";
    using Values = DesktopPreferences::Values;
    using ColorScheme = DesktopPreferences::ColorScheme;
    const DesktopPreferences::Settings font{{gnome, {{"font-name", "Cantarell Bold 11"}}}};
    const DesktopPreferences::Settings large{{gnome, {{"text-scaling-factor", 1.5}}}};
    QFont cantarell("Cantarell Bold");
    cantarell.setPointSizeF(11);
    const struct {
        const char* name;
        DesktopPreferences::Settings settings;
        QString desktop, platform;
        Values values;
    } rows[] = {
        {"no settings", {}, "GNOME", "wayland", {}},
        {"dark", {{appearance, {{"color-scheme", 1U}}}}, "", "", {.colorScheme = ColorScheme::dark}},
        {"light", {{appearance, {{"color-scheme", 2U}}}}, "", "", {.colorScheme = ColorScheme::light}},
        {"unknown scheme", {{appearance, {{"color-scheme", 7U}}}}, "", "", {}},
        {"contrast", {{appearance, {{"contrast", 1U}}}}, "", "", {.highContrast = true}},
        {"contrast of GNOME", {{access, {{"high-contrast", true}}}}, "", "", {.highContrast = true}},
        {"still", {{appearance, {{"reduced-motion", 1U}}}}, "", "", {.reducedMotion = true}},
        {"still on GNOME", {{gnome, {{"enable-animations", false}}}}, "", "", {.reducedMotion = true}},
        {"moving on GNOME", {{gnome, {{"enable-animations", true}}}}, "", "", {}},
        {"still on KDE", {{kde, {{"AnimationDurationFactor", "0"}}}}, "", "", {.reducedMotion = true}},
        {"large text", large, "GNOME", "wayland", {.textScale = 1.5}},
        {"large text, which X11 announces as resolution", large, "GNOME", "xcb", {}},
        {"huge text", {{gnome, {{"text-scaling-factor", 40.0}}}}, "", "wayland", {.textScale = 3}},
        {"font of GNOME", font, "ubuntu:GNOME", "wayland", {.font = cantarell}},
        {"font that KDE does not use", font, "KDE", "wayland", {}},
        {"no font", {{gnome, {{"font-name", "Cantarell"}}}}, "GNOME", "wayland", {}},
        {"wrapped twice",
         {{appearance, {{"contrast", QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1U))))}}}},
         "",
         "",
         {.highContrast = true}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(DesktopPreferences::understood(row.settings, row.desktop, row.platform), row.values) << row.name;
}
