#include "PickerAnswer.h"

#include <QElapsedTimer>
#include <QThread>

#include <cerrno>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

QByteArray PickerAnswer::format(const QString& path, int mask, bool withMask)
{
    QByteArray answer = path.toUtf8() + '\n';
    if (withMask)
        answer += QByteArray::number(mask) + '\n';
    return answer;
}

bool PickerAnswer::deliver(int fd, const QByteArray& answer, int graceMilliseconds)
{
    if (!writeWhole(fd, answer))
        return false;
    struct stat status {};
    if (fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode))
        waitUntilRead(fd, graceMilliseconds);
    return true;
}

bool PickerAnswer::writeWhole(int fd, const QByteArray& bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(fd, bytes.constData() + written, size_t(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

// FIONREAD on either end of a pipe tells how many bytes still wait in it.
void PickerAnswer::waitUntilRead(int fd, int graceMilliseconds)
{
    QElapsedTimer waited;
    waited.start();
    int unread = 0;
    while (ioctl(fd, FIONREAD, &unread) == 0 && unread > 0
           && waited.elapsed() < graceMilliseconds)
        QThread::msleep(2);
}
