// The thumbnail job on its own: what the canvas looks like for pictures of
// several shapes, for files it cannot or must not read, and through the
// host's conversion callback.

#include "QZEConvertImage.h"
#include "QZEImageFileDialog.h"
#include "QZEThumbnailCache.h"
#include "ImageFixtures.h"
#include "TestHelpers.h"
#include "ThumbnailCanvas.h"

#include <QBuffer>
#include <QFile>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMutex>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>

using namespace ThumbnailCanvas;

namespace {

const QColor s_background(90, 110, 130);
const QColor s_pictureColour(30, 200, 60);


// What the conversion callback was asked, and what it answers.
QMutex s_callbackMutex;
QString s_callbackPath;
QSize s_callbackBoxIn;
QSize s_callbackAnswerSize;
QSize s_callbackReportedSize;

QImage fakeConversion(const QString& path, QSize& size)
{
    QMutexLocker lock(&s_callbackMutex);
    s_callbackPath = path;
    s_callbackBoxIn = size;
    size = s_callbackReportedSize;
    if (s_callbackAnswerSize.isEmpty())
        return QImage();
    QImage picture(s_callbackAnswerSize, QImage::Format_RGB32);
    picture.fill(s_pictureColour);
    return picture;
}

} // namespace

class tst_QZEConvertImage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void largePictureIsFittedTo154x115AndCentredWithFrameAndShadow();
    void smallPictureIsEnlargedTo154x77();
    void ringShadowAndCentringForSeveralAspectRatios_data();
    void ringShadowAndCentringForSeveralAspectRatios();
    void shadowDarkensByAlpha63AndBulgesToTenPixelsAtTheFarCorner();
    void ringLiesOutsideThePictureAndLeavesItUntouched();
    void nonImageFileShowsConversionErrorInRedInside154x154FramedBox();
    void fileOverOneGibShowsTooBigAndIsNeverOpened();
    void callbackThatChangesTheSizeIsFramedWithTheSizeItSets();
    void callbackReturningNullShowsConversionError();
    void jobPostsExactlyOneEventOfType1000ToItsReceiver();
    void finishedImageOfNullEntryIsNull();
    void decodedPictureIsStoredInTheSharedCacheAtItsLargeSize();
    void sharedCacheHitIsFramedExactlyLikeAColdDecode();
    void cacheEntryOfAPictureOfAnotherSizeIsIgnored();
    void largeEnoughExifPreviewIsUsedAndFramedLikeADecode();
    void exifPreviewSmallerThanTheThumbnailIsNotUsed();

private:
    QImage convert(const QString& path, const QColor& background = s_background);
    QString solidPicture(int width, int height);
    QString photoWithPreview(const QString& name, QSize preview);
    void compareFraming(const QImage& canvas, const QImage& reference, QSize scaled);
    void compareWithExpected(const QImage& canvas, QSize scaled, const QColor& picture);

    ScratchCacheHome _cacheHome;
    QTemporaryDir _dir;
};

void tst_QZEConvertImage::init()
{
    QZEImageFileDialog::setImageConversionCB(nullptr);
}

void tst_QZEConvertImage::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    QZEImageFileDialog::setImageConversionCB(nullptr);
}

// Runs one job on path and answers the canvas it handed over.
QImage tst_QZEConvertImage::convert(const QString& path, const QColor& background)
{
    CompletionCounter receiver;
    QImage entry;
    new QZEConvertImage(&receiver, path, s_canvas, QBrush(background), &entry);
    if (!QTest::qWaitFor([&receiver] { return receiver.count > 0; }, 20000))
        return QImage();
    return QZEConvertImage::finishedImage(&entry);
}

QString tst_QZEConvertImage::solidPicture(int width, int height)
{
    const QString path = _dir.filePath(QStringLiteral("solid-%1x%2.png").arg(width).arg(height));
    if (!QFile::exists(path) && !writeSolid(path, width, height, s_pictureColour))
        return QString();
    return path;
}

