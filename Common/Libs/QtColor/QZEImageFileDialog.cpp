#include "QZEImageFileDialog.h"

#include "QZEImageDelegate.h"
#include "QZEPushButton.h"
#include "osgImage.h"
#include "ui_QZEImageFileDialogGUI.h"
#include "zeImageMetaData.h"
#include "zePlatform.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QItemSelectionModel>
#include <QProcess>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <QTimerEvent>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>

namespace {

// Read by the thumbnail jobs on pool threads while the host may set it.
std::atomic<QZEImageFileDialog::ConversionCallback> _convertImage{nullptr};

constexpr int ThumbnailSize = 192;
constexpr int ThumbnailMargin = 32;
constexpr int ThumbnailCell = ThumbnailSize + ThumbnailMargin;
constexpr int RepaintEvent = QEvent::User;
constexpr qint64 FrameMs = 16;
constexpr int MetaDataDelayMs = 10;

// Top-level rows of the filter tree, as the form creates them.
enum MetaRow { TalqFile, Camera, FileOutput, Raytracing, Scenegraph, SwitchMaterials };
constexpr int MetaRowCount = 6;

QString startDirectory(const QString& path)
{
    QString start = path;
    const QFileInfo info(path);
    // Every occurrence of the name goes, also inside a folder name, and the
    // trailing separator stays: hosts pass such paths on as they get them.
    if (info.isFile())
        start.replace(info.fileName(), QString(), Qt::CaseSensitive);
    return start.isEmpty() ? QDir::homePath() : start;
}

void setItemEnabled(QTreeWidgetItem* item, bool enabled)
{
    const Qt::ItemFlags flags = item->flags();
    item->setFlags(enabled ? flags | Qt::ItemIsEnabled : flags & ~Qt::ItemIsEnabled);
}

bool isLeftButtonRelease()
{
    return QZEPushButton::getLastMouseReleaseButton() == Qt::LeftButton;
}

QString plainFileDialog(QWidget* parent, const QString& caption, const QString& dir,
                        const QString& filter)
{
    return QFileDialog::getOpenFileName(parent, caption, dir, filter, nullptr,
                                        QFileDialog::Options());
}

// Holds the host's windows while the picker runs: the smallest window that
// the platform maps (a 0 x 0 one is never shown, so it would block nothing),
// fully transparent and off screen. It is disabled so that a key meant for
// the host cannot close it and lift the block.
std::unique_ptr<QDialog> showBlocker(QWidget* parent)
{
    auto blocker = std::make_unique<QDialog>(parent, Qt::FramelessWindowHint);
    blocker->setModal(true);
    blocker->setAttribute(Qt::WA_TranslucentBackground);
    blocker->setWindowOpacity(0.0);
    blocker->setEnabled(false);
    blocker->move(-1, -1);
    blocker->resize(1, 1);
    blocker->show();
    blocker->move(-1, -1);
    return blocker;
}

// The picker's first output; empty when it ends without writing before a
// poll sees it. The user's input is handled while polling, not held back:
// the blocker drops what is meant for the host's windows, whereas input
// held back would reach them once the blocker is gone.
QString pollFirstAnswer(QProcess& process)
{
    QString text;
    while (process.state() == QProcess::Starting || process.state() == QProcess::Running) {
        text = QString::fromUtf8(process.readAllStandardOutput());
        if (!text.isEmpty())
            break;
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QThread::msleep(1);
    }
    return text;
}

// "path\n" or "path\nmask\n" (carriage returns tolerated); any other shape
// comes back whole, with the mask left 0.
QString parseAnswer(QString text, int* metaDataChoice)
{
    text.remove(QLatin1Char('\r'));
    text.chop(1);
    if (!metaDataChoice)
        return text;
    *metaDataChoice = 0;
    const QStringList parts = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (parts.size() != 2)
        return text;
    bool parsed = false;
    const int mask = parts.at(1).toInt(&parsed, 10);
    if (parsed)
        *metaDataChoice = mask;
    return parts.at(0);
}

} // namespace

QZEImageFileDialog::QZEImageFileDialog(QWidget* parent, const QString& path,
                                       const QString& filter, bool showMetaData,
                                       Qt::WindowFlags flags)
    : QDialog(parent, flags), _showMetaData(showMetaData)
{
    const QString start = startDirectory(path);
    _ui = new Ui_QZEImageFileDialogGUI;
    _ui->setupUi(this);
    setUpDirectoryTree(start);
    setUpFileList(start, filter);
    _ui->_splitter->setStretchFactor(0, 0);
    _ui->_splitter->setStretchFactor(1, 1);
    _ui->_meta->setVisible(_showMetaData);
    if (_showMetaData)
        setUpMetaTree();
}

