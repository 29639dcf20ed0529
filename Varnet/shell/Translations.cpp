#include "Varnet/shell/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace varnet {

namespace {

/// The one that is installed last is asked first.
void install(const QLocale& locale, const QString& name, const QString& folder) {
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, name, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

void installTranslations() {
    const auto name = QStringLiteral("varnet"), folder = QStringLiteral(":/qt/qml/Varnet/i18n");
    install(QLocale(QLocale::English), name, folder);
    if (QLocale().language() == QLocale::English)
        return;
    install(QLocale(), QStringLiteral("qt"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)); // names of keys
    install(QLocale(), name, folder);
}

} // namespace varnet
