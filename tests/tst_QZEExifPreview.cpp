#include "ImageFixtures.h"
#include "QZEExifPreview.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

// The preview a camera embeds in a JPEG's EXIF data: used only when it is
// large enough and of the photo's shape, found without the photo's pixels.
class tst_QZEExifPreview : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void previewAsLargeAsAskedIsReturnedWithThePhotoSize();
    void previewSmallerThanAskedIsRefused_data();
    void previewSmallerThanAskedIsRefused();
    void previewWithBlackBarsIsRefused();
    void aspectWithinAPixelIsAccepted();
    void previewIsFoundWithoutThePhotosPixels();
    void jpegWithoutPreviewGivesNothing();
    void otherFilesGiveNothing_data();
    void otherFilesGiveNothing();
    void severalThreadsReadAtOnce();

private:
    // A JPEG of photo pixels in the photo colour with an embedded JPEG
    // preview of preview pixels in the preview colour, written by exiv2.
    QString makePhoto(const QString& name, QSize photo, QSize preview) const;

    QTemporaryDir _dir;
    const QColor _photoColour = QColor(20, 40, 220);
    const QColor _previewColour = QColor(230, 30, 20);
};

namespace {

QByteArray jpegBytes(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return image.save(&buffer, "jpeg", 90) ? bytes : QByteArray();
}

bool isNear(QRgb actual, const QColor& expected)
{
    return qAbs(qRed(actual) - expected.red()) <= 12 && qAbs(qGreen(actual) - expected.green()) <= 12
           && qAbs(qBlue(actual) - expected.blue()) <= 12;
}

} // namespace

void tst_QZEExifPreview::initTestCase()
{
    QVERIFY(_dir.isValid());
}

QString tst_QZEExifPreview::makePhoto(const QString& name, QSize photo, QSize preview) const
{
    const QString path = _dir.filePath(name);
    const QImage pixels =
        ImageFixtures::filled(photo.width(), photo.height(), QImage::Format_RGB32, _photoColour);
    const QImage small = ImageFixtures::filled(preview.width(), preview.height(),
                                               QImage::Format_RGB32, _previewColour);
    if (!ImageFixtures::write(pixels, path, "jpeg") || !ImageFixtures::embedExifPreview(path, jpegBytes(small)))
        return QString();
    return path;
}

void tst_QZEExifPreview::previewAsLargeAsAskedIsReturnedWithThePhotoSize()
{
    const QString path =
        makePhoto(QStringLiteral("large.jpg"), QSize(1600, 1200), QSize(320, 240));
    QVERIFY(!path.isEmpty());

    QSize original;
    const QImage preview = QZEExifPreview::read(path, QSize(154, 154), &original);

    QCOMPARE(preview.size(), QSize(320, 240));
    QVERIFY(isNear(preview.pixel(160, 120), _previewColour));
    QCOMPARE(original, QSize(1600, 1200));
}

void tst_QZEExifPreview::previewSmallerThanAskedIsRefused_data()
{
    QTest::addColumn<QSize>("minimum");
    QTest::newRow("too low") << QSize(154, 154);
    QTest::newRow("too narrow") << QSize(161, 100);
}

void tst_QZEExifPreview::previewSmallerThanAskedIsRefused()
{
    QFETCH(QSize, minimum);
    const QString path =
        makePhoto(QStringLiteral("small.jpg"), QSize(1600, 1200), QSize(160, 120));
    QVERIFY(!path.isEmpty());

    QSize original;
    QVERIFY(QZEExifPreview::read(path, minimum, &original).isNull());
    QCOMPARE(original, QSize(1600, 1200));
    QCOMPARE(QZEExifPreview::read(path, QSize(160, 120), nullptr).size(), QSize(160, 120));
}

// A 4:3 preview of a 3:2 photo carries black bars above and below.
void tst_QZEExifPreview::previewWithBlackBarsIsRefused()
{
    const QString path = makePhoto(QStringLiteral("bars.jpg"), QSize(1500, 1000), QSize(320, 240));
    QVERIFY(!path.isEmpty());

    QVERIFY(QZEExifPreview::read(path, QSize(154, 154), nullptr).isNull());
}

