#include "zeLog.h"

#include <QByteArray>

#include <cstdarg>
#include <cstdio>

namespace {

void defaultHandler(const char* message)
{
    qWarning("%s", message);
}

zeLog::Handler s_handler = defaultHandler;

} // namespace

void zeLog::warning(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    va_list measure;
    va_copy(measure, args);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    QByteArray message(length > 0 ? length : 0, '\0');
    if (length > 0)
        std::vsnprintf(message.data(), size_t(length) + 1, format, args);
    va_end(args);
    s_handler(message.constData());
}

zeLog::Handler zeLog::setWarningHandler(Handler handler)
{
    const Handler previous = s_handler;
    s_handler = handler ? handler : defaultHandler;
    return previous == defaultHandler ? nullptr : previous;
}