// Every pixel of the canvas against the independently drawn one; the small
// tolerance covers smooth scaling of the picture and the shadow's
// antialiased edge.
void tst_QZEConvertImage::compareWithExpected(const QImage& canvas, QSize scaled,
                                             const QColor& picture)
{
    QCOMPARE(canvas.size(), QSize(s_canvas, s_canvas));
    const QImage wanted = expected(scaled, picture, s_background);
    QPoint where;
    const int difference = largestDifference(canvas, wanted, canvas.rect(), &where);
    QVERIFY2(difference <= 2, qPrintable(QStringLiteral("differs by %1 at (%2, %3)")
                                             .arg(difference)
                                             .arg(where.x())
                                             .arg(where.y())));
}

void tst_QZEConvertImage::largePictureIsFittedTo154x115AndCentredWithFrameAndShadow()
{
    const QImage canvas = convert(solidPicture(4000, 3000));
    // 154 / 4000 * 3000 = 115.5, cut to 115; left 96 - 77 = 19, top 96 - 57 = 39.
    QCOMPARE(pictureBox(QSize(154, 115)), QRect(19, 39, 154, 115));
    QCOMPARE(QColor(canvas.pixel(19, 39)), s_pictureColour);
    QCOMPARE(QColor(canvas.pixel(172, 153)), s_pictureColour);
    QCOMPARE(QColor(canvas.pixel(18, 39)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(19, 154)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(14, 34)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(13, 34)), s_background);
    QCOMPARE(QColor(canvas.pixel(14, 33)), s_background);
    QZE_CHECK(compareWithExpected(canvas, QSize(154, 115), s_pictureColour));
}

void tst_QZEConvertImage::smallPictureIsEnlargedTo154x77()
{
    const QImage canvas = convert(solidPicture(100, 50));
    // Box (19, 58) to (172, 134); the ring reaches rows 53 and 139.
    QCOMPARE(QColor(canvas.pixel(19, 58)), s_pictureColour);
    QCOMPARE(QColor(canvas.pixel(172, 134)), s_pictureColour);
    QCOMPARE(QColor(canvas.pixel(100, 57)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(100, 135)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(100, 52)), s_background);
    QZE_CHECK(compareWithExpected(canvas, QSize(154, 77), s_pictureColour));
}

void tst_QZEConvertImage::ringShadowAndCentringForSeveralAspectRatios_data()
{
    QTest::addColumn<QSize>("source");
    QTest::addColumn<QSize>("scaled");
    QTest::newRow("landscape 4:3") << QSize(4000, 3000) << QSize(154, 115);
    QTest::newRow("portrait 3:4") << QSize(3000, 4000) << QSize(115, 154);
    QTest::newRow("wide 2:1 enlarged") << QSize(100, 50) << QSize(154, 77);
    QTest::newRow("tall 1:2 enlarged") << QSize(50, 100) << QSize(77, 154);
    QTest::newRow("square") << QSize(640, 640) << QSize(154, 154);
    QTest::newRow("3:2") << QSize(300, 200) << QSize(154, 102);
    QTest::newRow("sliver 100:1") << QSize(1000, 10) << QSize(154, 1);
}

void tst_QZEConvertImage::ringShadowAndCentringForSeveralAspectRatios()
{
    QFETCH(QSize, source);
    QFETCH(QSize, scaled);
    const QImage canvas = convert(solidPicture(source.width(), source.height()));
    QZE_CHECK(compareWithExpected(canvas, scaled, s_pictureColour));
}

void tst_QZEConvertImage::shadowDarkensByAlpha63AndBulgesToTenPixelsAtTheFarCorner()
{
    const QImage canvas = convert(solidPicture(640, 640), Qt::white);
    // Frame (14, 14) to (177, 177); the shadow starts below and right of it.
    // White under black at alpha 63: 255 * (255 - 63) / 255 = 192.
    const QRgb shaded = canvas.pixel(181, 181);
    QVERIFY2(std::abs(qRed(shaded) - 192) <= 1, qPrintable(QString::number(qRed(shaded))));
    QVERIFY(std::abs(qRed(canvas.pixel(100, 180)) - 192) <= 1); // under the bottom edge
    QVERIFY(std::abs(qRed(canvas.pixel(180, 100)) - 192) <= 1); // right of the right edge
    // Nothing left of x = 19 or above y = 19, nothing beyond 10 pixels.
    QCOMPARE(QColor(canvas.pixel(17, 180)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(180, 17)), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(189, 189)), QColor(Qt::white));
    // Half way along, the bottom curve is at (188 + 2 * 180.5 + 188) / 4 =
    // 184.25: row 183 is still shaded, row 185 no longer.
    QVERIFY(std::abs(qRed(canvas.pixel(100, 183)) - 192) <= 1);
    QCOMPARE(QColor(canvas.pixel(100, 185)), QColor(Qt::white));
}