QZEImageFileDialog::~QZEImageFileDialog()
{
    // Jobs of other dialogs may also be writing; waiting for the whole pool
    // is the only way to know none still writes into our images.
    QThreadPool::globalInstance()->waitForDone(-1);
    delete _dirModel;
    delete _fileModel;
    delete _ui;
    for (auto& entry : _images)
        delete entry.second;
}

void QZEImageFileDialog::setUpDirectoryTree(const QString& start)
{
    _dirModel = new QFileSystemModel(this);
    _dirModel->setResolveSymlinks(true);
    _dirModel->setFilter(QDir::AllDirs | QDir::Hidden | QDir::NoDot | QDir::NoDotDot);
    QTreeView* tree = _ui->_tree;
    tree->setModel(_dirModel);
    for (int column = 1; column <= 3; ++column)
        tree->hideColumn(column);
    connect(tree, SIGNAL(clicked(const QModelIndex&)), this, SLOT(clickedTree(const QModelIndex&)));
    _dirModel->setRootPath(start);
    tree->setCurrentIndex(_dirModel->index(start));
}

void QZEImageFileDialog::setUpFileList(const QString& start, const QString& filter)
{
    _fileModel = new QFileSystemModel(this);
    _fileModel->setFilter(QDir::Files | QDir::NoDot | QDir::NoDotDot);
    _fileModel->setNameFilters(filter.split(QLatin1Char(' ')));
    _fileModel->setNameFilterDisables(false);
    _fileModel->setResolveSymlinks(true);
    _fileModel->setRootPath(start);

    QListView* list = _ui->_list;
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setViewMode(QListView::IconMode);
    // Icon mode turns dragging and drops back on, so they are switched off
    // after it: a thumbnail is not to be moved or dropped anywhere.
    list->setDragEnabled(false);
    list->setAcceptDrops(false);
    list->setDropIndicatorShown(false);
    list->setResizeMode(QListView::Adjust);
    list->setModel(_fileModel);
    auto* delegate = new QZEImageDelegate(this, _fileModel, ThumbnailSize, ThumbnailMargin,
                                          ThumbnailCell);
    delegate->setParent(this);
    list->setItemDelegate(delegate);
    list->setRootIndex(_fileModel->setRootPath(start));
    connect(list->selectionModel(), SIGNAL(currentChanged(const QModelIndex&, const QModelIndex&)),
            this, SLOT(changedCurrentItem(const QModelIndex&, const QModelIndex&)));
    connect(list, SIGNAL(doubleClicked(const QModelIndex&)), this,
            SLOT(doubleClickedList(const QModelIndex&)));
    list->setMinimumWidth(240);
}

void QZEImageFileDialog::setUpMetaTree()
{
    QTreeWidget* meta = _ui->_meta;
    const struct {
        int row;
        int child; // -1: the top-level item itself
        int bit;
    } bits[] = {{Camera, -1, zeRenderSettings::CameraSettings},
                {FileOutput, 0, zeRenderSettings::ImageSettings},
                {FileOutput, 1, zeRenderSettings::AnimationSettings},
                {FileOutput, 2, zeRenderSettings::RenderPassesSettings},
                {Raytracing, -1, zeRenderSettings::RaytracingSettings},
                {Scenegraph, 0, zeRenderSettings::NodeVisibilities},
                {Scenegraph, 1, zeRenderSettings::SwitchNodeStates},
                {SwitchMaterials, -1, zeRenderSettings::SwitchMaterialStates}};
    for (const auto& entry : bits) {
        QTreeWidgetItem* item = meta->topLevelItem(entry.row);
        if (entry.child >= 0)
            item = item->child(entry.child);
        item->setData(0, Qt::UserRole, entry.bit);
    }
    connect(this, SIGNAL(accepted()), this, SLOT(updateMetaDataChoice()));
    meta->expandAll();
    meta->resizeColumnToContents(0);
    resetMetaTree();
}

void QZEImageFileDialog::setImageConversionCB(ConversionCallback cb)
{
    _convertImage.store(cb);
}

QZEImageFileDialog::ConversionCallback QZEImageFileDialog::imageConversionCB()
{
    return _convertImage.load();
}

