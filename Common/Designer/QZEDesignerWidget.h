#ifndef QZEDESIGNERWIDGET_H
#define QZEDESIGNERWIDGET_H

#include <QObject>
#include <QSize>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <functional>

// What Qt Designer needs to know of one of the library's widgets to put it in
// the widget box and into forms.
struct QZEDesignerWidgetInfo
{
    QString className;
    QString toolTip;
    QString whatsThis;
    QString iconFile;
    QSize defaultSize;
    std::function<QWidget*(QWidget* parent)> create;
};

// One entry of Designer's widget box, under the "QtColor" group; the header
// to include is named after the class, as the library installs it.
class QZEDesignerWidget : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    QZEDesignerWidget(QZEDesignerWidgetInfo info, QObject* parent);

    QString name() const override { return _info.className; }
    QString group() const override;
    QString toolTip() const override { return _info.toolTip; }
    QString whatsThis() const override { return _info.whatsThis; }
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override;
    bool isInitialized() const override { return _initialized; }
    void initialize(QDesignerFormEditorInterface* core) override;
    QString domXml() const override;

private:
    QString defaultObjectName() const;

    QZEDesignerWidgetInfo _info;
    bool _initialized = false;
};

#endif
