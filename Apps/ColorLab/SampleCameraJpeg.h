#ifndef SAMPLECAMERAJPEG_H
#define SAMPLECAMERAJPEG_H

#include <QCoreApplication>
#include <QImage>
#include <QString>

// A camera photo in miniature: a landscape drawn here, saved as a JPEG with
// the EXIF tags a camera writes (maker and model, exposure time, f-number,
// the APEX values, subject distance, focal lengths), so that the image
// information dialog has a real file to show without a user's photo.
class SampleCameraJpeg
{
    Q_DECLARE_TR_FUNCTIONS(SampleCameraJpeg)

public:
    static QImage picture();

    // Writes the photo to path, replacing a file there only once the new one
    // is complete. On failure errorString() says why.
    bool write(const QString& path);
    QString errorString() const { return _error; }

private:
    bool encode(QByteArray& jpeg);
    bool addExif(QByteArray& jpeg);
    bool save(const QString& path, const QByteArray& jpeg);

    QString _error;
};

#endif // SAMPLECAMERAJPEG_H
