#ifndef QZETRANSLATOR_H
#define QZETRANSLATOR_H

#include <QLocale>
#include <QString>
#include <QStringList>

class QTranslator;

/// Installs the translations of the library's texts for the user's language.
///
/// Every text the widgets, dialogs and the host kit show goes through tr(); the
/// translations ship as QtColor_<language>.qm (for example QtColor_de.qm) in
/// share/QtColor/translations of the installation. Nothing loads them by
/// itself: a host calls install() once, on the GUI thread, after it has created
/// its QApplication and before it builds the widgets:
///
///     QApplication app(argc, argv);
///     QZETranslator::install();
///
/// The language is that of the system locale: on Unix the first of LANGUAGE,
/// LC_ALL, LC_MESSAGES and LANG that is set, so LANG=de_DE.UTF-8 gives German.
/// A region without a catalogue of its own falls back to its language (de_AT
/// finds QtColor_de.qm). The catalogue is looked for first in the translations
/// folder beside the running program (../share/QtColor/translations seen from
/// its bin folder; the build tree is laid out the same way), then in the
/// installation the library was built for. A host that keeps the files
/// elsewhere passes its own folders.
///
/// The programs built with the library install their own catalogue
/// (QtColorApps) the same way, by name.
class QZETranslator
{
public:
    /// The catalogue of the library's texts.
    static const QString LibraryCatalogue;

    /// Installs a translator for catalogue in the language of locale, owned by
    /// the application object. Returns it, or null when no application object
    /// exists or no folder holds the catalogue in that language (the texts then
    /// stay in English).
    static QTranslator* install(const QString& catalogue = LibraryCatalogue,
                                const QLocale& locale = QLocale::system());
    /// install() looking only in folders, in order.
    static QTranslator* install(const QString& catalogue, const QLocale& locale,
                                const QStringList& folders);

    /// Where install() looks, in order.
    static QStringList getTranslationFolders();
};

#endif // QZETRANSLATOR_H
