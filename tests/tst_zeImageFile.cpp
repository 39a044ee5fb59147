// Reading users' image files without their pixels: what the header reader
// and the metadata reader see must be what they see in the whole file, the
// pixel bytes must be left unread, and every refusal of a whole read holds.

#include <zeImageFile.h>
#include <zeImageMetaReader.h>
#include <zeZeroPages.h>

#include "ImageFixtures.h"

#include <QBuffer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>

namespace {

struct Header
{
    QSize size;
    QImage::Format format = QImage::Format_Invalid;
};

Header headerOf(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return {reader.size(), reader.imageFormat()};
}

zeImageMetaReader::Blocks metadataOf(const QByteArray& bytes)
{
    zeImageMetaReader::Blocks blocks;
    zeImageMetaReader::read(bytes.constData(), std::size_t(bytes.size()), 3, 8, blocks);
    return blocks;
}

} // namespace

class tst_zeImageFile : public QObject
{
    Q_OBJECT

private slots:
    void readWithoutPixelsSeesTheHeaderAndMetadataOfAWholeRead_data();
    void readWithoutPixelsSeesTheHeaderAndMetadataOfAWholeRead();
    void readWithoutPixelsLeavesThePixelBytesUnread_data();
    void readWithoutPixelsLeavesThePixelBytesUnread();
    void readWithoutPixelsReadsOtherFormatsWhole();
    void readWithoutPixelsRefusesWhatReadRefuses();
    void zeroPagesReadAsZeros();
    void zeroPagesReadAsZerosWhenReused();
    void liveZeroPagesNeverShareMemory();
    void readsOneAfterTheOtherEachSeeOnlyTheirOwnBytes();

private:
    QString written(const char* format, const ImageFixtures::Tags& tags);
    QTemporaryDir _dir;
};

QString tst_zeImageFile::written(const char* format, const ImageFixtures::Tags& tags)
{
    const QString path = _dir.filePath(QStringLiteral("image.") + QLatin1String(format));
    if (!ImageFixtures::write(ImageFixtures::noise(320, 200, 11), path, format)
        || (!tags.empty() && !ImageFixtures::addTags(path, tags)))
        return QString();
    return path;
}

void tst_zeImageFile::readWithoutPixelsSeesTheHeaderAndMetadataOfAWholeRead_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<bool>("tagged");
    for (const char* format : {"jpeg", "tiff"}) {
        QTest::addRow("%s without metadata", format) << QByteArray(format) << false;
        QTest::addRow("%s with EXIF and XMP", format) << QByteArray(format) << true;
    }
}

void tst_zeImageFile::readWithoutPixelsSeesTheHeaderAndMetadataOfAWholeRead()
{
    QFETCH(QByteArray, format);
    QFETCH(bool, tagged);
    ImageFixtures::Tags tags;
    if (tagged) {
        tags = {{"Exif.Image.Make", "Maker"}, {"Exif.Photo.ExposureTime", "1/125"},
                {"Xmp.exif.FNumber", "28/10"}};
    }
    const QString path = written(format.constData(), tags);
    QVERIFY(!path.isEmpty());
    QByteArray whole;
    std::string why;
    QCOMPARE(zeImageFile::read(path, 1 << 30, whole, why), zeImageFile::Read);
    QByteArray sparse;
    std::unique_ptr<zeZeroPages> memory;
    QCOMPARE(zeImageFile::readWithoutPixels(path, 1 << 30, sparse, memory, why), zeImageFile::Read);
    QVERIFY(memory);
    QCOMPARE(sparse.size(), whole.size());

    const Header fromWhole = headerOf(whole);
    const Header fromSparse = headerOf(sparse);
    QVERIFY(fromWhole.size.isValid());
    QCOMPARE(fromSparse.size, fromWhole.size);
    QCOMPARE(fromSparse.format, fromWhole.format);
    const zeImageMetaReader::Blocks expected = metadataOf(whole);
    const zeImageMetaReader::Blocks actual = metadataOf(sparse);
    QCOMPARE(actual.baseline, expected.baseline);
    QCOMPARE(actual.exif, expected.exif);
    QCOMPARE(actual.record, expected.record);
    if (tagged)
        QVERIFY(actual.baseline.find("Maker") != std::string::npos);
}

void tst_zeImageFile::readWithoutPixelsLeavesThePixelBytesUnread_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("JPEG") << QByteArray("jpeg");
    QTest::newRow("TIFF") << QByteArray("tiff");
}

// Noise compresses badly, so most of each file is pixels: most of what was
// read must be zeros where the file holds other bytes, and every byte that
// was read must be the file's.
void tst_zeImageFile::readWithoutPixelsLeavesThePixelBytesUnread()
{
    QFETCH(QByteArray, format);
    const QString path = written(format.constData(), {});
    QVERIFY(!path.isEmpty());
    const QByteArray whole = ImageFixtures::readFile(path);
    QByteArray sparse;
    std::unique_ptr<zeZeroPages> memory;
    std::string why;
    QCOMPARE(zeImageFile::readWithoutPixels(path, 1 << 30, sparse, memory, why), zeImageFile::Read);
    int unread = 0;
    for (int i = 0; i < whole.size(); ++i) {
        if (sparse[i] != whole[i]) {
            QCOMPARE(int(sparse[i]), 0);
            ++unread;
        }
    }
    QVERIFY2(unread > whole.size() * 3 / 4, qPrintable(QString::number(unread)));
}

