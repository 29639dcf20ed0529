#pragma once

namespace varnet {

/// Gives the program the words of the user's language, from the `varnet_*.ts` of the folder i18n that are built in.
/// Words without a translation stay English, whose file has the plural forms. Once, on the main thread, after the
/// application object is made and before anything asks for words.
void installTranslations();

} // namespace varnet
