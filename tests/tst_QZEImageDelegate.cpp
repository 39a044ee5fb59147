// The thumbnail grid's delegate inside a real image browser: what a cell
// looks like before and after its thumbnail arrives, the selection overlay,
// one job per file however often a cell is painted, and a large directory
// scrolled through from end to end.

#include "QZEConvertImage.h"
#include "QZEImageDelegate.h"
#include "QZEImageFileDialog.h"
#include "TestHelpers.h"
#include "ThumbnailCanvas.h"

#include <QApplication>
#include <QFileSystemModel>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QtTest>

#include <atomic>
#include <memory>

using namespace ThumbnailCanvas;

namespace {

constexpr int s_cell = 224;
const QColor s_highlight(0, 0, 255);
const QColor s_base(240, 240, 200);

// Counts the completion events that reach the dialog, one per finished job.
class CompletionFilter : public QObject
{
public:
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::User)
            ++count;
        return false;
    }
};

QColor halfway(const QColor& a, const QColor& b)
{
    return QColor((a.red() + b.red()) / 2, (a.green() + b.green()) / 2,
                  (a.blue() + b.blue()) / 2);
}

// The colour of the numbered picture of the large directory: hues from
// yellow to magenta, so that none looks like the red error message.
QColor colourOf(int number)
{
    return QColor::fromHsv(60 + number % 240, 200, 200);
}


} // namespace

class tst_QZEImageDelegate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void sizeHintIs224x224ForEveryIndex();
    void firstPaintCreatesANullCacheEntryAndShowsLoading();
    void finishedThumbnailIsDrawnCentredAboveTheFileName();
    void everyCellHasTheTwoPixelInsetHighlightFrameAtHalfOpacity();
    void selectedCellIsOverlaidWithHalfTransparentHighlight();
    void repaintingAFinishedCellDrawsTheCachedThumbnailWithoutASecondJob();
    void scrollingBackToFinishedCellsStartsNoNewJob();
    void everyThumbnailOfTwoThousandImagesArrives();
    void noJobRunsAfterTheDialogIsDestroyed();

private:
    struct Browser {
        CompletionFilter completions; // outlives the dialog it watches
        std::unique_ptr<QZEImageFileDialog> dialog;
        QListView* list = nullptr;
        QFileSystemModel* model = nullptr;
        QAbstractItemDelegate* delegate = nullptr;
    };
    void openBrowser(Browser& browser, const QString& directory, int expectedFiles);
    QImage paintCell(Browser& browser, const QString& path, QStyle::State state = {});
    static QImage blankCell();
    void makeImages(const QString& directory, int count);
    void scrollThroughWholeList(Browser& browser);
    void browseAllOfTheLargeDirectory(Browser& browser);
    void settleAt(Browser& browser, int value);
    static int finishedCount(QZEImageFileDialog& dialog);

    ScratchCacheHome _cacheHome;
    QTemporaryDir _few;
    QTemporaryDir _many;
};

void tst_QZEImageDelegate::initTestCase()
{
    QVERIFY(writeSolid(_few.filePath(QStringLiteral("wide.png")), 400, 200, QColor(200, 40, 40)));
    QVERIFY(writeSolid(_few.filePath(QStringLiteral("tall.png")), 100, 300, QColor(40, 40, 200)));
    makeImages(_many.path(), 2000);
}

void tst_QZEImageDelegate::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
}

void tst_QZEImageDelegate::makeImages(const QString& directory, int count)
{
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("img%1.png").arg(i, 4, 10, QLatin1Char('0'));
        QVERIFY(writeSolid(directory + QLatin1Char('/') + name, 24 + i % 17, 16 + i % 13,
                           colourOf(i)));
    }
}

void tst_QZEImageDelegate::openBrowser(Browser& browser, const QString& directory,
                                       int expectedFiles)
{
    browser.dialog.reset(new QZEImageFileDialog(nullptr, directory,
                                                QStringLiteral("*.png *.jpg"), false));
    browser.dialog->installEventFilter(&browser.completions);
    browser.list = browser.dialog->findChild<QListView*>(QStringLiteral("_list"));
    QVERIFY(browser.list);
    browser.model = qobject_cast<QFileSystemModel*>(browser.list->model());
    QVERIFY(browser.model);
    browser.delegate = browser.list->itemDelegate();
    QVERIFY(qobject_cast<QZEImageDelegate*>(browser.delegate));
    QTRY_COMPARE_WITH_TIMEOUT(browser.model->rowCount(browser.list->rootIndex()), expectedFiles,
                              20000);
}