// 1000 x 667 scaled to 300 wide is 200.1 high: the rounded preview fits.
void tst_QZEExifPreview::aspectWithinAPixelIsAccepted()
{
    const QString near = makePhoto(QStringLiteral("near.jpg"), QSize(1000, 667), QSize(300, 200));
    const QString off = makePhoto(QStringLiteral("off.jpg"), QSize(1000, 667), QSize(300, 198));
    QVERIFY(!near.isEmpty() && !off.isEmpty());

    QCOMPARE(QZEExifPreview::read(near, QSize(154, 154), nullptr).size(), QSize(300, 200));
    QVERIFY(QZEExifPreview::read(off, QSize(154, 154), nullptr).isNull());
}

// The file cut right after its frame header still gives the preview: the
// compressed photo is never needed.
void tst_QZEExifPreview::previewIsFoundWithoutThePhotosPixels()
{
    const QString path = makePhoto(QStringLiteral("cut.jpg"), QSize(1600, 1200), QSize(320, 240));
    QVERIFY(!path.isEmpty());
    const QByteArray whole = ImageFixtures::readFile(path);
    const int frame = ImageFixtures::jpegSegment(whole, 0xc0);
    QVERIFY(frame > 0);
    const int frameEnd = frame + 2 + ((quint8(whole[frame + 2]) << 8) | quint8(whole[frame + 3]));
    const QString cut = _dir.filePath(QStringLiteral("cut-after-frame.jpg"));
    QVERIFY(ImageFixtures::writeFile(cut, whole.left(frameEnd)));

    QSize original;
    QCOMPARE(QZEExifPreview::read(cut, QSize(154, 154), &original).size(), QSize(320, 240));
    QCOMPARE(original, QSize(1600, 1200));
}

void tst_QZEExifPreview::jpegWithoutPreviewGivesNothing()
{
    const QString path = _dir.filePath(QStringLiteral("plain.jpg"));
    QVERIFY(ImageFixtures::write(
        ImageFixtures::filled(640, 480, QImage::Format_RGB32, _photoColour), path, "jpeg"));
    QVERIFY(ImageFixtures::addTags(path, {{"Exif.Image.Make", "QtColor test camera"}}));

    QSize original;
    QVERIFY(QZEExifPreview::read(path, QSize(1, 1), &original).isNull());
    QCOMPARE(original, QSize(640, 480));
}

void tst_QZEExifPreview::otherFilesGiveNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray png;
    QBuffer buffer(&png);
    QVERIFY(ImageFixtures::filled(8, 8, QImage::Format_RGB32, Qt::red).save(&buffer, "png"));
    QTest::newRow("png") << png;
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("start of image only") << QByteArray("\xff\xd8", 2);
    QTest::newRow("segment longer than the file") << QByteArray("\xff\xd8\xff\xe1\x40\x00Exif", 10);
    QTest::newRow("scan before any frame") << QByteArray("\xff\xd8\xff\xda\x00\x02", 6);
}

void tst_QZEExifPreview::otherFilesGiveNothing()
{
    QFETCH(QByteArray, bytes);
    const QString path = _dir.filePath(QStringLiteral("other.jpg"));
    QVERIFY(ImageFixtures::writeFile(path, bytes));

    QSize original(1, 1);
    QVERIFY(QZEExifPreview::read(path, QSize(1, 1), &original).isNull());
    QCOMPARE(original, QSize());
    QVERIFY(QZEExifPreview::read(_dir.filePath(QStringLiteral("absent.jpg")), QSize(1, 1), nullptr)
                .isNull());
}

void tst_QZEExifPreview::severalThreadsReadAtOnce()
{
    const QString path =
        makePhoto(QStringLiteral("shared.jpg"), QSize(1600, 1200), QSize(320, 240));
    QVERIFY(!path.isEmpty());
    std::atomic<int> found{0};
    // Plain threads, whose start and join ThreadSanitizer sees.
    std::vector<std::thread> threads;
    for (int t = 0; t < 6; ++t) {
        threads.emplace_back([&found, path] {
            for (int i = 0; i < 8; ++i)
                if (QZEExifPreview::read(path, QSize(154, 154), nullptr).size() == QSize(320, 240))
                    ++found;
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    QCOMPARE(found.load(), 48);
}

QTEST_GUILESS_MAIN(tst_QZEExifPreview)
#include "tst_QZEExifPreview.moc"
