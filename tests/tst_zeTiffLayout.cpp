// Where a TIFF file keeps its pixels: files written by Qt, checked against
// the strip positions exiv2 reads from them, and files assembled byte by
// byte here for the layouts a writer may choose and the ones a hostile file
// may try.

#include <zeTiffLayout.h>

#include "ImageFixtures.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtTest>

#include <exiv2/exiv2.hpp>

namespace {

using Range = zeTiffLayout::Range;

zeTiffLayout::ReadAt readerOf(const QByteArray& file)
{
    return [file](std::uint64_t offset, std::uint64_t size) {
        return file.mid(int(offset), int(size));
    };
}

bool rangesOf(const QByteArray& file, std::vector<Range>& ranges)
{
    return zeTiffLayout::pixelRanges(readerOf(file), std::uint64_t(file.size()), ranges);
}

// The pixel ranges as (offset, size) pairs; told says whether the layout was
// given at all.
using Spans = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

Spans spansOf(const QByteArray& file, bool& told)
{
    std::vector<Range> ranges;
    told = rangesOf(file, ranges);
    Spans spans;
    for (const Range& range : ranges)
        spans.emplace_back(range.offset, range.size);
    return spans;
}

// A TIFF assembled entry by entry: put() writes numbers in the file's byte
// order at a given offset, growing the file as needed.
class TiffBytes
{
public:
    explicit TiffBytes(bool bigEndian)
        : _bigEndian(bigEndian)
    {
        _bytes = bigEndian ? QByteArrayLiteral("MM\0*") : QByteArrayLiteral("II*\0");
        put(4, 4, 0);
    }

    void put(int offset, int size, std::uint64_t value)
    {
        grow(offset + size);
        for (int i = 0; i < size; ++i) {
            const int shift = 8 * (_bigEndian ? size - 1 - i : i);
            _bytes[offset + i] = char((value >> shift) & 0xff);
        }
    }

    struct Entry
    {
        std::uint16_t tag;
        std::uint16_t type;
        std::uint32_t count;
        std::uint32_t value;
    };

    // A directory at offset holding entries, linking to next.
    void directory(int offset, const std::vector<Entry>& entries, std::uint32_t next = 0)
    {
        put(offset, 2, entries.size());
        int at = offset + 2;
        for (const Entry& entry : entries) {
            put(at, 2, entry.tag);
            put(at + 2, 2, entry.type);
            put(at + 4, 4, entry.count);
            // A short inline value sits in the first bytes of the field.
            const int inlineSize = entry.type == 3 && entry.count == 1 ? 2 : 4;
            put(at + 8, inlineSize, entry.value);
            at += 12;
        }
        put(at, 4, next);
    }

    void firstDirectory(std::uint32_t offset) { put(4, 4, offset); }
    void grow(int size)
    {
        if (_bytes.size() < size)
            _bytes.append(QByteArray(size - _bytes.size(), '\0'));
    }
    const QByteArray& bytes() const { return _bytes; }

private:
    bool _bigEndian;
    QByteArray _bytes;
};

constexpr std::uint16_t Short = 3;
constexpr std::uint16_t Long = 4;

// One image of two strips: 1000..1399 and 1400..1599; the offsets and counts
// as arrays at 200 and 208.
TiffBytes twoStrips(bool bigEndian)
{
    TiffBytes tiff(bigEndian);
    tiff.firstDirectory(8);
    tiff.directory(8, {{256, Short, 1, 20}, {273, Long, 2, 200}, {279, Long, 2, 208}});
    tiff.put(200, 4, 1000);
    tiff.put(204, 4, 1400);
    tiff.put(208, 4, 400);
    tiff.put(212, 4, 200);
    tiff.grow(1600);
    return tiff;
}

// The strips of every image in the file, as exiv2 reads them.
std::vector<Range> stripsByExiv2(const QByteArray& file)
{
    auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(file.constData()),
                                           long(file.size()));
    image->readMetadata();
    const Exiv2::ExifData& exif = image->exifData();
    const auto offsets = exif.findKey(Exiv2::ExifKey("Exif.Image.StripOffsets"));
    const auto counts = exif.findKey(Exiv2::ExifKey("Exif.Image.StripByteCounts"));
    std::vector<Range> strips;
    if (offsets == exif.end() || counts == exif.end())
        return strips;
    for (long i = 0; i < offsets->count(); ++i)
        strips.push_back({std::uint64_t(offsets->toLong(i)), std::uint64_t(counts->toLong(i))});
    return strips;
}

} // namespace