void tst_QZEConvertImage::ringLiesOutsideThePictureAndLeavesItUntouched()
{
    const QImage canvas = convert(solidPicture(300, 200));
    const QRect box = pictureBox(QSize(154, 102));
    const QRect frame = box.adjusted(-5, -5, 5, 5);
    for (int y = frame.top(); y <= frame.bottom(); ++y) {
        for (int x = frame.left(); x <= frame.right(); ++x) {
            const QColor wanted = box.contains(x, y) ? s_pictureColour : QColor(Qt::white);
            QVERIFY2(channelDifference(canvas.pixel(x, y), wanted.rgb()) <= 2,
                     qPrintable(QStringLiteral("at (%1, %2)").arg(x).arg(y)));
        }
    }
}

void tst_QZEConvertImage::nonImageFileShowsConversionErrorInRedInside154x154FramedBox()
{
    const QString path = _dir.filePath(QStringLiteral("not-a-picture.png"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("This is plain text, not pixels.\n") > 0);
    }
    const QImage canvas = convert(path);
    const QRect box = pictureBox(QSize(154, 154));
    QCOMPARE(box, QRect(19, 19, 154, 154));
    const QRect red = redPixels(canvas, canvas.rect());
    QVERIFY(!red.isNull());
    QVERIFY2(box.contains(red), qPrintable(QStringLiteral("red text at %1,%2 %3x%4").arg(red.x()).arg(red.y()).arg(red.width()).arg(red.height())));
    // Centred on the box's middle column, standing on its middle row; as
    // wide as the message in the default font, or shrunk to the box.
    const int advance = QFontMetrics(QGuiApplication::font()).horizontalAdvance(
        QStringLiteral("CONVERSION ERROR"));
    QVERIFY2(std::abs(red.width() - std::min(advance, box.width())) <= 6,
             qPrintable(QStringLiteral("%1 for %2").arg(red.width()).arg(advance)));
    QVERIFY(std::abs(red.center().x() - 96) <= 2);
    QVERIFY2(red.bottom() <= 97 && red.bottom() >= 94, qPrintable(QString::number(red.bottom())));
    // Everything outside the text is the expected framed, shadowed empty box.
    QImage masked = canvas;
    QPainter(&masked).fillRect(red.adjusted(-2, -2, 2, 2) & pictureBox(QSize(154, 154)), s_background);
    QZE_CHECK(compareWithExpected(masked, QSize(154, 154), QColor()));
}

namespace {

// Reports whether anything opened the watched file between construction and
// opened(). Uses inotify's IN_OPEN, which fires for every open(2) of it.
class OpenWatch
{
public:
    explicit OpenWatch(const QString& path) : _fd(inotify_init1(IN_NONBLOCK))
    {
        _ok = _fd >= 0 && inotify_add_watch(_fd, QFile::encodeName(path).constData(), IN_OPEN) >= 0;
    }
    ~OpenWatch()
    {
        if (_fd >= 0)
            close(_fd);
    }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    bool isWatching() const { return _ok; }
    bool opened() const
    {
        alignas(inotify_event) char buffer[4096];
        return read(_fd, buffer, sizeof buffer) > 0;
    }

private:
    int _fd;
    bool _ok = false;
};

} // namespace

