#ifndef QZEIMAGEFILEDIALOG_H
#define QZEIMAGEFILEDIALOG_H

#include <QDialog>
#include <QImage>
#include <QString>

#include <map>

class QFileSystemModel;
class QModelIndex;
class QTreeWidgetItem;
class Ui_QZEImageFileDialogGUI;

// A modal browser for choosing one image file: a directory tree, a grid of
// thumbnails made off the GUI thread (QZEImageDelegate, QZEConvertImage) and,
// when asked for, a tree of the render-settings groups that the chosen image
// carries. The ticked groups come back as a bit mask beside the path.
//
// Hosts normally call one of the two static entry points: getOpenFileName()
// runs the browser in-process, getOpenFileNameExternalProc() runs it in the
// qimageFileDialog picker program and reads the answer from its output.
class QZEImageFileDialog : public QDialog
{
    Q_OBJECT

public:
    // Converts the image at path to fit size (a square box, in pixels) and
    // sets size to the size of the image it returns; a null image on failure.
    // Called on pool threads, several at a time.
    using ConversionCallback = QImage (*)(const QString& path, QSize& size);

    // path: a directory, or a file whose directory the browser opens;
    // filter: wildcard patterns separated by single blanks ("*.png *.jpg").
    QZEImageFileDialog(QWidget* parent, const QString& path, const QString& filter,
                       bool showMetaData, Qt::WindowFlags flags = Qt::WindowFlags());
    // Waits for every job of the global thread pool before freeing the
    // thumbnail cache, since running jobs write into the cached images.
    ~QZEImageFileDialog() override;

    // Process-wide: null restores the built-in reader.
    static void setImageConversionCB(ConversionCallback cb);
    static ConversionCallback imageConversionCB();

    // The thumbnail cache, by absolute path; the dialog keeps ownership.
    std::map<QString, QImage*>* getImages();
    QString getSelectedFile() const;
    int getMetaDataChoice() const;
    // Ticks item if it is enabled; otherwise leaves it alone.
    void setCheckedIfEnabled(QTreeWidgetItem* item);

    bool event(QEvent* event) override;

    static QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                                   const QString& filter, int* metaDataChoice);
    static QString getOpenFileNameExternalProc(QWidget* parent, const QString& caption,
                                               const QString& dir, const QString& filter,
                                               int* metaDataChoice);

public slots:
    void clickedTree(const QModelIndex& index);
    void clickedList(const QModelIndex& index);
    void changedCurrentItem(const QModelIndex& current, const QModelIndex& previous);
    void doubleClickedList(const QModelIndex& index);
    void updateMetaDataInfo();
    void updateMetaDataChoice();

private:
    void resetMetaTreeItem(QTreeWidgetItem* item, bool uncheck);

    Ui_QZEImageFileDialogGUI* _ui = nullptr;
    QFileSystemModel* _dirModel = nullptr;
    QFileSystemModel* _fileModel = nullptr;
    QString _selectedFile;
    bool _showMetaData = false;
    int _metaDataChoice = 0;
    std::map<QString, QImage*> _images;
};

#endif // QZEIMAGEFILEDIALOG_H