class tst_zeTiffLayout : public QObject
{
    Q_OBJECT

private slots:
    void pixelsOfATiffWrittenByQtAreItsStrips_data();
    void pixelsOfATiffWrittenByQtAreItsStrips();
    void stripsAreFoundInEitherByteOrder_data();
    void stripsAreFoundInEitherByteOrder();
    void tilesCountAsPixels();
    void adjacentStripsMergeIntoOneRange();
    void everyImageOfTheChainCounts();
    void aSingleInlineStripIsFound();
    void pixelsRunningPastTheEndAreClipped();
    void notATiffHasNoLayout_data();
    void notATiffHasNoLayout();
    void metadataInsideThePixelsLeavesTheLayoutUntold_data();
    void metadataInsideThePixelsLeavesTheLayoutUntold();
    void aLoopingChainLeavesTheLayoutUntold();
    void aCutDirectoryLeavesTheLayoutUntold();
    void anUnknownFieldTypeLeavesTheLayoutUntold();
    void unevenOffsetAndCountListsLeaveTheLayoutUntold();
    void aHugeStripCountLeavesTheLayoutUntold();
    void tooManyTagValuesLeaveTheLayoutUntold();
    void metadataBetweenManyStripsIsCheckedAgainstEach();
};

void tst_zeTiffLayout::pixelsOfATiffWrittenByQtAreItsStrips_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("compression");
    const QImage noise = ImageFixtures::noise(97, 61, 4);
    QTest::newRow("RGB, uncompressed") << noise << 0;
    QTest::newRow("RGB, LZW") << noise << 1;
    QTest::newRow("RGBA, LZW") << noise.convertToFormat(QImage::Format_ARGB32) << 1;
    QTest::newRow("grey") << noise.convertToFormat(QImage::Format_Grayscale8) << 0;
}

void tst_zeTiffLayout::pixelsOfATiffWrittenByQtAreItsStrips()
{
    QFETCH(QImage, image);
    QFETCH(int, compression);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "tiff");
    writer.setCompression(compression);
    QVERIFY(writer.write(image));

    std::vector<Range> strips = stripsByExiv2(file);
    QVERIFY(!strips.empty());
    std::vector<Range> ranges;
    QVERIFY(rangesOf(file, ranges));
    // Every strip lies inside a range, and every range byte is a strip's.
    std::uint64_t stripBytes = 0;
    for (const Range& strip : strips) {
        stripBytes += strip.size;
        const bool covered = std::any_of(ranges.begin(), ranges.end(), [&](const Range& range) {
            return range.offset <= strip.offset
                   && strip.offset + strip.size <= range.offset + range.size;
        });
        QVERIFY(covered);
    }
    std::uint64_t rangeBytes = 0;
    for (const Range& range : ranges)
        rangeBytes += range.size;
    QCOMPARE(rangeBytes, stripBytes);
}

void tst_zeTiffLayout::stripsAreFoundInEitherByteOrder_data()
{
    QTest::addColumn<bool>("bigEndian");
    QTest::newRow("little-endian") << false;
    QTest::newRow("big-endian") << true;
}

void tst_zeTiffLayout::stripsAreFoundInEitherByteOrder()
{
    QFETCH(bool, bigEndian);
    bool told = false;
    QCOMPARE(spansOf(twoStrips(bigEndian).bytes(), told), (Spans{{1000, 600}}));
    QVERIFY(told);
}

void tst_zeTiffLayout::tilesCountAsPixels()
{
    TiffBytes tiff(false);
    tiff.firstDirectory(8);
    tiff.directory(8, {{324, Long, 2, 100}, {325, Long, 2, 108}});
    tiff.put(100, 4, 500);
    tiff.put(104, 4, 900);
    tiff.put(108, 4, 64);
    tiff.put(112, 4, 64);
    tiff.grow(1000);
    bool told = false;
    QCOMPARE(spansOf(tiff.bytes(), told), (Spans{{500, 64}, {900, 64}}));
    QVERIFY(told);
}

