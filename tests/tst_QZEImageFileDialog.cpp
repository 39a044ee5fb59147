#include "QZEConvertImage.h"
#include "QZEImageDelegate.h"
#include "QZEImageFileDialog.h"
#include "QZEPushButton.h"
#include "zeImageMetaWriter.h"
#include "zeRenderSettings.h"

#include "DialogPart.h"
#include "FakePicker.h"
#include "ImageFixtures.h"
#include "TestHelpers.h"

#include <QApplication>
#include <QDrag>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRunnable>
#include <QScreen>
#include <QSplitter>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

// The filter tree's items by their place: top-level row, and child row or -1.
struct MetaItem {
    int row;
    int child;
};

QTreeWidgetItem* metaItem(const QZEImageFileDialog& dialog, MetaItem at)
{
    QTreeWidgetItem* item = part<QTreeWidget>(dialog, "_meta")->topLevelItem(at.row);
    return at.child < 0 ? item : item->child(at.child);
}

// Every item of the filter tree, in display order, with the group bit it
// stands for (0: none).
const struct {
    MetaItem at;
    const char* text;
    int bit;
} metaItems[] = {{{0, -1}, "Talq File", 0},
                 {{0, 0}, "<filename>", 0},
                 {{0, 1}, "<version>", 0},
                 {{0, 2}, "<render date>", 0},
                 {{1, -1}, "Camera Settings", 1},
                 {{2, -1}, "File Output", 0},
                 {{2, 0}, "Image Settings", 8},
                 {{2, 1}, "Animation Settings", 16},
                 {{2, 2}, "Renderpasses Settings", 32},
                 {{3, -1}, "Raytracing Settings", 64},
                 {{4, -1}, "Scenegraph", 0},
                 {{4, 0}, "Node Visibilities", 2},
                 {{4, 1}, "Switch Node States", 4},
                 {{5, -1}, "Switch Material States", 128}};

bool isEnabled(const QTreeWidgetItem* item)
{
    return item->flags().testFlag(Qt::ItemIsEnabled);
}

// Runs check on the first top-level window of type T that shows up while
// the caller waits (an exec() or a picker's poll), polled every 10 ms.
template <typename T>
void whenShown(const std::function<void(T*)>& check)
{
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, check] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            T* window = qobject_cast<T*>(widget);
            if (window && window->isVisible()) {
                timer->stop();
                timer->deleteLater();
                check(window);
                return;
            }
        }
    });
    timer->start(10);
}

// Types path into the file dialog's name field and accepts (rejects when
// there is no such field); selectFile() would leave the field alone while
// it has the focus and the folder is still being read.
void chooseInFileDialog(QFileDialog* dialog, const QString& path)
{
    auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name)
        name->setText(path);
    QMetaObject::invokeMethod(dialog, name ? "accept" : "reject");
}

// The dialog's delegate, painting the same, that counts the layouts of the
// grid: a layout asks once for the size of each row, and only a layout asks
// for the second row's (the first row's also sizes the scroll steps).
class LayoutCountingDelegate : public QZEImageDelegate
{
public:
    LayoutCountingDelegate(QZEImageFileDialog* dialog, QFileSystemModel* model)
        : QZEImageDelegate(dialog, model, 192, 32, 224)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        if (index.row() == 1)
            ++layouts;
        return QZEImageDelegate::sizeHint(option, index);
    }

    mutable int layouts = 0;
};

// A frame of the grid's relayouts, in milliseconds.
constexpr int FrameMs = 16;

void postCompletion(QZEImageFileDialog& dialog)
{
    QCoreApplication::postEvent(&dialog, new QEvent(QEvent::Type(1000)));
}

int finishedThumbnails(QZEImageFileDialog& dialog)
{
    int finished = 0;
    for (const auto& entry : *dialog.getImages())
        finished += QZEConvertImage::finishedImage(entry.second).isNull() ? 0 : 1;
    return finished;
}

// Every cell's place on the view, by row.
QVector<QRect> cellPlaces(const QListView& list)
{
    QVector<QRect> places;
    for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row)
        places << list.visualRect(list.model()->index(row, 0, list.rootIndex()));
    return places;
}

// Whether any pixel of rect in image differs from its top-left one.
bool showsSomething(const QImage& image, const QRect& rect)
{
    const QRgb first = image.pixel(rect.topLeft());
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (image.pixel(x, y) != first)
                return true;
        }
    }
    return false;
}

// Thumbnail jobs wait in the conversion callback until a test releases them,
// then each gets a picture of one colour that fills its box.
std::atomic<bool> s_jobsReleased{false};
const QColor s_pictureColour(200, 60, 40);

QImage convertOnceReleased(const QString&, QSize& size)
{
    while (!s_jobsReleased.load())
        QThread::msleep(1);
    return ImageFixtures::filled(size.width(), size.height(), QImage::Format_RGB32,
                                 s_pictureColour);
}

// Holds the jobs from construction and releases them on destruction at the
// latest, so that a failing test does not leave them waiting forever. Qt 6.4
// fills large areas on the global pool's threads too: while jobs are held
// there, the pool gets room beyond them, or painting would wait for them.
struct JobRelease {
    JobRelease()
        : threads(QThreadPool::globalInstance()->maxThreadCount())
    {
        s_jobsReleased = false;
        QThreadPool::globalInstance()->setMaxThreadCount(threads + 16);
    }
    ~JobRelease()
    {
        s_jobsReleased = true;
        QThreadPool::globalInstance()->setMaxThreadCount(threads);
    }
    const int threads;
};

} // namespace

