#ifndef ZELOG_H
#define ZELOG_H

#include <QtGlobal>

/// The host's log. Library code reports printf-style warnings here; a host
/// installs its own handler to route them into its log window or file.
class zeLog
{
public:
    /// Receives each formatted warning, without a trailing newline.
    using Handler = void (*)(const char* message);

    /// Formats a warning like printf and hands it to the installed handler.
    static void warning(const char* format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(1, 2);

    /// Installs handler (nullptr restores the default, qWarning) and returns
    /// the previous one.
    static Handler setWarningHandler(Handler handler);
};

#endif // ZELOG_H