void tst_zeTiffLayout::adjacentStripsMergeIntoOneRange()
{
    // Strips 1000..1399 and 1400..1599 touch: one range, as checked above;
    // here they overlap, which still gives one range.
    TiffBytes tiff = twoStrips(false);
    tiff.put(204, 4, 1300);
    bool told = false;
    QCOMPARE(spansOf(tiff.bytes(), told), (Spans{{1000, 500}}));
    QVERIFY(told);
}

void tst_zeTiffLayout::everyImageOfTheChainCounts()
{
    TiffBytes tiff(false);
    tiff.firstDirectory(8);
    tiff.directory(8, {{273, Long, 1, 800}, {279, Long, 1, 100}}, 60);
    tiff.directory(60, {{273, Long, 1, 1200}, {279, Long, 1, 50}});
    tiff.grow(1300);
    bool told = false;
    QCOMPARE(spansOf(tiff.bytes(), told), (Spans{{800, 100}, {1200, 50}}));
    QVERIFY(told);
}

void tst_zeTiffLayout::aSingleInlineStripIsFound()
{
    TiffBytes tiff(true);
    tiff.firstDirectory(8);
    tiff.directory(8, {{273, Short, 1, 300}, {279, Short, 1, 40}});
    tiff.grow(400);
    bool told = false;
    QCOMPARE(spansOf(tiff.bytes(), told), (Spans{{300, 40}}));
    QVERIFY(told);
}

void tst_zeTiffLayout::pixelsRunningPastTheEndAreClipped()
{
    TiffBytes tiff = twoStrips(false);
    bool told = false;
    QCOMPARE(spansOf(tiff.bytes().left(1500), told), (Spans{{1000, 500}}));
    QVERIFY(told);
}

void tst_zeTiffLayout::notATiffHasNoLayout_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("signature only") << QByteArrayLiteral("II*\0");
    QTest::newRow("BigTIFF") << QByteArrayLiteral("II+\0\x08\0\0\0\x10\0\0\0\0\0\0\0");
    QTest::newRow("JPEG") << QByteArray("\xff\xd8\xff\xe0\0\x10JFIF", 10);
}

void tst_zeTiffLayout::notATiffHasNoLayout()
{
    QFETCH(QByteArray, bytes);
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(bytes, ranges));
}

void tst_zeTiffLayout::metadataInsideThePixelsLeavesTheLayoutUntold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    TiffBytes valueInside = twoStrips(false);
    // An ASCII value of 20 bytes at 1100, inside the first strip.
    valueInside.directory(8, {{270, 2, 20, 1100}, {273, Long, 2, 200}, {279, Long, 2, 208}});
    QTest::newRow("a tag value") << valueInside.bytes();

    TiffBytes exifInside = twoStrips(false);
    exifInside.directory(8, {{273, Long, 2, 200}, {279, Long, 2, 208}, {34665, Long, 1, 1500}});
    exifInside.directory(1500, {{33434, 5, 1, 40}});
    QTest::newRow("the EXIF directory") << exifInside.bytes();

    TiffBytes nextInside = twoStrips(false);
    nextInside.directory(8, {{273, Long, 2, 200}, {279, Long, 2, 208}}, 1200);
    nextInside.directory(1200, {{256, Short, 1, 4}});
    QTest::newRow("the next directory") << nextInside.bytes();

    TiffBytes offsetsInside = twoStrips(false);
    offsetsInside.directory(8, {{273, Long, 2, 1008}, {279, Long, 2, 208}});
    offsetsInside.put(1008, 4, 1000);
    offsetsInside.put(1012, 4, 1400);
    QTest::newRow("the strip list itself") << offsetsInside.bytes();
}

void tst_zeTiffLayout::metadataInsideThePixelsLeavesTheLayoutUntold()
{
    QFETCH(QByteArray, bytes);
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(bytes, ranges));
}

