#include "QZETranslator.h"

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

// Both set by the build from the install layout: the translations folder as
// seen from the programs' folder, and where the installation puts it.
#if !defined(QTCOLOR_TRANSLATIONS_FROM_PROGRAMS) || !defined(QTCOLOR_INSTALLED_TRANSLATIONS)
#error "the build must define where the translations are installed"
#endif

const QString QZETranslator::LibraryCatalogue = QStringLiteral("QtColor");

QTranslator* QZETranslator::install(const QString& catalogue, const QLocale& locale)
{
    return install(catalogue, locale, getTranslationFolders());
}

QTranslator* QZETranslator::install(const QString& catalogue, const QLocale& locale,
                                    const QStringList& folders)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return nullptr;
    auto* translator = new QTranslator(application);
    for (const QString& folder : folders) {
        if (translator->load(locale, catalogue, QStringLiteral("_"), folder)
            && QCoreApplication::installTranslator(translator))
            return translator;
    }
    delete translator;
    return nullptr;
}

QStringList QZETranslator::getTranslationFolders()
{
    QStringList folders;
    if (QCoreApplication::instance()) {
        const QDir programs(QCoreApplication::applicationDirPath());
        folders << QDir::cleanPath(programs.filePath(QStringLiteral(QTCOLOR_TRANSLATIONS_FROM_PROGRAMS)));
    }
    const QString installed = QDir::cleanPath(QStringLiteral(QTCOLOR_INSTALLED_TRANSLATIONS));
    if (!folders.contains(installed))
        folders << installed;
    return folders;
}
