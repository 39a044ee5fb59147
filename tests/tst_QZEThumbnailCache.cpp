#include "ChildProcess.h"
#include "ImageFixtures.h"
#include "QZEThumbnailCache.h"
#include "TestHelpers.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

// The shared per-user thumbnail cache: names, records, staleness, owner-only
// files written whole, and several threads at once. Every test runs against
// a cache folder of its own; the user's real cache is never touched.
class tst_QZEThumbnailCache : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void roundTripGivesThePixelsAndTheOriginalSize();
    void largerPicturesAreScaledToFit256();
    void storedFileRecordsUriModificationTimeSizesAndSoftware();
    void storedPixelsAreCompressedAtZlibsFastestLevel();
    void thumbnailNameIsTheMd5OfTheFileUri();
    void publishedExampleUriGivesThePublishedName();
    void cacheRootFallsBackToHomeCacheWhenUnsetOrRelative();
    void modifiedFileMakesItsThumbnailStale();
    void recordsThatDoNotMatchTheFileAreIgnored_data();
    void recordsThatDoNotMatchTheFileAreIgnored();
    void thumbnailOfAnotherProgramWithTheRequiredKeysIsUsed();
    void thumbnailsWiderThan256AreRefused();
    void foldersAreOwnerOnlyAndTheFileIsOwnerOnly();
    void unwritableFolderFailsAndLeavesNothing();
    void fullDiskFailsAndLeavesNothing();
    void filesInsideTheThumbnailFolderAreNotStored();
    void missingFileOrNullPictureIsNotStored();
    void severalThreadsStoreAndLoadAtOnce();

private:
    QString largeFolder() const { return _cache->path() + QStringLiteral("/thumbnails/large"); }
    // A small PNG in the files folder, answered by its absolute path.
    QString makeFile(const QString& name, const QColor& colour = QColor(30, 90, 200)) const;
    // Writes a PNG to the thumbnail's place with the given text chunks, the
    // way another program would.
    void writeForeignThumbnail(const QString& file, const QImage& picture,
                               const QList<QPair<QString, QString>>& texts) const;
    QStringList largeFolderEntries() const;

    std::unique_ptr<QTemporaryDir> _cache;
    std::unique_ptr<QTemporaryDir> _files;
};