std::map<QString, QImage*>* QZEImageFileDialog::getImages()
{
    return &_images;
}

QString QZEImageFileDialog::getSelectedFile() const
{
    return _selectedFile;
}

int QZEImageFileDialog::getMetaDataChoice() const
{
    return _metaDataChoice;
}

void QZEImageFileDialog::setCheckedIfEnabled(QTreeWidgetItem* item)
{
    if (item->flags() & Qt::ItemIsEnabled)
        item->setCheckState(0, Qt::Checked);
}

bool QZEImageFileDialog::event(QEvent* event)
{
    if (event->type() == RepaintEvent)
        scheduleGridRelayout();
    return QWidget::event(event);
}

void QZEImageFileDialog::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != _relayoutTimer.timerId()) {
        QDialog::timerEvent(event);
        return;
    }
    _relayoutTimer.stop();
    relayoutGrid();
}

// A relayout walks every file of the folder (some milliseconds for ten
// thousand), and while the grid scrolls the pool finishes thumbnails by the
// hundred each second: one relayout per frame shows them all as soon.
void QZEImageFileDialog::scheduleGridRelayout()
{
    if (_relayoutTimer.isActive())
        return;
    const qint64 since = _sinceRelayout.isValid() ? _sinceRelayout.elapsed() : FrameMs;
    _relayoutTimer.start(int(std::max<qint64>(0, FrameMs - since)), Qt::PreciseTimer, this);
}

void QZEImageFileDialog::relayoutGrid()
{
    // Setting the same root index again makes the view forget its layout;
    // laying it out at once leaves no pass in which the grid would be
    // painted empty.
    QListView* list = _ui->_list;
    list->setRootIndex(list->rootIndex());
    list->doItemsLayout();
    _sinceRelayout.start();
}

void QZEImageFileDialog::clickedTree(const QModelIndex& index)
{
    const QString dir = _dirModel->fileInfo(index).absoluteFilePath();
    _ui->_tree->setCurrentIndex(_dirModel->index(dir));
    _ui->_list->setRootIndex(_fileModel->setRootPath(dir));
    // Switching the filter away and back makes the model list the new
    // directory's files afresh.
    _fileModel->setFilter(QDir::NoDot | QDir::NoDotDot);
    _fileModel->setFilter(QDir::Files | QDir::NoDot | QDir::NoDotDot);
}

void QZEImageFileDialog::clickedList(const QModelIndex& index)
{
    selectFile(index);
}

void QZEImageFileDialog::changedCurrentItem(const QModelIndex& current, const QModelIndex&)
{
    selectFile(current);
}

void QZEImageFileDialog::doubleClickedList(const QModelIndex& index)
{
    _selectedFile = _fileModel->fileInfo(index).absoluteFilePath();
    // The click before the double-click queued the filter tree's update; it
    // may not have run yet, and the mask must belong to this file.
    if (_showMetaData && _metaDataFile != _selectedFile)
        updateMetaDataInfo();
    done(QDialog::Accepted);
}

void QZEImageFileDialog::updateMetaDataInfo()
{
    if (!_showMetaData)
        return;
    resetMetaTree();
    showPlaceholders();
    showRecordOf(_selectedFile);
    _metaDataFile = _selectedFile;
    updateMetaDataChoice();
}

void QZEImageFileDialog::updateMetaDataChoice()
{
    _metaDataChoice = 0;
    for (QTreeWidgetItemIterator it(_ui->_meta, QTreeWidgetItemIterator::Checked); *it; ++it)
        _metaDataChoice |= (*it)->data(0, Qt::UserRole).toInt();
}

void QZEImageFileDialog::selectFile(const QModelIndex& index)
{
    _selectedFile = _fileModel->fileInfo(index).absoluteFilePath();
    if (_showMetaData)
        QTimer::singleShot(MetaDataDelayMs, this, SLOT(updateMetaDataInfo()));
}

void QZEImageFileDialog::resetMetaTreeItem(QTreeWidgetItem* item, bool uncheck)
{
    for (int i = 0; i < item->childCount(); ++i) {
        QTreeWidgetItem* child = item->child(i);
        setItemEnabled(child, false);
        if (uncheck)
            child->setData(0, Qt::CheckStateRole, Qt::Unchecked);
    }
    setItemEnabled(item, false);
    if (item->childCount() == 0 && uncheck)
        item->setCheckState(0, Qt::Unchecked);
}