QImage tst_QZEImageDelegate::blankCell()
{
    QImage cell(s_cell, s_cell, QImage::Format_ARGB32_Premultiplied);
    cell.fill(Qt::white);
    return cell;
}

// Paints the cell of path at the origin of a white image, with a palette of
// known highlight and base colours.
QImage tst_QZEImageDelegate::paintCell(Browser& browser, const QString& path, QStyle::State state)
{
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, s_cell, s_cell);
    option.state = state;
    option.palette.setBrush(QPalette::Active, QPalette::Highlight, s_highlight);
    option.palette.setBrush(QPalette::Active, QPalette::Base, s_base);
    QImage cell = blankCell();
    QPainter painter(&cell);
    browser.delegate->paint(&painter, option, browser.model->index(path));
    return cell;
}

int tst_QZEImageDelegate::finishedCount(QZEImageFileDialog& dialog)
{
    int finished = 0;
    for (const auto& entry : *dialog.getImages())
        finished += QZEConvertImage::finishedImage(entry.second).isNull() ? 0 : 1;
    return finished;
}

void tst_QZEImageDelegate::sizeHintIs224x224ForEveryIndex()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _few.path(), 2));
    const QStyleOptionViewItem option;
    QCOMPARE(browser.delegate->sizeHint(option, browser.model->index(0, 0, browser.list->rootIndex())),
             QSize(224, 224));
    QCOMPARE(browser.delegate->sizeHint(option, browser.model->index(1, 0, browser.list->rootIndex())),
             QSize(224, 224));
    QCOMPARE(browser.delegate->sizeHint(option, QModelIndex()), QSize(224, 224));
}

void tst_QZEImageDelegate::firstPaintCreatesANullCacheEntryAndShowsLoading()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _few.path(), 2));
    const QString path = _few.filePath(QStringLiteral("wide.png"));
    std::map<QString, QImage*>& images = *browser.dialog->getImages();
    QVERIFY(images.empty()); // the dialog is not shown, so nothing was painted yet

    const QImage cell = paintCell(browser, path);
    QCOMPARE(images.size(), std::size_t(1));
    QVERIFY(images.count(path));
    QVERIFY(images.at(path));

    // "Loading ..." centred, its baseline at bottom 223 - 224 / 2 - 8 = 103;
    // the file name's at 223 - 8 = 215. Drawn here with the same font.
    QImage wanted = blankCell();
    {
        QPainter painter(&wanted);
        const QString loading = QStringLiteral("Loading ...");
        const QString name = QStringLiteral("wide.png");
        painter.drawText(QPoint((224 - painter.fontMetrics().horizontalAdvance(loading)) / 2, 103),
                         loading);
        painter.drawText(QPoint((224 - painter.fontMetrics().horizontalAdvance(name)) / 2, 215),
                         name);
    }
    QPoint where;
    QCOMPARE(largestDifference(cell, wanted, QRect(4, 4, 216, 216), &where), 0);

    QThreadPool::globalInstance()->waitForDone();
    QTRY_COMPARE(browser.completions.count, 1);
}

void tst_QZEImageDelegate::finishedThumbnailIsDrawnCentredAboveTheFileName()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _few.path(), 2));
    const QString path = _few.filePath(QStringLiteral("tall.png"));
    paintCell(browser, path);
    QTRY_VERIFY(finishedCount(*browser.dialog) == int(browser.dialog->getImages()->size()));
    const QImage thumbnail = QZEConvertImage::finishedImage(browser.dialog->getImages()->at(path));
    QCOMPARE(thumbnail.size(), QSize(192, 192));

    const QImage cell = paintCell(browser, path);
    // (224 - 192) / 2 = 16 across, (224 - 16 - 192) / 2 = 8 down.
    QCOMPARE(largestDifference(cell.copy(16, 8, 192, 192), thumbnail, QRect(0, 0, 192, 192)), 0);
    // The canvas was filled with the view's base colour, and the picture is
    // the blue one, framed.
    QVERIFY(near(cell.pixel(20, 12), s_base));
    QVERIFY(near(cell.pixel(16 + 96, 8 + 96), QColor(40, 40, 200)));
    // No "Loading ..." any more: the rows under the canvas hold only the name.
    QImage wanted = blankCell();
    {
        QPainter painter(&wanted);
        const QString name = QStringLiteral("tall.png");
        painter.drawText(QPoint((224 - painter.fontMetrics().horizontalAdvance(name)) / 2, 215),
                         name);
    }
    QCOMPARE(largestDifference(cell, wanted, QRect(4, 201, 216, 19)), 0);
}