class tst_QZEImageFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void slotsAreDeclaredInMetaObjectOrder();
    void formHasItsObjectsPlacesAndSettings();
    void okAcceptsAndCancelRejects();
    void browserViewsAreSetUp();
    void dragFromTheListStartsNothing();
    void filterTreeItemsCarryTheirTextsBitsAndFlags();
    void filterTreeStartsDisabledAndUnchecked();
    void filterTreeIsHiddenAndUntouchedWithoutMetaData();

    void existingFilePathOpensItsDirectory();
    void directoryPathOpensThatDirectory();
    void emptyPathOpensTheHomeDirectory();
    void fileNameIsCutFromEveryPlaceInThePath();
    void twoPatternFilterHidesOtherFiles();
    void clickedTreeListsThatDirectorysFiles();

    void cameraAndImageGroupsAreEnabledTickedAndGiveMask9_data();
    void cameraAndImageGroupsAreEnabledTickedAndGiveMask9();
    void untickedGroupIsLeftOutOfTheMaskOnAccept();
    void emptyGeneralInformationLineIsDisabled();
    void recordWithoutGroupsLeavesTheTreeDisabled();
    void fileWithoutMetaDataAfterOneWithResetsTreeTextsAndMask();
    void clickedListSelectsTheFileAndRefreshesTheTree();
    void setCheckedIfEnabledTicksOnlyEnabledItems();

    void doubleClickAcceptsAtOnceWithThatFile();
    void doubleClickRightAfterAClickGivesTheMaskOfTheDoubleClickedFile();

    void repaintEventRepaintsTheGrid();
    void completionsWithinAFrameShareOneRelayout();
    void gridIsNeverPaintedEmptyWhileCompletionsArrive();
    void everyFinishedThumbnailOfTheFirstScreenIsShown();
    void coalescedRelayoutPlacesEveryCellWhereThePlainLayoutDid();
    void destructorWaitsForTheGlobalPoolBeforeFreeingTheCache();
    void conversionCallbackIsOneValueForTheProcess();

    void plainFileDialogAfterLeftReleaseWithoutMask();
    void browserAfterRightReleaseWithoutMask();
    void browserReturnsPathAndMaskOnAccept();
    void browserCancelReturnsEmptyAndLeavesTheMask();

    void pickerAnswerWithCarriageReturnAndMaskLine();
    void pickerAnswerWithoutMaskLineGivesMask0();
    void pickerAnswerOfThreeLinesComesBackWhole();
    void pickerAnswerWithoutMaskPointerComesBackWhole();
    void pickerExitingBeforeItsFirstOutputGivesEmpty();
    void pickerThatCannotStartGivesEmpty();
    void pickerGetsItsArgumentsAndRunsInTheBinDir();
    void pickerRunsBehindAModalInvisibleBlocker();
    void plainFileDialogInsteadOfThePickerAfterLeftRelease();

private:
    QString stamp(const QString& name, const QByteArray& format, const zeRenderSettings& record);
    QString plainImage(const QString& name);
    std::unique_ptr<QZEImageFileDialog> browse(const QString& path, bool showMetaData,
                                               const QString& filter = "*.png *.jpg *.tif");
    QModelIndex indexOf(const QZEImageFileDialog& dialog, const QString& path);
    void waitForListing(const QZEImageFileDialog& dialog, int rows);
    void select(QZEImageFileDialog& dialog, const QString& path);
    void checkTreeReset(const QZEImageFileDialog& dialog);
    QPoint cellCentre(const QZEImageFileDialog& dialog, const QString& path);
    void releaseOverPushButton(Qt::MouseButton button);
    QString pickerAnswer(const QByteArray& answer, int* mask);
    void showSettledBrowser(std::unique_ptr<QZEImageFileDialog>& dialog, int pictures);

    static zeRenderSettings cameraAndImageRecord();

    std::unique_ptr<QTemporaryDir> _dir;
};

void tst_QZEImageFileDialog::init()
{
    _dir = std::make_unique<QTemporaryDir>();
    QVERIFY(_dir->isValid());
}

void tst_QZEImageFileDialog::cleanup()
{
    QZEImageFileDialog::setImageConversionCB(nullptr);
    _dir.reset();
}

zeRenderSettings tst_QZEImageFileDialog::cameraAndImageRecord()
{
    zeRenderSettings record;
    record.setSceneFile("Showroom Bühne.talq");
    record.setApplicationVersion("2024.2");
    record.setRenderDate("2024-05-17T14:30:00");
    record.addSetting(zeRenderSettings::CameraSettings, "FieldOfView", "45");
    record.addSetting(zeRenderSettings::ImageSettings, "Width", "8");
    return record;
}

QString tst_QZEImageFileDialog::stamp(const QString& name, const QByteArray& format,
                                      const zeRenderSettings& record)
{
    const QString path = _dir->filePath(name);
    if (!ImageFixtures::writePlain(path, format))
        return QString();
    std::string detail;
    const auto result = zeImageMetaWriter::stamp(path.toUtf8().constData(), record, false, &detail);
    if (result != zeImageMetaWriter::Stamped) {
        qWarning("stamping %s failed: %s", qPrintable(name), detail.c_str());
        return QString();
    }
    return path;
}

QString tst_QZEImageFileDialog::plainImage(const QString& name)
{
    const QString path = _dir->filePath(name);
    return ImageFixtures::writePlain(path, "png") ? path : QString();
}

std::unique_ptr<QZEImageFileDialog> tst_QZEImageFileDialog::browse(const QString& path,
                                                                   bool showMetaData,
                                                                   const QString& filter)
{
    return std::make_unique<QZEImageFileDialog>(nullptr, path, filter, showMetaData);
}

QModelIndex tst_QZEImageFileDialog::indexOf(const QZEImageFileDialog& dialog, const QString& path)
{
    auto* model = qobject_cast<QFileSystemModel*>(part<QListView>(dialog, "_list")->model());
    return model ? model->index(path) : QModelIndex();
}

void tst_QZEImageFileDialog::waitForListing(const QZEImageFileDialog& dialog, int rows)
{
    const QListView* list = part<QListView>(dialog, "_list");
    QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), rows);
}

// Makes path the list's current file, as a click or an arrow key does, and
// waits for the filter tree's delayed refresh to have read it.
void tst_QZEImageFileDialog::select(QZEImageFileDialog& dialog, const QString& path)
{
    const QModelIndex index = indexOf(dialog, path);
    QVERIFY(index.isValid());
    part<QListView>(dialog, "_list")->setCurrentIndex(index);
    QCOMPARE(dialog.getSelectedFile(), path);
    QTest::qWait(60);
}

// The tree as an image without render settings leaves it: everything
// disabled, every checkable item unticked, the placeholders back.
void tst_QZEImageFileDialog::checkTreeReset(const QZEImageFileDialog& dialog)
{
    for (const auto& entry : metaItems) {
        const QTreeWidgetItem* item = metaItem(dialog, entry.at);
        QVERIFY2(!isEnabled(item), entry.text);
        QCOMPARE(item->text(0), QString::fromUtf8(entry.text));
        if (item->flags().testFlag(Qt::ItemIsUserCheckable))
            QCOMPARE(item->checkState(0), Qt::Unchecked);
    }
    QCOMPARE(metaItem(dialog, {0, 0})->toolTip(0), QString());
}

QPoint tst_QZEImageFileDialog::cellCentre(const QZEImageFileDialog& dialog, const QString& path)
{
    const QListView* list = part<QListView>(dialog, "_list");
    return list->visualRect(indexOf(dialog, path)).center();
}

void tst_QZEImageFileDialog::releaseOverPushButton(Qt::MouseButton button)
{
    QZEPushButton pushButton;
    QTest::mouseClick(&pushButton, button);
    QCOMPARE(QZEPushButton::getLastMouseReleaseButton(), button);
}

// What the external entry point makes of a picker that writes answer.
QString tst_QZEImageFileDialog::pickerAnswer(const QByteArray& answer, int* mask)
{
    FakePicker picker(FakePicker::Answer{answer});
    if (!picker.isValid())
        return QStringLiteral("no fake picker");
    return QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "c", "/images", "*.png", mask);
}