void QZEImageFileDialog::resetMetaTree()
{
    QTreeWidget* meta = _ui->_meta;
    resetMetaTreeItem(meta->topLevelItem(TalqFile), false);
    for (int row = Camera; row < MetaRowCount; ++row)
        resetMetaTreeItem(meta->topLevelItem(row), true);
}

void QZEImageFileDialog::showPlaceholders()
{
    QTreeWidgetItem* talq = _ui->_meta->topLevelItem(TalqFile);
    const QString placeholders[] = {tr("<filename>"), tr("<version>"), tr("<render date>")};
    if (talq->childCount() > 0)
        talq->child(0)->setToolTip(0, QString());
    for (int i = 0; i < 3 && i < talq->childCount(); ++i)
        talq->child(i)->setText(0, placeholders[i]);
}

void QZEImageFileDialog::showRecordOf(const QString& path)
{
    // Only the metadata is wanted: the header read decodes no pixels, so a
    // huge picture costs no more than a small one on the GUI thread.
    const std::string key = zeImageMetaData::getAttachmentKey();
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(key, std::string());
    image->readHeader(path.toUtf8().constData());
    if (image->findAttachmentField(key).value_or(std::string()).empty())
        return;
    const zeImageMetaData metaData(image, false);
    const int mask = metaData.containedTALQSettings();
    if (mask == 0)
        return;
    std::string filename;
    std::string version;
    std::string renderDate;
    if (metaData.getGeneralInformation(filename, version, renderDate))
        showGeneralInformation({QString::fromStdString(filename), QString::fromStdString(version),
                                QString::fromStdString(renderDate)});
    enableCarriedGroups(mask);
}

void QZEImageFileDialog::showGeneralInformation(const QStringList& texts)
{
    QTreeWidgetItem* talq = _ui->_meta->topLevelItem(TalqFile);
    setItemEnabled(talq, true);
    if (talq->childCount() > 0)
        talq->child(0)->setToolTip(0, texts.at(0));
    for (int i = 0; i < texts.size() && i < talq->childCount(); ++i) {
        talq->child(i)->setText(0, texts.at(i));
        setItemEnabled(talq->child(i), !texts.at(i).isEmpty());
    }
}

void QZEImageFileDialog::enableCarriedGroups(int mask)
{
    for (QTreeWidgetItemIterator it(_ui->_meta); *it; ++it) {
        QTreeWidgetItem* item = *it;
        if ((item->data(0, Qt::UserRole).toInt() & mask) == 0)
            continue;
        // The parent first: enabling it afterwards would not reach a child
        // that was disabled on its own.
        if (item->parent())
            setItemEnabled(item->parent(), true);
        item->setCheckState(0, Qt::Checked);
        setItemEnabled(item, true);
    }
}

QString QZEImageFileDialog::getOpenFileName(QWidget* parent, const QString& caption,
                                            const QString& dir, const QString& filter,
                                            int* metaDataChoice)
{
    if (!metaDataChoice && isLeftButtonRelease())
        return plainFileDialog(parent, caption, dir, filter);
    QZEImageFileDialog dialog(parent, dir, filter, metaDataChoice != nullptr, Qt::WindowFlags());
    if (!caption.isEmpty())
        dialog.setWindowTitle(caption);
    dialog.resize(800, 600);
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    if (metaDataChoice)
        *metaDataChoice = dialog.getMetaDataChoice();
    return dialog.getSelectedFile();
}

QString QZEImageFileDialog::getOpenFileNameExternalProc(QWidget* parent, const QString& caption,
                                                        const QString& dir,
                                                        const QString& filter, int* metaDataChoice)
{
    if (!metaDataChoice && isLeftButtonRelease())
        return plainFileDialog(parent, caption, dir, filter);
    const QString binDir = zePlatform::getBinDir();
    const QString program = binDir + QLatin1Char('/') + QStringLiteral(QTCOLOR_PICKER_PROGRAM);
    const std::unique_ptr<QDialog> blocker = showBlocker(parent);
    const QStringList arguments = {QString::number(quint64(blocker->winId())), caption, dir,
                                   filter, metaDataChoice ? QStringLiteral("1")
                                                          : QStringLiteral("0")};
    QProcess process;
    process.setWorkingDirectory(binDir);
    process.start(program, arguments, QIODevice::ReadWrite);
    const QString answer = parseAnswer(pollFirstAnswer(process), metaDataChoice);
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
    }
    return answer;
}
