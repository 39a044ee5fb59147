#include "StreamCapture.h"

#include <QString>

#include <iostream>

StreamCapture::StreamCapture()
    : _out(std::cout.rdbuf(_buffer.rdbuf()))
    , _err(std::cerr.rdbuf(_buffer.rdbuf()))
{
}

StreamCapture::~StreamCapture()
{
    std::cout.rdbuf(_out);
    std::cerr.rdbuf(_err);
}

QStringList StreamCapture::errorLines() const
{
    const QStringList lines = QString::fromStdString(_buffer.str()).split(QLatin1Char('\n'));
    QStringList errors;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("error"), Qt::CaseInsensitive))
            errors.append(line);
    }
    return errors;
}
