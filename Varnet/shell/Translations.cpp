#include "Varnet/shell/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace varnet {

namespace {

/// The one that is installed last is asked first.
void install(const QLocale& locale) {
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, QStringLiteral("varnet"), QStringLiteral("_"), QStringLiteral(":/qt/qml/Varnet/i18n")))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

void installTranslations() {
    install(QLocale(QLocale::English));
    if (QLocale().language() != QLocale::English)
        install(QLocale());
}

} // namespace varnet
