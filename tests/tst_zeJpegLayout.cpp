// Where a JPEG file keeps its pixels: everything after its first scan
// header, found in files written by Qt (with and without metadata) and in
// marker sequences assembled here.

#include <zeJpegLayout.h>

#include "ImageFixtures.h"

#include <QBuffer>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using Range = zeTiffLayout::Range;

bool rangesOf(const QByteArray& file, std::vector<Range>& ranges)
{
    const auto readAt = [&file](std::uint64_t offset, std::uint64_t size) {
        return file.mid(int(offset), int(size));
    };
    return zeJpegLayout::pixelRanges(readAt, std::uint64_t(file.size()), ranges);
}

QByteArray segment(unsigned char marker, const QByteArray& payload)
{
    const int length = payload.size() + 2;
    QByteArray bytes;
    bytes.append(char(0xff)).append(char(marker));
    bytes.append(char(length >> 8)).append(char(length & 0xff));
    return bytes + payload;
}

const QByteArray StartOfImage("\xff\xd8", 2);
const QByteArray ScanData(100, '\x55');

// Start of image, a comment, a scan header of 8 payload bytes, scan data.
QByteArray minimalJpeg()
{
    return StartOfImage + segment(0xfe, "made here") + segment(0xda, QByteArray(8, '\1')) + ScanData;
}

} // namespace

class tst_zeJpegLayout : public QObject
{
    Q_OBJECT

private slots:
    void pixelsStartRightAfterTheFirstScanHeader();
    void pixelsOfAJpegWrittenByQtFollowItsScanHeader_data();
    void pixelsOfAJpegWrittenByQtFollowItsScanHeader();
    void fillBytesBeforeAMarkerAreSkipped();
    void standAloneMarkersHaveNoLength();
    void aScanHeaderEndingTheFileLeavesNoPixels();
    void brokenMarkerSequencesLeaveTheLayoutUntold_data();
    void brokenMarkerSequencesLeaveTheLayoutUntold();
};

void tst_zeJpegLayout::pixelsStartRightAfterTheFirstScanHeader()
{
    const QByteArray file = minimalJpeg();
    std::vector<Range> ranges;
    QVERIFY(rangesOf(file, ranges));
    QCOMPARE(ranges.size(), std::size_t(1));
    QCOMPARE(ranges[0].offset, std::uint64_t(file.size() - ScanData.size()));
    QCOMPARE(ranges[0].size, std::uint64_t(ScanData.size()));
}

void tst_zeJpegLayout::pixelsOfAJpegWrittenByQtFollowItsScanHeader_data()
{
    QTest::addColumn<bool>("withExif");
    QTest::newRow("plain") << false;
    QTest::newRow("with EXIF and XMP") << true;
}

// The scan header is found here by looking for its marker after the last
// table Qt writes (the Huffman tables, FF C4), which no metadata follows.
void tst_zeJpegLayout::pixelsOfAJpegWrittenByQtFollowItsScanHeader()
{
    QFETCH(bool, withExif);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("photo.jpg"));
    QVERIFY(ImageFixtures::write(ImageFixtures::noise(64, 48, 3), path, "jpeg"));
    if (withExif) {
        QVERIFY(ImageFixtures::addTags(path, {{"Exif.Photo.FNumber", "28/10"},
                                              {"Xmp.exif.FNumber", "28/10"}}));
    }
    const QByteArray file = ImageFixtures::readFile(path);
    const int lastTable = file.lastIndexOf(QByteArray("\xff\xc4", 2));
    const int scan = file.indexOf(QByteArray("\xff\xda", 2), lastTable);
    QVERIFY(lastTable > 0 && scan > lastTable);
    const int scanLength = (uchar(file[scan + 2]) << 8) | uchar(file[scan + 3]);
    std::vector<Range> ranges;
    QVERIFY(rangesOf(file, ranges));
    QCOMPARE(ranges.size(), std::size_t(1));
    QCOMPARE(ranges[0].offset, std::uint64_t(scan + 2 + scanLength));
    QCOMPARE(ranges[0].offset + ranges[0].size, std::uint64_t(file.size()));
}

void tst_zeJpegLayout::fillBytesBeforeAMarkerAreSkipped()
{
    const QByteArray file = StartOfImage + QByteArray(3, '\xff') + segment(0xfe, "x")
                            + segment(0xda, QByteArray(8, '\1')) + ScanData;
    std::vector<Range> ranges;
    QVERIFY(rangesOf(file, ranges));
    QCOMPARE(ranges[0].offset, std::uint64_t(file.size() - ScanData.size()));
}

void tst_zeJpegLayout::standAloneMarkersHaveNoLength()
{
    const QByteArray file = StartOfImage + QByteArray("\xff\x01", 2) + segment(0xfe, "x")
                            + segment(0xda, QByteArray(8, '\1')) + ScanData;
    std::vector<Range> ranges;
    QVERIFY(rangesOf(file, ranges));
    QCOMPARE(ranges[0].offset, std::uint64_t(file.size() - ScanData.size()));
}

void tst_zeJpegLayout::aScanHeaderEndingTheFileLeavesNoPixels()
{
    const QByteArray file = StartOfImage + segment(0xda, QByteArray(8, '\1'));
    std::vector<Range> ranges{{1, 1}};
    QVERIFY(rangesOf(file, ranges));
    QVERIFY(ranges.empty());
}

void tst_zeJpegLayout::brokenMarkerSequencesLeaveTheLayoutUntold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = minimalJpeg();
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not a JPEG") << QByteArrayLiteral("II*\0\x08\0\0\0");
    QTest::newRow("cut inside a segment") << whole.left(10);
    QTest::newRow("cut before the scan") << (StartOfImage + segment(0xfe, "x"));
    QTest::newRow("end of image before any scan")
        << (StartOfImage + segment(0xfe, "x") + QByteArray("\xff\xd9", 2) + ScanData);
    QTest::newRow("a second start of image") << (StartOfImage + StartOfImage + whole.mid(2));
    QTest::newRow("no marker where one belongs")
        << (StartOfImage + QByteArray("\x12\x34", 2) + whole.mid(2));
    QTest::newRow("a length below two") << (StartOfImage + QByteArray("\xff\xfe\0\1", 4) + ScanData);
    QTest::newRow("a length past the end")
        << (StartOfImage + QByteArray("\xff\xfe\xff\xff", 4) + ScanData);
}

void tst_zeJpegLayout::brokenMarkerSequencesLeaveTheLayoutUntold()
{
    QFETCH(QByteArray, bytes);
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(bytes, ranges));
}

QTEST_GUILESS_MAIN(tst_zeJpegLayout)
#include "tst_zeJpegLayout.moc"