void tst_QZEImageDelegate::everyCellHasTheTwoPixelInsetHighlightFrameAtHalfOpacity()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _few.path(), 2));
    const QImage cell = paintCell(browser, _few.filePath(QStringLiteral("wide.png")));
    const QColor frame = halfway(Qt::white, s_highlight);
    for (int along : {2, 60, 150, 221}) {
        QVERIFY2(near(cell.pixel(2, along), frame), qPrintable(QString::number(along)));
        QVERIFY2(near(cell.pixel(along, 2), frame), qPrintable(QString::number(along)));
    }
    QVERIFY(near(cell.pixel(1, 60), Qt::white));
    QVERIFY(near(cell.pixel(3, 60), Qt::white));
    QVERIFY(near(cell.pixel(60, 1), Qt::white));
    QVERIFY(near(cell.pixel(60, 3), Qt::white));
}

void tst_QZEImageDelegate::selectedCellIsOverlaidWithHalfTransparentHighlight()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _few.path(), 2));
    const QString path = _few.filePath(QStringLiteral("wide.png"));
    const QImage plain = paintCell(browser, path);
    QTRY_VERIFY(finishedCount(*browser.dialog) == int(browser.dialog->getImages()->size()));
    const QImage unselected = paintCell(browser, path);
    const QImage selected = paintCell(browser, path, QStyle::State_Selected);
    // Inside the 2-pixel inset every pixel is half way to the highlight,
    // over the empty cell and over the thumbnail alike.
    for (const QPoint& at : {QPoint(3, 3), QPoint(100, 5), QPoint(16 + 96, 8 + 96),
                             QPoint(20, 12), QPoint(220, 220)}) {
        const QColor wanted = halfway(QColor(unselected.pixel(at)), s_highlight);
        QVERIFY2(near(selected.pixel(at), wanted),
                 qPrintable(QStringLiteral("at (%1, %2)").arg(at.x()).arg(at.y())));
    }
    // Outside it nothing changes.
    QCOMPARE(selected.pixel(1, 1), unselected.pixel(1, 1));
    QCOMPARE(selected.pixel(223, 100), unselected.pixel(223, 100));
    QVERIFY(plain.pixel(100, 5) == unselected.pixel(100, 5));
}

void tst_QZEImageDelegate::repaintingAFinishedCellDrawsTheCachedThumbnailWithoutASecondJob()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _few.path(), 2));
    const QString path = _few.filePath(QStringLiteral("wide.png"));
    paintCell(browser, path);
    QTRY_VERIFY(finishedCount(*browser.dialog) == int(browser.dialog->getImages()->size()));
    QThreadPool::globalInstance()->waitForDone();
    QTRY_COMPARE(browser.completions.count, int(browser.dialog->getImages()->size()));
    const int jobs = browser.completions.count;
    QImage* entry = browser.dialog->getImages()->at(path);

    for (int i = 0; i < 3; ++i)
        paintCell(browser, path);
    QThreadPool::globalInstance()->waitForDone();
    QTest::qWait(50);
    QCOMPARE(browser.completions.count, jobs);
    QCOMPARE(browser.dialog->getImages()->at(path), entry);
}

// A shown browser on the 2000 images, scrolled from top to bottom so that
// every cell has been painted once.
void tst_QZEImageDelegate::browseAllOfTheLargeDirectory(Browser& browser)
{
    QZE_CHECK(openBrowser(browser, _many.path(), 2000));
    browser.dialog->resize(1000, 800);
    browser.dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(browser.dialog.get()));
    scrollThroughWholeList(browser);
}

void tst_QZEImageDelegate::scrollThroughWholeList(Browser& browser)
{
    QScrollBar* bar = browser.list->verticalScrollBar();
    for (int value = bar->minimum(); value <= bar->maximum(); value += bar->pageStep() / 2) {
        bar->setValue(value);
        browser.list->viewport()->repaint();
    }
    bar->setValue(bar->maximum());
    browser.list->viewport()->repaint();
}