void tst_zeImageFile::readWithoutPixelsReadsOtherFormatsWhole()
{
    const QString path = written("png", {});
    QVERIFY(!path.isEmpty());
    QByteArray bytes;
    std::unique_ptr<zeZeroPages> memory;
    std::string why;
    QCOMPARE(zeImageFile::readWithoutPixels(path, 1 << 30, bytes, memory, why), zeImageFile::Read);
    QVERIFY(!memory);
    QCOMPARE(bytes, ImageFixtures::readFile(path));
}

void tst_zeImageFile::readWithoutPixelsRefusesWhatReadRefuses()
{
    const QString tiff = written("tiff", {});
    QVERIFY(!tiff.isEmpty());
    QByteArray bytes("stale");
    std::unique_ptr<zeZeroPages> memory;
    std::string why;
    QCOMPARE(zeImageFile::readWithoutPixels(tiff, 100, bytes, memory, why), zeImageFile::TooLarge);
    QVERIFY(bytes.isEmpty());
    QVERIFY(!memory);
    QCOMPARE(why, std::string("larger than 100 bytes"));
    QCOMPARE(zeImageFile::readWithoutPixels(_dir.path(), 1 << 30, bytes, memory, why),
             zeImageFile::CannotRead);
    QCOMPARE(why, std::string("is a directory"));
    QCOMPARE(zeImageFile::readWithoutPixels(_dir.filePath(QStringLiteral("missing.tif")), 1 << 30,
                                            bytes, memory, why),
             zeImageFile::CannotRead);
    QCOMPARE(why, std::string("no such file"));
}

void tst_zeImageFile::zeroPagesReadAsZeros()
{
    zeZeroPages pages(3 << 20);
    QVERIFY(pages.isValid());
    QCOMPARE(pages.size(), std::size_t(3 << 20));
    const QByteArray view = pages.bytes();
    QCOMPARE(view.size(), 3 << 20);
    QCOMPARE(view.count('\0'), 3 << 20);
    *pages.writable(12345, 1) = 'x';
    QCOMPARE(view.at(12345), 'x');
    QVERIFY(zeZeroPages(0).bytes().isEmpty());
}

// Memory given back serves the thread's next object, cleared of what was
// written; a larger request gets memory of its own, also all zeros.
void tst_zeImageFile::zeroPagesReadAsZerosWhenReused()
{
    const char* first = nullptr;
    {
        zeZeroPages pages(3 << 20);
        QVERIFY(pages.isValid());
        first = pages.bytes().constData();
        std::fill_n(pages.writable(0, 4096), 4096, 'a');
        std::fill_n(pages.writable(1 << 20, 100000), 100000, 'b');
        std::fill_n(pages.writable((3 << 20) - 7, 7), 7, 'c');
    }
    {
        zeZeroPages smaller(2 << 20);
        QVERIFY(smaller.isValid());
        QCOMPARE(smaller.bytes().constData(), first);
        QCOMPARE(smaller.bytes().count('\0'), 2 << 20);
        std::fill_n(smaller.writable(5, 10), 10, 'd');
    }
    zeZeroPages larger(4 << 20);
    QVERIFY(larger.isValid());
    QCOMPARE(larger.bytes().count('\0'), 4 << 20);
    zeZeroPages again(3 << 20);
    QVERIFY(again.isValid());
    QCOMPARE(again.bytes().count('\0'), 3 << 20);
}

void tst_zeImageFile::liveZeroPagesNeverShareMemory()
{
    { zeZeroPages given(1 << 20); }
    zeZeroPages one(1 << 20);
    zeZeroPages other(1 << 20);
    QVERIFY(one.isValid() && other.isValid());
    QVERIFY(one.bytes().constData() != other.bytes().constData());
    *one.writable(0, 1) = 'x';
    QCOMPARE(other.bytes().at(0), '\0');
}

// Each read leaves the pixels of the next file unread even where the file
// before had its header and metadata.
void tst_zeImageFile::readsOneAfterTheOtherEachSeeOnlyTheirOwnBytes()
{
    const QString jpeg = written("jpeg", {{"Exif.Image.Make", std::string(3000, 'm')}});
    QVERIFY(!jpeg.isEmpty());
    const QString tiff = _dir.filePath(QStringLiteral("other.tiff"));
    QVERIFY(ImageFixtures::write(ImageFixtures::noise(320, 200, 12), tiff, "tiff"));
    for (const QString& path : {jpeg, tiff, jpeg, tiff}) {
        const QByteArray whole = ImageFixtures::readFile(path);
        QByteArray sparse;
        std::unique_ptr<zeZeroPages> memory;
        std::string why;
        QCOMPARE(zeImageFile::readWithoutPixels(path, 1 << 30, sparse, memory, why),
                 zeImageFile::Read);
        QVERIFY(memory);
        QCOMPARE(sparse.size(), whole.size());
        int foreign = 0;
        for (int i = 0; i < whole.size(); ++i)
            foreign += sparse.at(i) != whole.at(i) && sparse.at(i) != 0;
        QCOMPARE(foreign, 0);
        QCOMPARE(headerOf(sparse).size, headerOf(whole).size);
    }
}

QTEST_GUILESS_MAIN(tst_zeImageFile)
#include "tst_zeImageFile.moc"