void tst_QZEConvertImage::fileOverOneGibShowsTooBigAndIsNeverOpened()
{
    const QString path = _dir.filePath(QStringLiteral("huge.jpg"));
    QCOMPARE(QProcess::execute(QStringLiteral("truncate"), {QStringLiteral("-s"), QStringLiteral("2G"), path}), 0);
    QCOMPARE(QFile(path).size(), Q_INT64_C(2147483648));
    OpenWatch watch(path);
    QVERIFY(watch.isWatching());

    const QImage canvas = convert(path);
    QVERIFY2(!watch.opened(), "the job opened a file above the size limit");

    const QRect red = redPixels(canvas, pictureBox(QSize(154, 154)));
    const int advance =
        QFontMetrics(QGuiApplication::font()).horizontalAdvance(QStringLiteral("TOO BIG"));
    QVERIFY2(std::abs(red.width() - advance) <= 4, qPrintable(QString::number(red.width())));
    QVERIFY(std::abs(red.center().x() - 96) <= 2);
    QImage masked = canvas;
    QPainter(&masked).fillRect(red.adjusted(-2, -2, 2, 2) & pictureBox(QSize(154, 154)), s_background);
    QZE_CHECK(compareWithExpected(masked, QSize(154, 154), QColor()));

    // The watch does see an open, so its silence above means something.
    QFile(path).open(QIODevice::ReadOnly);
    QVERIFY(watch.opened());
}

void tst_QZEConvertImage::callbackThatChangesTheSizeIsFramedWithTheSizeItSets()
{
    {
        QMutexLocker lock(&s_callbackMutex);
        s_callbackAnswerSize = QSize(80, 40);
        s_callbackReportedSize = QSize(80, 40);
    }
    QZEImageFileDialog::setImageConversionCB(fakeConversion);
    const QString path = solidPicture(4000, 3000);
    const QImage canvas = convert(path);
    {
        QMutexLocker lock(&s_callbackMutex);
        QCOMPARE(s_callbackPath, path);
        QCOMPARE(s_callbackBoxIn, QSize(154, 154));
    }
    // Box (56, 76) to (135, 115), not the reader's 154 x 115.
    QCOMPARE(pictureBox(QSize(80, 40)), QRect(56, 76, 80, 40));
    QZE_CHECK(compareWithExpected(canvas, QSize(80, 40), s_pictureColour));
}

void tst_QZEConvertImage::callbackReturningNullShowsConversionError()
{
    {
        QMutexLocker lock(&s_callbackMutex);
        s_callbackAnswerSize = QSize();
        s_callbackReportedSize = QSize(100, 60);
    }
    QZEImageFileDialog::setImageConversionCB(fakeConversion);
    const QImage canvas = convert(solidPicture(640, 640));
    const QRect box = pictureBox(QSize(100, 60));
    const QRect red = redPixels(canvas, canvas.rect());
    QVERIFY(!red.isNull());
    QVERIFY(std::abs(red.center().x() - 96) <= 2);
    QCOMPARE(QColor(canvas.pixel(box.left() - 1, box.top())), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(box.right() + 5, box.bottom())), QColor(Qt::white));
    QCOMPARE(QColor(canvas.pixel(box.right() + 6, box.top() - 6)), s_background);
}

void tst_QZEConvertImage::jobPostsExactlyOneEventOfType1000ToItsReceiver()
{
    CompletionCounter receiver;
    QImage entry;
    new QZEConvertImage(&receiver, solidPicture(100, 50), s_canvas, QBrush(s_background), &entry);
    QTRY_COMPARE(receiver.count, 1);
    QVERIFY(!QZEConvertImage::finishedImage(&entry).isNull());
    QThreadPool::globalInstance()->waitForDone();
    QTest::qWait(50);
    QCOMPARE(receiver.count, 1);
    QCOMPARE(int(QEvent::User), 1000);
}

void tst_QZEConvertImage::finishedImageOfNullEntryIsNull()
{
    QVERIFY(QZEConvertImage::finishedImage(nullptr).isNull());
    const QImage unfinished;
    QVERIFY(QZEConvertImage::finishedImage(&unfinished).isNull());
}

namespace {

const QColor s_otherColour(220, 180, 20);

QByteArray jpegOf(QSize size, const QColor& colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return image.save(&buffer, "jpeg", 95) ? bytes : QByteArray();
}

} // namespace

// Canvas and reference agree everywhere but inside the picture box.
void tst_QZEConvertImage::compareFraming(const QImage& canvas, const QImage& reference,
                                        QSize scaled)
{
    QImage outside = canvas;
    QImage referenceOutside = reference;
    const QRect box = pictureBox(scaled);
    QPainter(&outside).fillRect(box, Qt::black);
    QPainter(&referenceOutside).fillRect(box, Qt::black);
    QCOMPARE(largestDifference(outside, referenceOutside, outside.rect()), 0);
}

