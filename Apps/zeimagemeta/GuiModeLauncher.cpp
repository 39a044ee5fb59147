#include "GuiModeLauncher.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

const char* const GuiOption = "--gui";

// The window-mode program, seen from the folder of the running program; the
// build tree is laid out as an installation.
QString guiProgram()
{
    const QString self = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    return QDir::cleanPath(QFileInfo(self).path() + QLatin1Char('/')
                           + QLatin1String(ZEIMAGEMETA_GUI_PROGRAM));
}

} // namespace

bool GuiModeLauncher::isRequested(int argc, char** argv)
{
    const std::size_t length = std::strlen(GuiOption);
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], GuiOption, length) == 0
            && (argv[i][length] == '\0' || argv[i][length] == '='))
            return true;
    }
    return false;
}

int GuiModeLauncher::exec(char** argv)
{
    const QByteArray program = QFile::encodeName(guiProgram());
    execv(program.constData(), argv);
    const int error = errno;
    std::fprintf(stderr, "zeimagemeta: %s\n",
                 qPrintable(tr("cannot start the window mode (%1): %2")
                                .arg(QFile::decodeName(program),
                                     QString::fromLocal8Bit(std::strerror(error)))));
    return 2;
}
