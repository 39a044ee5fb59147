#ifndef PICKERANSWER_H
#define PICKERANSWER_H

#include <QByteArray>
#include <QString>

// The picker's answer on its standard output: the chosen absolute path and a
// newline, then, when the caller asked for it, the decimal render-settings
// mask and a newline. The caller polls the output and stops as soon as the
// picker has exited, so the answer goes out in one write and the picker stays
// until the caller has taken it.
class PickerAnswer
{
public:
    // How long an answer that nobody reads keeps the picker alive.
    static constexpr int GraceMilliseconds = 2000;

    static QByteArray format(const QString& path, int mask, bool withMask);

    // Writes answer to fd in one write (continued only when the system takes
    // part of it), then, when fd is a pipe, waits until the reader has taken
    // every byte or graceMilliseconds have passed. False when the write fails.
    static bool deliver(int fd, const QByteArray& answer,
                        int graceMilliseconds = GraceMilliseconds);

private:
    static bool writeWhole(int fd, const QByteArray& bytes);
    static void waitUntilRead(int fd, int graceMilliseconds);
};

#endif // PICKERANSWER_H
