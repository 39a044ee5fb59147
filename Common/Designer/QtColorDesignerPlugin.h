#ifndef QTCOLORDESIGNERPLUGIN_H
#define QTCOLORDESIGNERPLUGIN_H

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

// The Qt Designer plugin: every widget the library exports, in the widget
// box's "QtColor" group, with its properties in the property editor.
class QtColorDesignerPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit QtColorDesignerPlugin(QObject* parent = nullptr);

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return _widgets; }

private:
    QList<QDesignerCustomWidgetInterface*> _widgets;
};

#endif