namespace {

mode_t modeOf(const QString& path)
{
    struct stat status {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return 0;
    return status.st_mode & 07777;
}

qint64 mtimeSecondsOf(const QString& path)
{
    struct stat status {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? qint64(status.st_mtime) : -1;
}

// Runs work in a child without root's right to write anywhere (as "nobody"
// when the tests run as root), so that folder permissions are obeyed.
int runUnprivileged(const std::function<int()>& work)
{
    const pid_t pid = fork();
    if (pid == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            _exit(99);
        _exit(work());
    }
    return pid < 0 ? -1 : waitForChild(pid).exitCode;
}

QByteArray textChunk(const QByteArray& key, const QByteArray& text)
{
    return ImageFixtures::pngChunk("tEXt", key + '\0' + text);
}

} // namespace

void tst_QZEThumbnailCache::init()
{
    _cache.reset(new QTemporaryDir);
    _files.reset(new QTemporaryDir);
    QVERIFY(_cache->isValid() && _files->isValid());
    qputenv("XDG_CACHE_HOME", QFile::encodeName(_cache->path()));
}

void tst_QZEThumbnailCache::cleanup()
{
    // The unprivileged tests loosen and tighten modes; put them back so the
    // folders can be removed.
    chmod(QFile::encodeName(largeFolder()).constData(), 0700);
    _cache.reset();
    _files.reset();
    qunsetenv("XDG_CACHE_HOME");
}

QString tst_QZEThumbnailCache::makeFile(const QString& name, const QColor& colour) const
{
    const QString path = _files->filePath(name);
    if (!ImageFixtures::write(ImageFixtures::filled(40, 30, QImage::Format_RGB32, colour), path,
                              "png"))
        return QString();
    return path;
}

void tst_QZEThumbnailCache::writeForeignThumbnail(
    const QString& file, const QImage& picture,
    const QList<QPair<QString, QString>>& texts) const
{
    QVERIFY(QDir().mkpath(largeFolder()));
    QImage withTexts = picture;
    for (const auto& text : texts)
        withTexts.setText(text.first, text.second);
    QVERIFY(withTexts.save(QZEThumbnailCache::thumbnailPath(file), "png"));
}

QStringList tst_QZEThumbnailCache::largeFolderEntries() const
{
    return QDir(largeFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void tst_QZEThumbnailCache::roundTripGivesThePixelsAndTheOriginalSize()
{
    const QString file = makeFile(QStringLiteral("photo.png"));
    const QImage picture = ImageFixtures::noise(200, 100, 7);

    QVERIFY(QZEThumbnailCache::store(file, picture, QSize(4000, 2000)));
    QSize original;
    const QImage loaded = QZEThumbnailCache::load(file, &original);

    QCOMPARE(loaded.convertToFormat(QImage::Format_RGB32), picture);
    QCOMPARE(original, QSize(4000, 2000));
}

void tst_QZEThumbnailCache::largerPicturesAreScaledToFit256()
{
    const QString file = makeFile(QStringLiteral("wide.png"));

    QVERIFY(QZEThumbnailCache::store(file, ImageFixtures::noise(1000, 500, 3), QSize(1000, 500)));

    QCOMPARE(QZEThumbnailCache::load(file, nullptr).size(), QSize(256, 128));
}

void tst_QZEThumbnailCache::storedFileRecordsUriModificationTimeSizesAndSoftware()
{
    const QString file = makeFile(QStringLiteral("record.png"));
    QVERIFY(QZEThumbnailCache::store(file, ImageFixtures::noise(64, 48, 1), QSize(640, 480)));

    QImageReader reader(QZEThumbnailCache::thumbnailPath(file), "png");
    const QImage stored = reader.read();
    QVERIFY(!stored.isNull());
    QCOMPARE(stored.text(QStringLiteral("Thumb::URI")), QStringLiteral("file://") + file);
    QCOMPARE(stored.text(QStringLiteral("Thumb::MTime")), QString::number(mtimeSecondsOf(file)));
    QCOMPARE(stored.text(QStringLiteral("Thumb::Size")),
             QString::number(ImageFixtures::readFile(file).size()));
    QCOMPARE(stored.text(QStringLiteral("Thumb::Image::Width")), QStringLiteral("640"));
    QCOMPARE(stored.text(QStringLiteral("Thumb::Image::Height")), QStringLiteral("480"));
    QCOMPARE(stored.text(QStringLiteral("Software")), QStringLiteral("QtColor"));
}

// The zlib stream of the first IDAT chunk starts with CMF and FLG; FLG's top
// two bits are the compression level class, 0 for zlib's levels 0 and 1.
void tst_QZEThumbnailCache::storedPixelsAreCompressedAtZlibsFastestLevel()
{
    const QString file = makeFile(QStringLiteral("level.png"));
    QVERIFY(QZEThumbnailCache::store(file, ImageFixtures::noise(200, 150, 2), QSize(200, 150)));
    const QByteArray png = ImageFixtures::readFile(QZEThumbnailCache::thumbnailPath(file));
    const int idat = png.indexOf("IDAT");
    QVERIFY(idat > 0);
    QVERIFY(png.size() > idat + 6);
    const auto cmf = quint8(png[idat + 4]);
    const auto flg = quint8(png[idat + 5]);
    QCOMPARE(cmf & 0x0f, 8); // deflate
    QCOMPARE((cmf * 256 + flg) % 31, 0);
    QCOMPARE(flg >> 6, 0);
}

void tst_QZEThumbnailCache::thumbnailNameIsTheMd5OfTheFileUri()
{
    const QString file = makeFile(QStringLiteral("a b#1.png"));
    // Written out by hand: the blank and the hash sign are escaped.
    const QString uri = QStringLiteral("file://") + _files->path() + QStringLiteral("/a%20b%231.png");
    const QString md5 = QString::fromLatin1(
        QCryptographicHash::hash(uri.toUtf8(), QCryptographicHash::Md5).toHex());

    QCOMPARE(QZEThumbnailCache::fileUri(file), uri);
    QCOMPARE(QZEThumbnailCache::thumbnailPath(file),
             _cache->path() + QStringLiteral("/thumbnails/large/") + md5 + QStringLiteral(".png"));
    QVERIFY(QZEThumbnailCache::store(file, ImageFixtures::noise(8, 8, 2), QSize(8, 8)));
    QVERIFY(QFileInfo::exists(largeFolder() + QLatin1Char('/') + md5 + QStringLiteral(".png")));
}

// The example of the shared standard: file:///home/jens/photos/me.png.
void tst_QZEThumbnailCache::publishedExampleUriGivesThePublishedName()
{
    QVERIFY(QZEThumbnailCache::thumbnailPath(QStringLiteral("/home/jens/photos/me.png"))
                .endsWith(QStringLiteral("/large/c6ee772d9e49320e97ec29a7eb5b1697.png")));
}

void tst_QZEThumbnailCache::cacheRootFallsBackToHomeCacheWhenUnsetOrRelative()
{
    const QString home = QDir::homePath() + QStringLiteral("/.cache/thumbnails");
    qunsetenv("XDG_CACHE_HOME");
    QCOMPARE(QZEThumbnailCache::thumbnailRoot(), home);
    qputenv("XDG_CACHE_HOME", "");
    QCOMPARE(QZEThumbnailCache::thumbnailRoot(), home);
    qputenv("XDG_CACHE_HOME", "relative/cache");
    QCOMPARE(QZEThumbnailCache::thumbnailRoot(), home);
}

void tst_QZEThumbnailCache::modifiedFileMakesItsThumbnailStale()
{
    const QString file = makeFile(QStringLiteral("changing.png"));
    QVERIFY(QZEThumbnailCache::store(file, ImageFixtures::noise(16, 16, 4), QSize(16, 16)));
    QVERIFY(!QZEThumbnailCache::load(file, nullptr).isNull());

    QFile handle(file);
    QVERIFY(handle.open(QIODevice::ReadWrite));
    QVERIFY(handle.setFileTime(QFileInfo(file).lastModified().addSecs(5),
                               QFileDevice::FileModificationTime));
    handle.close();

    QSize original(1, 1);
    QVERIFY(QZEThumbnailCache::load(file, &original).isNull());
    QCOMPARE(original, QSize());
}

void tst_QZEThumbnailCache::recordsThatDoNotMatchTheFileAreIgnored_data()
{
    QTest::addColumn<QString>("uri");
    QTest::addColumn<QString>("mtimeOffset");
    QTest::addColumn<QString>("size");

    QTest::newRow("another file's URI") << QStringLiteral("other.png") << "0" << "";
    QTest::newRow("one second newer") << QString() << "1" << "";
    QTest::newRow("no modification time") << QString() << "none" << "";
    QTest::newRow("another byte size") << QString() << "0" << "1";
}

void tst_QZEThumbnailCache::recordsThatDoNotMatchTheFileAreIgnored()
{
    QFETCH(QString, uri);
    QFETCH(QString, mtimeOffset);
    QFETCH(QString, size);
    const QString file = makeFile(QStringLiteral("recorded.png"));
    const QString recordedUri = QStringLiteral("file://")
                                + (uri.isEmpty() ? file : _files->filePath(uri));
    QList<QPair<QString, QString>> texts{{QStringLiteral("Thumb::URI"), recordedUri}};
    if (mtimeOffset != QLatin1String("none"))
        texts.append({QStringLiteral("Thumb::MTime"),
                      QString::number(mtimeSecondsOf(file) + mtimeOffset.toLongLong())});
    if (!size.isEmpty())
        texts.append({QStringLiteral("Thumb::Size"), size});
    QZE_CHECK(writeForeignThumbnail(file, ImageFixtures::noise(32, 24, 5), texts));

    QVERIFY(QZEThumbnailCache::load(file, nullptr).isNull());
}

void tst_QZEThumbnailCache::thumbnailOfAnotherProgramWithTheRequiredKeysIsUsed()
{
    const QString file = makeFile(QStringLiteral("foreign.png"));
    const QImage picture = ImageFixtures::noise(32, 24, 6);
    QZE_CHECK(writeForeignThumbnail(
        file, picture,
        {{QStringLiteral("Thumb::URI"), QStringLiteral("file://") + file},
         {QStringLiteral("Thumb::MTime"), QString::number(mtimeSecondsOf(file))}}));

    QSize original(1, 1);
    const QImage loaded = QZEThumbnailCache::load(file, &original);

    QCOMPARE(loaded.convertToFormat(QImage::Format_RGB32), picture);
    QCOMPARE(original, QSize());
}

// A few hundred bytes of PNG may claim a picture of any size; the cache only
// holds pictures of up to 256 x 256, so more is refused before decoding.
void tst_QZEThumbnailCache::thumbnailsWiderThan256AreRefused()
{
    const QString file = makeFile(QStringLiteral("claimed.png"));
    const QByteArray records =
        textChunk("Thumb::URI", ("file://" + file).toUtf8())
        + textChunk("Thumb::MTime", QByteArray::number(mtimeSecondsOf(file)));
    const auto pngOfWidth = [&](quint32 width) {
        const QByteArray plain = ImageFixtures::blackGreyPng(width, 2);
        const int idat = plain.indexOf("IDAT") - 4;
        return plain.left(idat) + records + plain.mid(idat);
    };
    QVERIFY(QDir().mkpath(largeFolder()));
    const QString thumbnail = QZEThumbnailCache::thumbnailPath(file);

    QVERIFY(ImageFixtures::writeFile(thumbnail, pngOfWidth(256)));
    QCOMPARE(QZEThumbnailCache::load(file, nullptr).size(), QSize(256, 2));
    QVERIFY(ImageFixtures::writeFile(thumbnail, pngOfWidth(257)));
    QVERIFY(QZEThumbnailCache::load(file, nullptr).isNull());
}

void tst_QZEThumbnailCache::foldersAreOwnerOnlyAndTheFileIsOwnerOnly()
{
    const QString file = makeFile(QStringLiteral("private.png"));
    const mode_t previousMask = umask(022);
    const bool stored = QZEThumbnailCache::store(file, ImageFixtures::noise(8, 8, 8), QSize(8, 8));
    umask(previousMask);
    QVERIFY(stored);

    QCOMPARE(modeOf(_cache->path() + QStringLiteral("/thumbnails")), mode_t(0700));
    QCOMPARE(modeOf(largeFolder()), mode_t(0700));
    QCOMPARE(modeOf(QZEThumbnailCache::thumbnailPath(file)), mode_t(0600));
}

void tst_QZEThumbnailCache::unwritableFolderFailsAndLeavesNothing()
{
    const QString file = makeFile(QStringLiteral("readonly.png"));
    QVERIFY(QDir().mkpath(largeFolder()));
    for (const QString& folder : {_cache->path(), _cache->path() + QStringLiteral("/thumbnails"),
                                  _files->path()})
        QCOMPARE(chmod(QFile::encodeName(folder).constData(), 0755), 0);
    QCOMPARE(chmod(QFile::encodeName(largeFolder()).constData(), 0555), 0);

    const int result = runUnprivileged([&] {
        return QZEThumbnailCache::store(file, ImageFixtures::noise(8, 8, 9), QSize(8, 8)) ? 1 : 0;
    });

    QCOMPARE(result, 0);
    QCOMPARE(largeFolderEntries(), QStringList());
}

void tst_QZEThumbnailCache::fullDiskFailsAndLeavesNothing()
{
    const QString file = makeFile(QStringLiteral("full.png"));
    QVERIFY(QDir().mkpath(largeFolder()));

    const ChildResult child = runWithFileSizeLimit(200, [&] {
        return QZEThumbnailCache::store(file, ImageFixtures::noise(64, 64, 10), QSize(64, 64)) ? 1
                                                                                                : 0;
    });

    QVERIFY(child.exited);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(largeFolderEntries(), QStringList());
}

void tst_QZEThumbnailCache::filesInsideTheThumbnailFolderAreNotStored()
{
    QVERIFY(QDir().mkpath(largeFolder()));
    const QString inside = largeFolder() + QStringLiteral("/0123456789abcdef0123456789abcdef.png");
    QVERIFY(ImageFixtures::write(ImageFixtures::noise(16, 16, 11), inside, "png"));

    QVERIFY(!QZEThumbnailCache::store(inside, ImageFixtures::noise(16, 16, 11), QSize(16, 16)));
    QCOMPARE(largeFolderEntries(), QStringList{QFileInfo(inside).fileName()});
}

void tst_QZEThumbnailCache::missingFileOrNullPictureIsNotStored()
{
    const QString file = makeFile(QStringLiteral("present.png"));

    QVERIFY(!QZEThumbnailCache::store(_files->filePath(QStringLiteral("absent.png")),
                                      ImageFixtures::noise(8, 8, 12), QSize(8, 8)));
    QVERIFY(!QZEThumbnailCache::store(file, QImage(), QSize(8, 8)));
    QVERIFY(!QFileInfo::exists(_cache->path() + QStringLiteral("/thumbnails")));
}

void tst_QZEThumbnailCache::severalThreadsStoreAndLoadAtOnce()
{
    const int files = 24;
    QStringList paths;
    for (int i = 0; i < files; ++i)
        paths << makeFile(QStringLiteral("concurrent%1.png").arg(i));
    std::atomic<int> stored{0};
    std::atomic<int> loaded{0};
    // Each file twice, by two threads, so that two threads also race for the
    // same thumbnail. Plain threads, whose start and join ThreadSanitizer sees.
    std::vector<std::thread> threads;
    for (int t = 0; t < 6; ++t) {
        threads.emplace_back([&stored, &loaded, &paths, t] {
            for (int job = t; job < 2 * files; job += 6) {
                const int i = job % files;
                if (QZEThumbnailCache::store(paths.at(i), ImageFixtures::noise(48, 32, quint32(i)),
                                             QSize(480, 320)))
                    ++stored;
                QSize original;
                if (QZEThumbnailCache::load(paths.at(i), &original).size() == QSize(48, 32)
                    && original == QSize(480, 320))
                    ++loaded;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    QCOMPARE(stored.load(), 2 * files);
    QCOMPARE(loaded.load(), 2 * files);
    QCOMPARE(largeFolderEntries().size(), files);
}

QTEST_GUILESS_MAIN(tst_QZEThumbnailCache)
#include "tst_QZEThumbnailCache.moc"