// A browser of plain pictures, 1000 x 800, once every thumbnail has been
// made and the relayouts that they asked for have run.
void tst_QZEImageFileDialog::showSettledBrowser(std::unique_ptr<QZEImageFileDialog>& dialog,
                                                int pictures)
{
    for (int i = 0; i < pictures; ++i)
        QVERIFY(!plainImage(QStringLiteral("img%1.png").arg(i)).isEmpty());
    dialog = browse(_dir->path(), false);
    dialog->resize(1000, 800);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QZE_CHECK(waitForListing(*dialog, pictures));
    QTRY_VERIFY(!dialog->getImages()->empty());
    QTRY_COMPARE(finishedThumbnails(*dialog), int(dialog->getImages()->size()));
    QTest::qWait(3 * FrameMs);
}

void tst_QZEImageFileDialog::slotsAreDeclaredInMetaObjectOrder()
{
    QCOMPARE(methodsInMetaObjectOrder(QZEImageFileDialog::staticMetaObject),
             QStringList({"slot clickedTree(QModelIndex)", "slot clickedList(QModelIndex)",
                          "slot changedCurrentItem(QModelIndex,QModelIndex)",
                          "slot doubleClickedList(QModelIndex)", "slot updateMetaDataInfo()",
                          "slot updateMetaDataChoice()"}));
}