void tst_zeTiffLayout::aLoopingChainLeavesTheLayoutUntold()
{
    TiffBytes tiff(false);
    tiff.firstDirectory(8);
    tiff.directory(8, {{256, Short, 1, 4}}, 40);
    tiff.directory(40, {{257, Short, 1, 4}}, 8);
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(tiff.bytes(), ranges));
}

void tst_zeTiffLayout::aCutDirectoryLeavesTheLayoutUntold()
{
    const QByteArray whole = twoStrips(false).bytes();
    std::vector<Range> ranges;
    // The directory at 8 holds three entries: 8 + 2 + 36 + 4 = 50 bytes.
    QVERIFY(!rangesOf(whole.left(40), ranges));
}

void tst_zeTiffLayout::anUnknownFieldTypeLeavesTheLayoutUntold()
{
    TiffBytes tiff = twoStrips(false);
    tiff.directory(8, {{256, 99, 1, 20}, {273, Long, 2, 200}, {279, Long, 2, 208}});
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(tiff.bytes(), ranges));
}

void tst_zeTiffLayout::unevenOffsetAndCountListsLeaveTheLayoutUntold()
{
    TiffBytes tiff = twoStrips(false);
    tiff.directory(8, {{273, Long, 2, 200}, {279, Long, 1, 400}});
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(tiff.bytes(), ranges));
}

void tst_zeTiffLayout::aHugeStripCountLeavesTheLayoutUntold()
{
    TiffBytes tiff(false);
    tiff.firstDirectory(8);
    const std::uint32_t strips = (1u << 20) + 1;
    tiff.directory(8, {{273, Long, strips, 64}, {279, Long, strips, 64}});
    tiff.grow(int(64 + 4 * strips));
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(tiff.bytes(), ranges));
}

// Two directories of 40,000 entries, each with a value of its own outside the
// entry: more bookkeeping than any real file needs.
void tst_zeTiffLayout::tooManyTagValuesLeaveTheLayoutUntold()
{
    const int entries = 40000;
    TiffBytes tiff(false);
    tiff.firstDirectory(8);
    std::vector<TiffBytes::Entry> many(entries, {270, 2, 8, 16});
    const int second = 8 + 2 + entries * 12 + 4;
    tiff.directory(8, many, std::uint32_t(second));
    tiff.directory(second, many);
    std::vector<Range> ranges;
    QVERIFY(!rangesOf(tiff.bytes(), ranges));
    // One such directory alone is taken.
    tiff.directory(8, many);
    QVERIFY(rangesOf(tiff.bytes(), ranges));
    QVERIFY(ranges.empty());
}

// Ten thousand strips with gaps between them, and one tag value placed in a
// gap or just inside a strip: each must be told apart.
void tst_zeTiffLayout::metadataBetweenManyStripsIsCheckedAgainstEach()
{
    const int strips = 10000;
    const int first = 100000;
    for (const int valueAt : {first + 5000 * 20 + 12, first + 5000 * 20 + 9}) {
        TiffBytes tiff(false);
        tiff.firstDirectory(8);
        // Strip i covers first + 20 i .. first + 20 i + 9; bytes 10 to 19 of each
        // step are a gap.
        tiff.directory(8, {{273, Long, strips, 64}, {279, Long, strips, 64 + 4 * strips},
                           {270, 2, 6, std::uint32_t(valueAt)}});
        for (int i = 0; i < strips; ++i) {
            tiff.put(64 + 4 * i, 4, std::uint64_t(first + 20 * i));
            tiff.put(64 + 4 * strips + 4 * i, 4, 10);
        }
        tiff.grow(first + 20 * strips);
        std::vector<Range> ranges;
        const bool inGap = (valueAt - first) % 20 >= 10 && (valueAt - first) % 20 + 6 <= 20;
        QCOMPARE(rangesOf(tiff.bytes(), ranges), inGap);
        if (inGap)
            QCOMPARE(ranges.size(), std::size_t(strips));
    }
}

QTEST_GUILESS_MAIN(tst_zeTiffLayout)
#include "tst_zeTiffLayout.moc"