void tst_QZEConvertImage::decodedPictureIsStoredInTheSharedCacheAtItsLargeSize()
{
    const QString path = _dir.filePath(QStringLiteral("fresh-4000x3000.png"));
    QVERIFY(writeSolid(path, 4000, 3000, s_pictureColour));
    QVERIFY(!QFile::exists(QZEThumbnailCache::thumbnailPath(path)));
    convert(path);
    QVERIFY(QZEThumbnailCache::thumbnailPath(path).startsWith(_cacheHome.path()));
    QSize original;
    const QImage stored = QZEThumbnailCache::load(path, &original);
    // 256 x 192 fits 4000 x 3000 into the cache's 256-pixel box.
    QCOMPARE(stored.size(), QSize(256, 192));
    QCOMPARE(original, QSize(4000, 3000));
    QVERIFY(near(stored.pixel(128, 96), s_pictureColour));
}

void tst_QZEConvertImage::sharedCacheHitIsFramedExactlyLikeAColdDecode()
{
    const QString path = _dir.filePath(QStringLiteral("cached-4000x3000.png"));
    QVERIFY(writeSolid(path, 4000, 3000, s_pictureColour));
    const QImage cold = convert(path);
    // Another program's thumbnail of the same file, in another colour: what
    // the next job shows must come from it.
    QImage other(256, 192, QImage::Format_RGB32);
    other.fill(s_otherColour);
    QVERIFY(QZEThumbnailCache::store(path, other, QSize(4000, 3000)));
    const QImage hit = convert(path);
    QVERIFY(near(hit.pixel(96, 96), s_otherColour));
    QVERIFY(near(cold.pixel(96, 96), s_pictureColour));
    QZE_CHECK(compareFraming(hit, cold, QSize(154, 115)));
    QZE_CHECK(compareWithExpected(cold, QSize(154, 115), s_pictureColour));
}

void tst_QZEConvertImage::cacheEntryOfAPictureOfAnotherSizeIsIgnored()
{
    const QString path = _dir.filePath(QStringLiteral("resized-640x480.png"));
    QVERIFY(writeSolid(path, 640, 480, s_pictureColour));
    QImage other(256, 192, QImage::Format_RGB32);
    other.fill(s_otherColour);
    QVERIFY(QZEThumbnailCache::store(path, other, QSize(1280, 960)));
    const QImage canvas = convert(path);
    QZE_CHECK(compareWithExpected(canvas, QSize(154, 115), s_pictureColour));
}

QString tst_QZEConvertImage::photoWithPreview(const QString& name, QSize preview)
{
    const QString path = _dir.filePath(name);
    if (!ImageFixtures::writeFile(path, jpegOf(QSize(1600, 1200), s_pictureColour))
        || !ImageFixtures::embedExifPreview(path, jpegOf(preview, s_otherColour)))
        return QString();
    return path;
}

void tst_QZEConvertImage::largeEnoughExifPreviewIsUsedAndFramedLikeADecode()
{
    const QString path = photoWithPreview(QStringLiteral("camera.jpg"), QSize(160, 120));
    QVERIFY(!path.isEmpty());
    const QImage canvas = convert(path);
    // 160 x 120 covers the 154 x 115 picture box: the preview's colour shows.
    QVERIFY(near(canvas.pixel(96, 96), s_otherColour, 12));
    QZE_CHECK(compareFraming(canvas, expected(QSize(154, 115), s_pictureColour, s_background),
                             QSize(154, 115)));
}

void tst_QZEConvertImage::exifPreviewSmallerThanTheThumbnailIsNotUsed()
{
    const QString path = photoWithPreview(QStringLiteral("small-preview.jpg"), QSize(120, 90));
    QVERIFY(!path.isEmpty());
    const QImage canvas = convert(path);
    QVERIFY(near(canvas.pixel(96, 96), s_pictureColour, 12));
}

QTEST_MAIN(tst_QZEConvertImage)
#include "tst_QZEConvertImage.moc"
