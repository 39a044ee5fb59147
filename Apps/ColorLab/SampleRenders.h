#ifndef SAMPLERENDERS_H
#define SAMPLERENDERS_H

#include <QByteArray>
#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QSize>
#include <QString>
#include <QVector>

// A folder of pictures as a renderer leaves them: PNG, JPEG and TIFF files,
// most stamped by the host kit's writer with a render-settings record whose
// groups differ from file to file, one without a record. The image browser
// opens on it, so its thumbnails and its filter tree have real files to show.
class SampleRenders
{
    Q_DECLARE_TR_FUNCTIONS(SampleRenders)

public:
    struct Sample
    {
        QString fileName;
        QByteArray format;
        QSize size;
        QColor colour; // of the lit object in the scene
        int groups;    // zeRenderSettings group bits; 0 for no record
    };

    static const QVector<Sample>& samples();
    // A small rendered scene: sky, floor and a lit sphere in colour.
    static QImage picture(QSize size, const QColor& colour);

    // Writes every sample into folder (which must exist); each file is
    // complete before it appears. On failure errorString() says why.
    bool write(const QString& folder);
    QString errorString() const { return _error; }

private:
    bool writeSample(const QString& path, const Sample& sample);

    QString _error;
};

#endif // SAMPLERENDERS_H
