#include "zeIconManager.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace {

QImage comparable(const QImage& image)
{
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage pixmapImage(const QIcon& icon, int size)
{
    return comparable(icon.pixmap(size, size).toImage());
}

QImage bundledRendering(const QString& themeName, int size)
{
    return comparable(QImage(QStringLiteral(":/qtcolor/icons/%1-%2.png").arg(themeName).arg(size)));
}

bool hasVisiblePixel(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 0)
                return true;
    return false;
}

int largestChannelDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, qAbs(qRed(p) - qRed(q)), qAbs(qGreen(p) - qGreen(q)),
                                qAbs(qBlue(p) - qBlue(q)), qAbs(qAlpha(p) - qAlpha(q))});
        }
    }
    return largest;
}

} // namespace

class tst_zeIconManager : public QObject
{
    Q_OBJECT

private:
    QString _themeName;
    QStringList _themeSearchPaths;
    QStringList _fallbackSearchPaths;
    QTemporaryDir _noThemes;

    // Leaves the icon loader nothing to find, so only bundled icons remain.
    void useMissingTheme()
    {
        QIcon::setThemeSearchPaths({_noThemes.path()});
        QIcon::setFallbackSearchPaths({});
        QIcon::setThemeName("qtcolor-test-no-such-theme");
    }

    static void addKnownNames()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("themeName");
        QTest::newRow("FileOpen") << "FileOpen" << "document-open";
        QTest::newRow("CreateNew") << "CreateNew" << "document-new";
        QTest::newRow("Save") << "Save" << "document-save";
    }

private slots:
    void initTestCase()
    {
        QVERIFY(_noThemes.isValid());
        _themeName = QIcon::themeName();
        _themeSearchPaths = QIcon::themeSearchPaths();
        _fallbackSearchPaths = QIcon::fallbackSearchPaths();
    }

    void cleanup()
    {
        QIcon::setThemeSearchPaths(_themeSearchPaths);
        QIcon::setFallbackSearchPaths(_fallbackSearchPaths);
        QIcon::setThemeName(_themeName);
    }

    void knownNamesGiveVisibleIcons_data() { addKnownNames(); }

    void knownNamesGiveVisibleIcons()
    {
        QFETCH(QString, name);
        const QIcon icon = zeIconManager::getIcon(name);
        QVERIFY(!icon.isNull());
        const QImage image = pixmapImage(icon, 32);
        QVERIFY(!image.isNull());
        QVERIFY(hasVisiblePixel(image));
    }

    void unknownNamesGiveNullIcon_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("other name") << "Delete";
        QTest::newRow("different case") << "fileopen";
        QTest::newRow("theme name") << "document-open";
    }

    void unknownNamesGiveNullIcon()
    {
        QFETCH(QString, name);
        QVERIFY(zeIconManager::getIcon(name).isNull());
    }

    void missingThemeFallsBackToBundledIcon_data() { addKnownNames(); }

    void missingThemeFallsBackToBundledIcon()
    {
        QFETCH(QString, name);
        QFETCH(QString, themeName);
        useMissingTheme();
        const QIcon icon = zeIconManager::getIcon(name);
        QCOMPARE(icon.availableSizes(), (QList<QSize>{{16, 16}, {32, 32}, {64, 64}}));
        for (const int size : {16, 32, 64})
            QCOMPARE(pixmapImage(icon, size), bundledRendering(themeName, size));
    }

    void bundledIconScalesToOtherSizes()
    {
        useMissingTheme();
        const QImage image = pixmapImage(zeIconManager::getIcon("Save"), 48);
        QCOMPARE(image.size(), QSize(48, 48));
        QVERIFY(hasVisiblePixel(image));
    }

    void themeIconTakesPrecedence()
    {
        // A one-icon theme whose "document-open" is plain red.
        QTemporaryDir root;
        QVERIFY(root.isValid());
        QDir themeDir(root.path());
        QVERIFY(themeDir.mkpath("redtheme/32x32/actions"));
        QFile index(themeDir.filePath("redtheme/index.theme"));
        QVERIFY(index.open(QIODevice::WriteOnly | QIODevice::Text));
        index.write("[Icon Theme]\nName=Red\nDirectories=32x32/actions\n\n"
                    "[32x32/actions]\nSize=32\nType=Fixed\n");
        index.close();
        QImage red(32, 32, QImage::Format_ARGB32);
        red.fill(QColor(255, 0, 0));
        QVERIFY(red.save(themeDir.filePath("redtheme/32x32/actions/document-open.png")));

        QIcon::setThemeSearchPaths({root.path()});
        QIcon::setThemeName("redtheme");
        const QImage image = pixmapImage(zeIconManager::getIcon("FileOpen"), 32);
        QCOMPARE(image.pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(31, 31), qRgb(255, 0, 0));
        // Names the theme lacks still come from the bundle.
        QCOMPARE(pixmapImage(zeIconManager::getIcon("Save"), 32), bundledRendering("document-save", 32));
    }

    void bundledPngsAreRenderingsOfTheSvgArtwork_data()
    {
        QTest::addColumn<QString>("themeName");
        QTest::addColumn<int>("size");
        for (const char* themeName : {"document-open", "document-new", "document-save"})
            for (const int size : {16, 32, 64})
                QTest::addRow("%s %d", themeName, size) << QString(themeName) << size;
    }

    void bundledPngsAreRenderingsOfTheSvgArtwork()
    {
        if (!QImageReader::supportedImageFormats().contains("svg"))
            QSKIP("the SVG image format plugin is not installed");
        QFETCH(QString, themeName);
        QFETCH(int, size);
        QImageReader reader(QStringLiteral(":/qtcolor/icons/%1.svg").arg(themeName));
        reader.setScaledSize(QSize(size, size));
        const QImage svg = comparable(reader.read());
        QVERIFY2(!svg.isNull(), qPrintable(reader.errorString()));
        const QImage png = bundledRendering(themeName, size);
        QCOMPARE(png.size(), QSize(size, size));
        // Antialiasing may differ by a step between renderer versions.
        QVERIFY(largestChannelDifference(svg, png) <= 2);
    }
};

QTEST_MAIN(tst_zeIconManager)
#include "tst_zeIconManager.moc"
