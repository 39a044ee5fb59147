#ifndef QZEIMAGEFILEDIALOG_H
#define QZEIMAGEFILEDIALOG_H

#include <QBasicTimer>
#include <QDialog>
#include <QElapsedTimer>
#include <QImage>
#include <QString>
#include <QStringList>

#include <map>

class QFileSystemModel;
class QModelIndex;
class QTreeWidgetItem;
class Ui_QZEImageFileDialogGUI;

/// A modal browser for choosing one image file: a directory tree, a grid of
/// thumbnails made off the GUI thread (QZEImageDelegate, QZEConvertImage) and,
/// when asked for, a tree of the render-settings groups that the chosen image
/// carries. The groups the image carries start ticked; the ticked ones come
/// back as a bit mask beside the path (1 camera, 2 node visibilities, 4 switch
/// node states, 8 image, 16 animation, 32 render passes, 64 ray tracing,
/// 128 switch material states).
///
/// Hosts normally call one of the two static entry points:
/// getOpenFileName() runs the browser in-process, getOpenFileNameExternalProc()
/// runs it in the qimageFileDialog picker program and reads the answer from
/// its output.
///
/// \code
/// int groups = 0;
/// const QString path = QZEImageFileDialog::getOpenFileName(
///     this, tr("Load Render Settings"), lastDir, "*.png *.jpg *.tif", &groups);
/// if (!path.isEmpty())
///     restoreRenderSettings(path, groups);
/// \endcode
class QZEImageFileDialog : public QDialog
{
    Q_OBJECT

public:
    /// Converts the image at path to fit size (a square box, in pixels) and
    /// sets size to the size of the image it returns; returns a null image on
    /// failure. Called on pool threads, several at a time, so it must be
    /// thread-safe.
    using ConversionCallback = QImage (*)(const QString& path, QSize& size);

    /// Builds the browser on the directory of path. path is a directory, or a
    /// file whose directory the browser opens (its name is cut from path);
    /// an empty path opens the home directory. filter holds wildcard patterns
    /// separated by single blanks ("*.png *.jpg"); files that match none are
    /// hidden. showMetaData shows the render-settings filter tree and makes
    /// accepting compute the group mask.
    QZEImageFileDialog(QWidget* parent, const QString& path, const QString& filter,
                       bool showMetaData, Qt::WindowFlags flags = Qt::WindowFlags());
    /// Waits for every job of the global thread pool before freeing the
    /// thumbnail cache, since running jobs write into the cached images.
    ~QZEImageFileDialog() override;

    /// Sets, for the whole process, the function that thumbnail jobs call to
    /// load a picture instead of the built-in reader; null restores the
    /// built-in reader. Safe to call while jobs run.
    static void setImageConversionCB(ConversionCallback cb);
    /// The function set by setImageConversionCB(), or null.
    static ConversionCallback imageConversionCB();

    /// The thumbnail cache, by absolute path; the dialog keeps ownership of
    /// the map and of every image in it. Used by QZEImageDelegate on the GUI
    /// thread only.
    std::map<QString, QImage*>* getImages();
    /// Absolute path of the file last clicked, made current or
    /// double-clicked; empty before any.
    QString getSelectedFile() const;
    /// OR of the group bits of the ticked filter items, as computed when the
    /// dialog was accepted or the filter tree last refreshed; 0 without the
    /// filter tree.
    int getMetaDataChoice() const;
    /// Ticks item if it is enabled; otherwise leaves it alone.
    void setCheckedIfEnabled(QTreeWidgetItem* item);

    /// Lays out and repaints the thumbnail grid after an event of type
    /// QEvent::User (posted by a finished thumbnail job), then handles every
    /// event as QWidget does. Completions that arrive within one frame
    /// (16 ms) share one relayout, made on the next pass of the event loop
    /// or at the end of that frame, so that the grid shows every finished
    /// thumbnail within a frame without being laid out hundreds of times a
    /// second.
    bool event(QEvent* event) override;

    /// Runs the browser in-process, 800 x 600, titled caption when it is not
    /// empty, and returns the chosen absolute path, or an empty string when
    /// cancelled. With metaDataChoice the filter tree is shown and the mask
    /// stored there on acceptance (left untouched on cancel). Without it, and
    /// when the last release over a QZEPushButton was the left button, the
    /// plain QFileDialog opens instead.
    static QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                                   const QString& filter, int* metaDataChoice);
    /// As getOpenFileName(), in the picker program qimageFileDialog of
    /// zePlatform::getBinDir(). While it runs, a modal, invisible window
    /// keeps the host's windows from taking input. The picker's first output
    /// is the answer: a path line, and with metaDataChoice a mask line as
    /// well (the mask is 0 when the answer has any other shape). An empty
    /// string means that nothing was chosen or the picker could not start.
    static QString getOpenFileNameExternalProc(QWidget* parent, const QString& caption,
                                               const QString& dir, const QString& filter,
                                               int* metaDataChoice);

public slots:
    /// Shows the files of the directory at index of the directory tree.
    void clickedTree(const QModelIndex& index);
    /// Selects the file at index of the file list and refreshes the filter
    /// tree 10 ms later. Not connected by the dialog itself.
    void clickedList(const QModelIndex& index);
    /// Selects the file at current and refreshes the filter tree 10 ms later.
    void changedCurrentItem(const QModelIndex& current, const QModelIndex& previous);
    /// Selects the file at index and accepts the dialog at once, with the
    /// mask of that file's groups.
    void doubleClickedList(const QModelIndex& index);
    /// Reads the selected file's render-settings record and shows it in the
    /// filter tree: its general information, and its groups enabled and
    /// ticked, the rest disabled and unticked; then recomputes the mask.
    void updateMetaDataInfo();
    /// Recomputes the mask from the ticked filter items.
    void updateMetaDataChoice();

protected:
    /// Runs the grid relayout that finished thumbnails asked for.
    void timerEvent(QTimerEvent* event) override;

private:
    void scheduleGridRelayout();
    void relayoutGrid();
    void setUpDirectoryTree(const QString& start);
    void setUpFileList(const QString& start, const QString& filter);
    void setUpMetaTree();
    void selectFile(const QModelIndex& index);
    void resetMetaTreeItem(QTreeWidgetItem* item, bool uncheck);
    void resetMetaTree();
    void showPlaceholders();
    void showRecordOf(const QString& path);
    void showGeneralInformation(const QStringList& texts);
    void enableCarriedGroups(int mask);

    Ui_QZEImageFileDialogGUI* _ui = nullptr;
    QFileSystemModel* _dirModel = nullptr;
    QFileSystemModel* _fileModel = nullptr;
    QString _selectedFile;
    bool _showMetaData = false;
    int _metaDataChoice = 0;
    std::map<QString, QImage*> _images;
    // The file the filter tree was last filled from.
    QString _metaDataFile;
    // Pending while finished thumbnails wait for their relayout.
    QBasicTimer _relayoutTimer;
    // Since the last relayout; invalid before the first.
    QElapsedTimer _sinceRelayout;
};

#endif // QZEIMAGEFILEDIALOG_H