// Scrolls to value and lets every thumbnail asked for there arrive and be
// repainted, so that the cells shown there all have their cache entries.
void tst_QZEImageDelegate::settleAt(Browser& browser, int value)
{
    for (int pass = 0; pass < 2; ++pass) {
        browser.list->verticalScrollBar()->setValue(value);
        browser.list->viewport()->repaint();
        QThreadPool::globalInstance()->waitForDone();
        QTest::qWait(50);
    }
}

void tst_QZEImageDelegate::scrollingBackToFinishedCellsStartsNoNewJob()
{
    Browser browser;
    QZE_CHECK(openBrowser(browser, _many.path(), 2000));
    browser.dialog->resize(800, 600);
    browser.dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(browser.dialog.get()));
    QScrollBar* bar = browser.list->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    settleAt(browser, 0);
    const std::size_t firstScreen = browser.dialog->getImages()->size();
    QVERIFY(firstScreen > 0 && firstScreen < 2000);

    settleAt(browser, bar->maximum() / 2);
    const std::size_t twoScreens = browser.dialog->getImages()->size();
    QVERIFY(twoScreens > firstScreen);
    QCOMPARE(browser.completions.count, int(twoScreens));

    settleAt(browser, 0);
    QCOMPARE(browser.dialog->getImages()->size(), twoScreens);
    QCOMPARE(browser.completions.count, int(twoScreens));
}

void tst_QZEImageDelegate::everyThumbnailOfTwoThousandImagesArrives()
{
    Browser browser;
    QZE_CHECK(browseAllOfTheLargeDirectory(browser));
    QCOMPARE(browser.dialog->getImages()->size(), std::size_t(2000));
    QTRY_COMPARE_WITH_TIMEOUT(finishedCount(*browser.dialog), 2000, 120000);
    QTRY_COMPARE_WITH_TIMEOUT(browser.completions.count, 2000, 20000);
    for (const auto& entry : *browser.dialog->getImages()) {
        const QImage thumbnail = QZEConvertImage::finishedImage(entry.second);
        QCOMPARE(thumbnail.size(), QSize(192, 192));
        // The picture's middle is the picture, not an error message.
        const int number = QFileInfo(entry.first).baseName().mid(3).toInt();
        QVERIFY2(near(thumbnail.pixel(96, 96), colourOf(number)), qPrintable(entry.first));
    }
}

// While set, the first job converting holds its thread until it is cleared,
// so that a job is running whatever the speed of the machine and its scroll.
static std::atomic<bool> s_holdFirstJob{false};
static std::atomic<int> s_jobsStarted{0};

// A job that takes a few milliseconds whatever the machine, so that many of
// the 2000 are still queued when the scroll through them ends.
static QImage convertSlowly(const QString&, QSize& size)
{
    if (s_jobsStarted.fetch_add(1) == 0) {
        while (s_holdFirstJob)
            QThread::msleep(1);
    }
    QThread::msleep(3);
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::gray);
    return image;
}

void tst_QZEImageDelegate::noJobRunsAfterTheDialogIsDestroyed()
{
    QZEImageFileDialog::setImageConversionCB(convertSlowly);
    s_jobsStarted = 0;
    s_holdFirstJob = true;
    // The held job takes a thread of its own, beside those the other jobs and
    // Qt 6's raster engine share.
    QThreadPool* pool = QThreadPool::globalInstance();
    const int threads = pool->maxThreadCount();
    pool->setMaxThreadCount(threads + 1);
    const auto plainConversion = qScopeGuard([pool, threads] {
        QZEImageFileDialog::setImageConversionCB(nullptr);
        pool->setMaxThreadCount(threads);
    });
    Browser browser;
    // Released before the dialog waits for its jobs, on every way out.
    const auto release = qScopeGuard([] { s_holdFirstJob = false; });
    QZE_CHECK(browseAllOfTheLargeDirectory(browser));
    // Gone while a job runs and others may still be queued.
    QVERIFY(pool->activeThreadCount() > 0);
    s_holdFirstJob = false;
    browser.dialog.reset();
    QCOMPARE(pool->activeThreadCount(), 0);
    // Nothing was posted to the dead dialog that could still arrive.
    QCoreApplication::sendPostedEvents();
    QTest::qWait(20);
}

QTEST_MAIN(tst_QZEImageDelegate)
#include "tst_QZEImageDelegate.moc"
