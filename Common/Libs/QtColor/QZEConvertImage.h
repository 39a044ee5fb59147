#ifndef QZECONVERTIMAGE_H
#define QZECONVERTIMAGE_H

#include <QBrush>
#include <QImage>
#include <QRunnable>
#include <QString>

class QWidget;

// One thumbnail job on the global thread pool: reads the file at reduced
// size (or through the host's conversion callback), composes a square canvas
// with a white frame and a soft drop shadow, hands it to its cache entry and
// posts an event of type QEvent::User to the receiver. Constructing the job
// starts it; the pool deletes it after run().
class QZEConvertImage : public QRunnable
{
public:
    QZEConvertImage(QWidget* receiver, QString fileName, int size, const QBrush& background,
                    QImage* image);
    ~QZEConvertImage() override;

    void run() override;

    // The GUI thread's view of a cache entry: a copy taken under the lock
    // that the job's hand-over also holds, so a finished canvas is never read
    // while a pool thread writes it.
    static QImage finishedImage(const QImage* entry);

private:
    QWidget* _receiver;
    QString _fileName;
    int _size;
    QBrush _background;
    QImage* _image;
};

#endif // QZECONVERTIMAGE_H