void tst_QZEImageFileDialog::formHasItsObjectsPlacesAndSettings()
{
    const auto dialog = browse(_dir->path(), true);
    QCOMPARE(dialog->objectName(), QStringLiteral("QZEImageFileDialogGUI"));
    QCOMPARE(dialog->size(), QSize(923, 444));
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Image File Browser"));

    auto* grid = qobject_cast<QGridLayout*>(dialog->layout());
    QVERIFY(grid);
    QCOMPARE(grid->objectName(), QStringLiteral("gridLayout"));
    const auto placeOf = [grid](QLayoutItem* item) {
        int row = -1, column = -1, rows = -1, columns = -1;
        grid->getItemPosition(grid->indexOf(item), &row, &column, &rows, &columns);
        return QList<int>{row, column, rows, columns};
    };
    const auto widgetPlace = [&](const char* name) {
        return placeOf(grid->itemAt(grid->indexOf(part<QWidget>(*dialog, name))));
    };

    auto* metaColumn = dialog->findChild<QVBoxLayout*>("verticalLayout");
    QVERIFY(metaColumn);
    QCOMPARE(placeOf(metaColumn), QList<int>({0, 4, 1, 1}));
    auto* meta = part<QTreeWidget>(*dialog, "_meta");
    QCOMPARE(metaColumn->indexOf(meta), 0);
    QCOMPARE(meta->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(meta->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(meta->minimumSize(), QSize(300, 0));
    QCOMPARE(meta->maximumSize(), QSize(300, 16777215));
    QVERIFY(!meta->rootIsDecorated());
    QVERIFY(meta->wordWrap());
    QCOMPARE(meta->columnCount(), 1);
    QCOMPARE(meta->headerItem()->text(0), QStringLiteral("1"));
    QVERIFY(meta->header()->isHidden());
    QVERIFY(!meta->isSortingEnabled());

    auto* splitter = part<QSplitter>(*dialog, "_splitter");
    QCOMPARE(widgetPlace("_splitter"), QList<int>({0, 0, 1, 4}));
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QCOMPARE(splitter->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(splitter->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(splitter->widget(0), part<QTreeView>(*dialog, "_tree"));
    QCOMPARE(splitter->widget(1), part<QListView>(*dialog, "_list"));
    QCOMPARE(splitter->widget(0)->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(splitter->widget(0)->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);

    QSpacerItem* spacer = nullptr;
    for (int i = 0; i < grid->count() && !spacer; ++i)
        spacer = grid->itemAt(i)->spacerItem();
    QVERIFY(spacer);
    QCOMPARE(placeOf(spacer), QList<int>({2, 0, 1, 2}));
    QCOMPARE(spacer->expandingDirections(), Qt::Horizontal);

    auto* accept = part<QPushButton>(*dialog, "_accept");
    auto* cancel = part<QPushButton>(*dialog, "_cancel");
    QCOMPARE(widgetPlace("_accept"), QList<int>({2, 2, 1, 1}));
    QCOMPARE(widgetPlace("_cancel"), QList<int>({2, 3, 1, 1}));
    QCOMPARE(accept->text(), QStringLiteral("Ok"));
    QCOMPARE(cancel->text(), QStringLiteral("Cancel"));
    QVERIFY(accept->isDefault());
    QVERIFY(!cancel->isDefault());
}

void tst_QZEImageFileDialog::okAcceptsAndCancelRejects()
{
    const auto dialog = browse(_dir->path(), false);
    QSignalSpy accepted(dialog.get(), SIGNAL(accepted()));
    QSignalSpy rejected(dialog.get(), SIGNAL(rejected()));
    dialog->show();
    part<QPushButton>(*dialog, "_accept")->click();
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    dialog->show();
    part<QPushButton>(*dialog, "_cancel")->click();
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(dialog->result(), int(QDialog::Rejected));
}

void tst_QZEImageFileDialog::browserViewsAreSetUp()
{
    const auto dialog = browse(_dir->path(), false);
    auto* tree = part<QTreeView>(*dialog, "_tree");
    auto* dirModel = qobject_cast<QFileSystemModel*>(tree->model());
    QVERIFY(dirModel);
    QCOMPARE(dirModel->filter(), QDir::AllDirs | QDir::Hidden | QDir::NoDot | QDir::NoDotDot);
    QVERIFY(!tree->isColumnHidden(0));
    for (int column = 1; column <= 3; ++column)
        QVERIFY(tree->isColumnHidden(column));

    auto* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QVERIFY(fileModel);
    QVERIFY(fileModel != dirModel);
    QCOMPARE(fileModel->filter(), QDir::Files | QDir::NoDot | QDir::NoDotDot);
    QVERIFY(!fileModel->nameFilterDisables());
    QCOMPARE(list->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(list->viewMode(), QListView::IconMode);
    QCOMPARE(list->resizeMode(), QListView::Adjust);
    QVERIFY(!list->dragEnabled());
    QVERIFY(!list->acceptDrops());
    QVERIFY(!list->showDropIndicator());
    QCOMPARE(list->minimumWidth(), 240);
    QVERIFY(qobject_cast<QZEImageDelegate*>(list->itemDelegate()));

    auto* splitter = part<QSplitter>(*dialog, "_splitter");
    QCOMPARE(splitter->widget(0)->sizePolicy().horizontalStretch(), 0);
    QCOMPARE(splitter->widget(1)->sizePolicy().horizontalStretch(), 1);
}

// A press and a move well past the drag distance over a thumbnail, as a
// user starts a drag; the view creates its QDrag as its own child.
void tst_QZEImageFileDialog::dragFromTheListStartsNothing()
{
    const QString path = plainImage("a.png");
    const auto dialog = browse(_dir->path(), false);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    waitForListing(*dialog, 1);
    auto* list = part<QListView>(*dialog, "_list");
    const auto dragFromCell = [&] {
        const QPoint start = cellCentre(*dialog, path);
        const QPoint end = start + QPoint(3 * QApplication::startDragDistance() + 20, 0);
        QWidget* viewport = list->viewport();
        QMouseEvent press(QEvent::MouseButtonPress, start, viewport->mapToGlobal(start),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        const QPoint near = start + QPoint(1, 0);
        QMouseEvent nudge(QEvent::MouseMove, near, viewport->mapToGlobal(near), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QMouseEvent move(QEvent::MouseMove, end, viewport->mapToGlobal(end), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, end, viewport->mapToGlobal(end),
                            Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &press);
        QApplication::sendEvent(viewport, &nudge);
        QApplication::sendEvent(viewport, &move);
        const bool started = !list->findChildren<QDrag*>().isEmpty();
        QApplication::sendEvent(viewport, &release);
        QTest::qWait(20); // lets a finished drag's deleteLater run
        return started;
    };
    QVERIFY(!dragFromCell());
    // The same gesture with dragging on does start one, so the probe can
    // see a drag.
    list->setDragEnabled(true);
    QVERIFY(dragFromCell());
}

void tst_QZEImageFileDialog::filterTreeItemsCarryTheirTextsBitsAndFlags()
{
    const auto dialog = browse(_dir->path(), true);
    auto* meta = part<QTreeWidget>(*dialog, "_meta");
    QCOMPARE(meta->topLevelItemCount(), 6);
    for (const auto& entry : metaItems) {
        const QTreeWidgetItem* item = metaItem(*dialog, entry.at);
        QVERIFY2(item, entry.text);
        QCOMPARE(item->text(0), QString::fromUtf8(entry.text));
        const QVariant bit = item->data(0, Qt::UserRole);
        QCOMPARE(bit.isValid(), entry.bit != 0);
        QCOMPARE(bit.toInt(), entry.bit);
        const bool group = entry.bit != 0;
        const bool talqLine = entry.at.row == 0 && entry.at.child >= 0;
        QCOMPARE(item->flags().testFlag(Qt::ItemIsUserCheckable), group);
        QCOMPARE(item->flags().testFlag(Qt::ItemIsSelectable), talqLine);
        QVERIFY(item->flags().testFlag(Qt::ItemIsDragEnabled));
        QVERIFY(item->isExpanded() || item->childCount() == 0);
    }
    const int childCounts[] = {3, 0, 3, 0, 2, 0};
    for (int row = 0; row < 6; ++row)
        QCOMPARE(metaItem(*dialog, {row, -1})->childCount(), childCounts[row]);
    QCOMPARE(metaItem(*dialog, {0, 2})->toolTip(0), QStringLiteral("Render Date"));
}

void tst_QZEImageFileDialog::filterTreeStartsDisabledAndUnchecked()
{
    const auto dialog = browse(_dir->path(), true);
    QZE_CHECK(checkTreeReset(*dialog));
    QCOMPARE(metaItem(*dialog, {0, 2})->toolTip(0), QStringLiteral("Render Date"));
    QCOMPARE(dialog->getMetaDataChoice(), 0);
    QCOMPARE(dialog->getSelectedFile(), QString());
    QVERIFY(dialog->getImages()->empty());
    QCOMPARE(dialog->getImages(), dialog->getImages());
}

void tst_QZEImageFileDialog::filterTreeIsHiddenAndUntouchedWithoutMetaData()
{
    const QString path = stamp("stamped.png", "png", cameraAndImageRecord());
    QVERIFY(!path.isEmpty());
    const auto withTree = browse(_dir->path(), true);
    QVERIFY(part<QTreeWidget>(*withTree, "_meta")->isVisibleTo(withTree.get()));

    const auto dialog = browse(_dir->path(), false);
    QVERIFY(part<QTreeWidget>(*dialog, "_meta")->isHidden());
    waitForListing(*dialog, 1);
    QZE_CHECK(select(*dialog, path));
    dialog->updateMetaDataInfo();
    dialog->accept();
    QCOMPARE(dialog->getMetaDataChoice(), 0);
    // Without the tree nothing resets it: the items keep the form's flags.
    for (const auto& entry : metaItems)
        QVERIFY2(isEnabled(metaItem(*dialog, entry.at)), entry.text);
    QVERIFY(!metaItem(*dialog, {1, -1})->data(0, Qt::UserRole).isValid());
}

void tst_QZEImageFileDialog::existingFilePathOpensItsDirectory()
{
    QVERIFY(QDir(_dir->path()).mkdir("sub"));
    const QString path = _dir->filePath("sub/shot.png");
    QVERIFY(ImageFixtures::writePlain(path, "png"));
    const auto dialog = browse(path, false);
    waitForListing(*dialog, 1);
    const QListView* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QCOMPARE(fileModel->filePath(list->rootIndex()), _dir->filePath("sub"));
    const QTreeView* tree = part<QTreeView>(*dialog, "_tree");
    auto* dirModel = qobject_cast<QFileSystemModel*>(tree->model());
    QCOMPARE(dirModel->filePath(tree->currentIndex()), _dir->filePath("sub"));
}

void tst_QZEImageFileDialog::directoryPathOpensThatDirectory()
{
    QVERIFY(QDir(_dir->path()).mkdir("sub"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath("sub/a.png"), "png"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath("sub/b.png"), "png"));
    const auto dialog = browse(_dir->filePath("sub"), false);
    waitForListing(*dialog, 2);
    const QListView* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QCOMPARE(fileModel->filePath(list->rootIndex()), _dir->filePath("sub"));
}

void tst_QZEImageFileDialog::emptyPathOpensTheHomeDirectory()
{
    const auto dialog = browse(QString(), false);
    const QListView* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QCOMPARE(fileModel->rootPath(), QDir::homePath());
    QCOMPARE(fileModel->filePath(list->rootIndex()), QDir::homePath());
    const QTreeView* tree = part<QTreeView>(*dialog, "_tree");
    auto* dirModel = qobject_cast<QFileSystemModel*>(tree->model());
    QCOMPARE(dirModel->filePath(tree->currentIndex()), QDir::homePath());
}

// The name is taken out wherever it occurs: "render.png.d/render.png"
// becomes ".d/", which here is a folder of its own.
void tst_QZEImageFileDialog::fileNameIsCutFromEveryPlaceInThePath()
{
    QVERIFY(QDir(_dir->path()).mkpath("render.png.d"));
    QVERIFY(QDir(_dir->path()).mkpath(".d"));
    const QString path = _dir->filePath("render.png.d/render.png");
    QVERIFY(ImageFixtures::writePlain(path, "png"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath(".d/one.png"), "png"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath(".d/two.png"), "png"));
    const auto dialog = browse(path, false);
    waitForListing(*dialog, 2);
    const QListView* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QCOMPARE(fileModel->filePath(list->rootIndex()), _dir->filePath(".d"));
}

void tst_QZEImageFileDialog::twoPatternFilterHidesOtherFiles()
{
    for (const char* name : {"a.png", "b.jpg", "c.gif", "d.txt"})
        QVERIFY(ImageFixtures::writeFile(_dir->filePath(name), "x"));
    const auto dialog = browse(_dir->path(), false, "*.png *.jpg");
    auto* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QCOMPARE(fileModel->nameFilters(), QStringList({"*.png", "*.jpg"}));
    QTRY_VERIFY(fileModel->rowCount(list->rootIndex()) > 0);
    QTest::qWait(100); // the model adds files in batches
    QStringList listed;
    for (int row = 0; row < fileModel->rowCount(list->rootIndex()); ++row) {
        const QModelIndex index = fileModel->index(row, 0, list->rootIndex());
        listed << index.data().toString();
        QVERIFY(index.flags().testFlag(Qt::ItemIsEnabled));
    }
    listed.sort();
    QCOMPARE(listed, QStringList({"a.png", "b.jpg"}));
}

void tst_QZEImageFileDialog::clickedTreeListsThatDirectorysFiles()
{
    QVERIFY(QDir(_dir->path()).mkdir("sub"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath("top.png"), "png"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath("sub/a.png"), "png"));
    QVERIFY(ImageFixtures::writePlain(_dir->filePath("sub/b.png"), "png"));
    const auto dialog = browse(_dir->path(), false);
    waitForListing(*dialog, 1);
    const QTreeView* tree = part<QTreeView>(*dialog, "_tree");
    auto* dirModel = qobject_cast<QFileSystemModel*>(tree->model());
    QTRY_VERIFY(dirModel->index(_dir->filePath("sub")).isValid());
    dialog->clickedTree(dirModel->index(_dir->filePath("sub")));
    QCOMPARE(dirModel->filePath(tree->currentIndex()), _dir->filePath("sub"));
    waitForListing(*dialog, 2);
    const QListView* list = part<QListView>(*dialog, "_list");
    auto* fileModel = qobject_cast<QFileSystemModel*>(list->model());
    QCOMPARE(fileModel->filePath(list->rootIndex()), _dir->filePath("sub"));
    QCOMPARE(fileModel->filter(), QDir::Files | QDir::NoDot | QDir::NoDotDot);
}

void tst_QZEImageFileDialog::cameraAndImageGroupsAreEnabledTickedAndGiveMask9_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("PNG") << "stamped.png" << QByteArray("png");
    QTest::newRow("JPEG") << "stamped.jpg" << QByteArray("jpeg");
    QTest::newRow("TIFF") << "stamped.tif" << QByteArray("tiff");
}

void tst_QZEImageFileDialog::cameraAndImageGroupsAreEnabledTickedAndGiveMask9()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString path = stamp(name, format, cameraAndImageRecord());
    QVERIFY(!path.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    waitForListing(*dialog, 1);
    QZE_CHECK(select(*dialog, path));

    const QList<int> enabledAndTicked = {1, 8};
    for (const auto& entry : metaItems) {
        const QTreeWidgetItem* item = metaItem(*dialog, entry.at);
        const bool carried = enabledAndTicked.contains(entry.bit);
        const bool enabled = carried || entry.at.row == 0 || QByteArray(entry.text) == "File Output";
        QVERIFY2(isEnabled(item) == enabled, entry.text);
        if (item->flags().testFlag(Qt::ItemIsUserCheckable))
            QVERIFY2(item->checkState(0) == (carried ? Qt::Checked : Qt::Unchecked), entry.text);
    }
    QCOMPARE(metaItem(*dialog, {0, 0})->text(0), QStringLiteral("Showroom Bühne.talq"));
    QCOMPARE(metaItem(*dialog, {0, 0})->toolTip(0), QStringLiteral("Showroom Bühne.talq"));
    QCOMPARE(metaItem(*dialog, {0, 1})->text(0), QStringLiteral("2024.2"));
    QCOMPARE(metaItem(*dialog, {0, 2})->text(0), QStringLiteral("2024-05-17T14:30:00"));
    QCOMPARE(dialog->getMetaDataChoice(), 1 | 8);
    dialog->accept();
    QCOMPARE(dialog->getMetaDataChoice(), 9);
}

void tst_QZEImageFileDialog::untickedGroupIsLeftOutOfTheMaskOnAccept()
{
    const QString path = stamp("stamped.png", "png", cameraAndImageRecord());
    QVERIFY(!path.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    waitForListing(*dialog, 1);
    QZE_CHECK(select(*dialog, path));
    metaItem(*dialog, {1, -1})->setCheckState(0, Qt::Unchecked);
    QCOMPARE(dialog->getMetaDataChoice(), 9); // until accepted
    dialog->accept();
    QCOMPARE(dialog->getMetaDataChoice(), 8);
}

void tst_QZEImageFileDialog::emptyGeneralInformationLineIsDisabled()
{
    zeRenderSettings record;
    record.setSceneFile("scene.talq");
    record.setRenderDate("2024-01-02T03:04:05");
    record.addGroups(zeRenderSettings::RaytracingSettings | zeRenderSettings::SwitchNodeStates);
    const QString path = stamp("stamped.png", "png", record);
    QVERIFY(!path.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    waitForListing(*dialog, 1);
    QZE_CHECK(select(*dialog, path));
    QVERIFY(isEnabled(metaItem(*dialog, {0, 0})));
    QVERIFY(!isEnabled(metaItem(*dialog, {0, 1})));
    QCOMPARE(metaItem(*dialog, {0, 1})->text(0), QString());
    QVERIFY(isEnabled(metaItem(*dialog, {0, 2})));
    QVERIFY(isEnabled(metaItem(*dialog, {4, -1})));
    QVERIFY(isEnabled(metaItem(*dialog, {4, 1})));
    QVERIFY(!isEnabled(metaItem(*dialog, {4, 0})));
    QCOMPARE(dialog->getMetaDataChoice(), 64 + 4);
}

void tst_QZEImageFileDialog::recordWithoutGroupsLeavesTheTreeDisabled()
{
    zeRenderSettings record;
    record.setSceneFile("scene.talq");
    record.setApplicationVersion("1.0");
    const QString path = stamp("stamped.png", "png", record);
    QVERIFY(!path.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    waitForListing(*dialog, 1);
    QZE_CHECK(select(*dialog, path));
    QZE_CHECK(checkTreeReset(*dialog));
    QCOMPARE(dialog->getMetaDataChoice(), 0);
}

void tst_QZEImageFileDialog::fileWithoutMetaDataAfterOneWithResetsTreeTextsAndMask()
{
    const QString stamped = stamp("stamped.png", "png", cameraAndImageRecord());
    const QString plain = plainImage("plain.png");
    QVERIFY(!stamped.isEmpty() && !plain.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    waitForListing(*dialog, 2);
    QZE_CHECK(select(*dialog, stamped));
    QCOMPARE(dialog->getMetaDataChoice(), 9);
    QZE_CHECK(select(*dialog, plain));
    QZE_CHECK(checkTreeReset(*dialog));
    QCOMPARE(dialog->getMetaDataChoice(), 0);
    dialog->accept();
    QCOMPARE(dialog->getMetaDataChoice(), 0);
}

void tst_QZEImageFileDialog::clickedListSelectsTheFileAndRefreshesTheTree()
{
    const QString path = stamp("stamped.png", "png", cameraAndImageRecord());
    QVERIFY(!path.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    waitForListing(*dialog, 1);
    dialog->clickedList(indexOf(*dialog, path));
    QCOMPARE(dialog->getSelectedFile(), path);
    QCOMPARE(dialog->getMetaDataChoice(), 0); // the refresh waits 10 ms
    QTRY_COMPARE(dialog->getMetaDataChoice(), 9);
}

void tst_QZEImageFileDialog::setCheckedIfEnabledTicksOnlyEnabledItems()
{
    const auto dialog = browse(_dir->path(), true);
    QTreeWidgetItem* camera = metaItem(*dialog, {1, -1});
    dialog->setCheckedIfEnabled(camera);
    QCOMPARE(camera->checkState(0), Qt::Unchecked);
    camera->setFlags(camera->flags() | Qt::ItemIsEnabled);
    dialog->setCheckedIfEnabled(camera);
    QCOMPARE(camera->checkState(0), Qt::Checked);
}

void tst_QZEImageFileDialog::doubleClickAcceptsAtOnceWithThatFile()
{
    const QString first = plainImage("a.png");
    const QString second = plainImage("b.png");
    QVERIFY(!first.isEmpty() && !second.isEmpty());
    const auto dialog = browse(_dir->path(), false);
    QSignalSpy accepted(dialog.get(), SIGNAL(accepted()));
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    waitForListing(*dialog, 2);
    QWidget* viewport = part<QListView>(*dialog, "_list")->viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, cellCentre(*dialog, second));
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, cellCentre(*dialog, second));
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    QVERIFY(!dialog->isVisible());
    QCOMPARE(dialog->getSelectedFile(), second);
}

// The click queues the tree's refresh for 10 ms; the double-click comes
// before it runs, yet the mask must be that of the double-clicked file, not
// of the one the tree showed before.
void tst_QZEImageFileDialog::doubleClickRightAfterAClickGivesTheMaskOfTheDoubleClickedFile()
{
    const QString plain = plainImage("a.png");
    const QString stamped = stamp("b.png", "png", cameraAndImageRecord());
    QVERIFY(!plain.isEmpty() && !stamped.isEmpty());
    const auto dialog = browse(_dir->path(), true);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    waitForListing(*dialog, 2);
    QZE_CHECK(select(*dialog, plain));
    QCOMPARE(dialog->getMetaDataChoice(), 0);
    QWidget* viewport = part<QListView>(*dialog, "_list")->viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, cellCentre(*dialog, stamped));
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, cellCentre(*dialog, stamped));
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    QCOMPARE(dialog->getSelectedFile(), stamped);
    QCOMPARE(dialog->getMetaDataChoice(), 9);
    QVERIFY(isEnabled(metaItem(*dialog, {1, -1})));
    // The refresh queued by the click changes nothing afterwards.
    QTest::qWait(50);
    QCOMPARE(dialog->getMetaDataChoice(), 9);
}

void tst_QZEImageFileDialog::repaintEventRepaintsTheGrid()
{
    const auto dialog = browse(_dir->path(), false);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QWidget* viewport = part<QListView>(*dialog, "_list")->viewport();
    QTest::qWait(50);
    int paints = 0;
    struct PaintCounter : QObject {
        int* count;
        explicit PaintCounter(int* c) : count(c) {}
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::Paint)
                ++*count;
            return false;
        }
    } counter(&paints);
    viewport->installEventFilter(&counter);
    // Until the first layouts and paints have settled.
    for (int wait = 0; wait < 40; ++wait) {
        paints = 0;
        QTest::qWait(100);
        if (paints == 0)
            break;
    }
    QCOMPARE(paints, 0);
    QCoreApplication::postEvent(dialog.get(), new QEvent(QEvent::Type(1000)));
    QTRY_VERIFY(paints > 0);
    viewport->removeEventFilter(&counter);
}

// Jobs finish one by one while the user scrolls, each completion in a pass
// of the event loop of its own; laying the whole grid out for each of them
// would take the GUI thread from the scrolling.
void tst_QZEImageFileDialog::completionsWithinAFrameShareOneRelayout()
{
    std::unique_ptr<QZEImageFileDialog> dialog;
    QZE_CHECK(showSettledBrowser(dialog, 4));
    auto* list = part<QListView>(*dialog, "_list");
    auto* counting = new LayoutCountingDelegate(
        dialog.get(), qobject_cast<QFileSystemModel*>(list->model()));
    counting->setParent(dialog.get());
    list->setItemDelegate(counting);
    QTest::qWait(3 * FrameMs);

    // One completion on its own: one relayout, on the next pass.
    counting->layouts = 0;
    postCompletion(*dialog);
    QTRY_COMPARE(counting->layouts, 1);
    QTest::qWait(3 * FrameMs);
    QCOMPARE(counting->layouts, 1);

    counting->layouts = 0;
    QElapsedTimer passes;
    passes.start();
    for (int i = 0; i < 20; ++i) {
        postCompletion(*dialog);
        QCoreApplication::processEvents();
    }
    const qint64 elapsed = passes.elapsed();
    if (elapsed > 4 * FrameMs)
        QSKIP("the twenty passes did not fit into a few frames on this machine");
    QTest::qWait(3 * FrameMs);
    // The first completion's relayout, and one at the end of its frame for
    // those that came after it: none is left without a relayout.
    const int most = 2 + int(elapsed / FrameMs);
    QVERIFY2(counting->layouts >= 2 && counting->layouts <= most,
             qPrintable(QStringLiteral("%1 relayouts in %2 ms").arg(counting->layouts).arg(elapsed)));
}

// The view forgets its layout when the root index is set again; a paint
// before the next layout would show an empty grid, and the user a flicker.
void tst_QZEImageFileDialog::gridIsNeverPaintedEmptyWhileCompletionsArrive()
{
    std::unique_ptr<QZEImageFileDialog> dialog;
    QZE_CHECK(showSettledBrowser(dialog, 4));
    QWidget* viewport = part<QListView>(*dialog, "_list")->viewport();
    const QRect firstCell = part<QListView>(*dialog, "_list")
                                ->visualRect(indexOf(*dialog, _dir->filePath("img0.png")));
    QVERIFY(viewport->rect().contains(firstCell));
    for (int pass = 0; pass < 60; ++pass) {
        postCompletion(*dialog);
        QCoreApplication::processEvents();
        QVERIFY2(showsSomething(viewport->grab().toImage(), firstCell),
                 qPrintable(QStringLiteral("empty after pass %1").arg(pass)));
        QThread::msleep(1);
    }
}

// What the window shows, not a fresh rendering: the grid has settled with
// every cell "Loading ...", then all jobs finish at once, and only their
// completions can bring the thumbnails to the screen.
void tst_QZEImageFileDialog::everyFinishedThumbnailOfTheFirstScreenIsShown()
{
    for (int i = 0; i < 6; ++i)
        QVERIFY(!plainImage(QStringLiteral("img%1.png").arg(i)).isEmpty());
    QZEImageFileDialog::setImageConversionCB(convertOnceReleased);
    const auto dialog = browse(_dir->path(), false);
    const JobRelease release; // before the dialog waits for the jobs
    dialog->resize(1000, 800);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QZE_CHECK(waitForListing(*dialog, 6));
    auto* list = part<QListView>(*dialog, "_list");
    // Inside the picture and above the "Loading ..." line: the canvas lies
    // 16 pixels from the cell's left and 8 from its top, and the 154-pixel
    // picture box 19 pixels inside the 192-pixel canvas.
    QVector<QPoint> middles;
    for (int i = 0; i < 6; ++i) {
        const QString path = _dir->filePath(QStringLiteral("img%1.png").arg(i));
        const QPoint middle = list->visualRect(indexOf(*dialog, path)).topLeft() + QPoint(76, 68);
        if (list->viewport()->rect().contains(middle))
            middles << list->viewport()->mapTo(dialog.get(), middle);
    }
    QVERIFY(middles.size() >= 3);
    const auto showing = [&](const QColor& wanted) {
        const QImage window = dialog->screen()->grabWindow(dialog->winId()).toImage();
        for (const QPoint& middle : middles) {
            const QColor colour = window.pixelColor(middle);
            if (std::abs(colour.red() - wanted.red()) > 8
                || std::abs(colour.green() - wanted.green()) > 8
                || std::abs(colour.blue() - wanted.blue()) > 8)
                return false;
        }
        return true;
    };
    QTRY_VERIFY(dialog->getImages()->size() >= std::size_t(middles.size()));
    QTest::qWait(300); // the resizes' delayed layouts and paints
    QVERIFY(showing(list->palette().color(QPalette::Base)));
    s_jobsReleased = true;
    QTRY_VERIFY(showing(s_pictureColour));
}

void tst_QZEImageFileDialog::coalescedRelayoutPlacesEveryCellWhereThePlainLayoutDid()
{
    std::unique_ptr<QZEImageFileDialog> dialog;
    QZE_CHECK(showSettledBrowser(dialog, 9));
    auto* list = part<QListView>(*dialog, "_list");
    // The view's own way: the same root index again, laid out when the view
    // gets to it.
    list->setRootIndex(list->rootIndex());
    QTest::qWait(3 * FrameMs);
    const QVector<QRect> plain = cellPlaces(*list);
    QCOMPARE(plain.size(), 9);
    QVERIFY(plain.at(0).size() == QSize(224, 224));
    QVERIFY(plain.at(8).top() > plain.at(0).top()); // more than one row

    for (int i = 0; i < 10; ++i) {
        postCompletion(*dialog);
        QCoreApplication::processEvents();
    }
    QTest::qWait(3 * FrameMs);
    QCOMPARE(cellPlaces(*list), plain);
}

void tst_QZEImageFileDialog::destructorWaitsForTheGlobalPoolBeforeFreeingTheCache()
{
    std::atomic<bool> finished{false};
    auto dialog = browse(_dir->path(), false);
    (*dialog->getImages())["/nowhere/a.png"] = new QImage(4, 4, QImage::Format_RGB32);
    QThreadPool::globalInstance()->start(QRunnable::create([&finished] {
        QThread::msleep(200);
        finished = true;
    }));
    dialog.reset(); // the image is freed here; LSan reports it otherwise
    QVERIFY(finished);
}

namespace {
QImage convertNothing(const QString&, QSize&)
{
    return QImage();
}
} // namespace

void tst_QZEImageFileDialog::conversionCallbackIsOneValueForTheProcess()
{
    QVERIFY(QZEImageFileDialog::imageConversionCB() == nullptr);
    QZEImageFileDialog::setImageConversionCB(convertNothing);
    QVERIFY(QZEImageFileDialog::imageConversionCB() == &convertNothing);
    const auto dialog = browse(_dir->path(), false);
    QVERIFY(QZEImageFileDialog::imageConversionCB() == &convertNothing);
    QZEImageFileDialog::setImageConversionCB(nullptr);
    QVERIFY(QZEImageFileDialog::imageConversionCB() == nullptr);
}

void tst_QZEImageFileDialog::plainFileDialogAfterLeftReleaseWithoutMask()
{
    const QString path = plainImage("a.png");
    QZE_CHECK(releaseOverPushButton(Qt::LeftButton));
    QString shownTitle;
    whenShown<QFileDialog>([&](QFileDialog* dialog) {
        shownTitle = dialog->windowTitle();
        chooseInFileDialog(dialog, path);
    });
    const QString chosen = QZEImageFileDialog::getOpenFileName(nullptr, "Pick one", _dir->path(),
                                                               "*.png", nullptr);
    QCOMPARE(shownTitle, QStringLiteral("Pick one"));
    QCOMPARE(chosen, path);
}

void tst_QZEImageFileDialog::browserAfterRightReleaseWithoutMask()
{
    const QString path = plainImage("a.png");
    QZE_CHECK(releaseOverPushButton(Qt::RightButton));
    bool metaShown = true;
    whenShown<QZEImageFileDialog>([&](QZEImageFileDialog* dialog) {
        metaShown = part<QTreeWidget>(*dialog, "_meta")->isVisible();
        QTimer::singleShot(200, dialog, [dialog, path] {
            dialog->clickedList(qobject_cast<QFileSystemModel*>(
                                    part<QListView>(*dialog, "_list")->model())
                                    ->index(path));
            dialog->accept();
        });
    });
    const QString chosen =
        QZEImageFileDialog::getOpenFileName(nullptr, QString(), _dir->path(), "*.png", nullptr);
    QVERIFY(!metaShown);
    QCOMPARE(chosen, path);
    QZE_CHECK(releaseOverPushButton(Qt::LeftButton));
}

void tst_QZEImageFileDialog::browserReturnsPathAndMaskOnAccept()
{
    const QString path = stamp("stamped.tif", "tiff", cameraAndImageRecord());
    QVERIFY(!path.isEmpty());
    QZE_CHECK(releaseOverPushButton(Qt::LeftButton));
    QString title;
    QSize size;
    whenShown<QZEImageFileDialog>([&](QZEImageFileDialog* dialog) {
        title = dialog->windowTitle();
        size = dialog->size();
        QTimer::singleShot(200, dialog, [dialog, path] {
            part<QListView>(*dialog, "_list")
                ->setCurrentIndex(qobject_cast<QFileSystemModel*>(
                                      part<QListView>(*dialog, "_list")->model())
                                      ->index(path));
            QTimer::singleShot(100, dialog, SLOT(accept()));
        });
    });
    int mask = -1;
    const QString chosen = QZEImageFileDialog::getOpenFileName(nullptr, "Render settings",
                                                               _dir->path(), "*.tif", &mask);
    QCOMPARE(title, QStringLiteral("Render settings"));
    QCOMPARE(size, QSize(800, 600));
    QCOMPARE(chosen, path);
    QCOMPARE(mask, 9);
}

void tst_QZEImageFileDialog::browserCancelReturnsEmptyAndLeavesTheMask()
{
    QString title;
    whenShown<QZEImageFileDialog>([&](QZEImageFileDialog* dialog) {
        title = dialog->windowTitle();
        dialog->reject();
    });
    int mask = 77;
    const QString chosen =
        QZEImageFileDialog::getOpenFileName(nullptr, QString(), _dir->path(), "*.png", &mask);
    QCOMPARE(title, QStringLiteral("Image File Browser"));
    QCOMPARE(chosen, QString());
    QCOMPARE(mask, 77);
}

void tst_QZEImageFileDialog::pickerAnswerWithCarriageReturnAndMaskLine()
{
    int mask = -1;
    QCOMPARE(pickerAnswer("/images/shot one.png\r\n9\n", &mask),
             QStringLiteral("/images/shot one.png"));
    QCOMPARE(mask, 9);
}

void tst_QZEImageFileDialog::pickerAnswerWithoutMaskLineGivesMask0()
{
    int mask = 5;
    QCOMPARE(pickerAnswer("/images/shot.png\n", &mask), QStringLiteral("/images/shot.png"));
    QCOMPARE(mask, 0);
}

void tst_QZEImageFileDialog::pickerAnswerOfThreeLinesComesBackWhole()
{
    int mask = 5;
    QCOMPARE(pickerAnswer("/images/a.png\n9\nextra\n", &mask),
             QStringLiteral("/images/a.png\n9\nextra"));
    QCOMPARE(mask, 0);
}

void tst_QZEImageFileDialog::pickerAnswerWithoutMaskPointerComesBackWhole()
{
    QZE_CHECK(releaseOverPushButton(Qt::RightButton));
    const QString answer = pickerAnswer("/images/a.png\r\n9\n", nullptr);
    QZE_CHECK(releaseOverPushButton(Qt::LeftButton));
    QCOMPARE(answer, QStringLiteral("/images/a.png\n9"));
}

void tst_QZEImageFileDialog::pickerExitingBeforeItsFirstOutputGivesEmpty()
{
    FakePicker picker("sleep 0.2\nexit 0");
    QVERIFY(picker.isValid());
    int mask = 5;
    QCOMPARE(QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "c", "/images", "*.png",
                                                             &mask),
             QString());
    QCOMPARE(mask, 0);
    QCOMPARE(picker.arguments().size(), 5); // it did run
}

void tst_QZEImageFileDialog::pickerThatCannotStartGivesEmpty()
{
    FakePicker picker("exit 0");
    QVERIFY(picker.isValid());
    QVERIFY(QFile::setPermissions(picker.path(QTCOLOR_PICKER_PROGRAM), QFile::ReadOwner));
    int mask = 5;
    QCOMPARE(QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "c", "/images", "*.png",
                                                             &mask),
             QString());
    QCOMPARE(mask, 0);
    QVERIFY(picker.arguments().isEmpty());

    zePlatform::setBinDir(_dir->filePath("missing"));
    QCOMPARE(QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "c", "/images", "*.png",
                                                             &mask),
             QString());
}

void tst_QZEImageFileDialog::pickerGetsItsArgumentsAndRunsInTheBinDir()
{
    FakePicker picker(FakePicker::Answer{"/images/a.png\n1\n"});
    QVERIFY(picker.isValid());
    QString blockerId;
    whenShown<QDialog>([&](QDialog* blocker) { blockerId = QString::number(blocker->winId()); });
    int mask = 0;
    QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "Pick a render", "/images/renders",
                                                    "*.png *.jpg", &mask);
    QVERIFY(!blockerId.isEmpty());
    QCOMPARE(picker.arguments(), QStringList({blockerId, "Pick a render", "/images/renders",
                                              "*.png *.jpg", "1"}));
    QCOMPARE(QDir(picker.workingDirectory()).canonicalPath(), QDir(picker.dir()).canonicalPath());

    // Without a mask pointer (which takes a release of another button) the
    // picker is told that no mask line is wanted.
    QZE_CHECK(releaseOverPushButton(Qt::RightButton));
    QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "c", "/images", "*.png", nullptr);
    QZE_CHECK(releaseOverPushButton(Qt::LeftButton));
    QCOMPARE(picker.arguments().value(4), QStringLiteral("0"));
}

void tst_QZEImageFileDialog::pickerRunsBehindAModalInvisibleBlocker()
{
    FakePicker picker(FakePicker::Answer{"/images/a.png\n1\n"});
    QVERIFY(picker.isValid());
    QWidget host;
    host.show();
    QDialog* seen = nullptr;
    bool modal = false;
    bool transparent = false;
    QSize size;
    Qt::WindowFlags flags;
    whenShown<QDialog>([&](QDialog* blocker) {
        seen = blocker;
        modal = blocker->isModal() && QApplication::activeModalWidget() == blocker;
        transparent = blocker->windowOpacity() == 0.0
                      && blocker->testAttribute(Qt::WA_TranslucentBackground);
        size = blocker->size();
        flags = blocker->windowFlags();
    });
    int mask = 0;
    QZEImageFileDialog::getOpenFileNameExternalProc(&host, "c", "/images", "*.png", &mask);
    QVERIFY(seen);
    QVERIFY(modal);
    QVERIFY(transparent);
    QCOMPARE(size, QSize(1, 1));
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QVERIFY(host.findChildren<QDialog*>().isEmpty()); // destroyed afterwards
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
}

void tst_QZEImageFileDialog::plainFileDialogInsteadOfThePickerAfterLeftRelease()
{
    const QString path = plainImage("a.png");
    FakePicker picker(FakePicker::Answer{"/images/a.png\n"});
    QVERIFY(picker.isValid());
    QZE_CHECK(releaseOverPushButton(Qt::LeftButton));
    whenShown<QFileDialog>([&](QFileDialog* dialog) {
        chooseInFileDialog(dialog, path);
    });
    QCOMPARE(QZEImageFileDialog::getOpenFileNameExternalProc(nullptr, "c", _dir->path(), "*.png",
                                                             nullptr),
             path);
    QVERIFY(picker.arguments().isEmpty());
}

QTEST_MAIN(tst_QZEImageFileDialog)
#include "tst_QZEImageFileDialog.moc"
