// The Qt Designer plugin as Designer sees it: loaded from the build tree's
// plugin folder (or the installed plugin named by QTCOLOR_DESIGNER_PLUGIN),
// one widget box entry per exported widget.
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QMetaEnum>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QWidget>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

// The widgets a form can use, each with the header a consumer includes.
const QStringList ExpectedClasses = {
    QStringLiteral("QZEColorSlider"),    QStringLiteral("QZEColorButton"),
    QStringLiteral("QZEColorManipulator"), QStringLiteral("QZESpectrumPlotView"),
    QStringLiteral("QZEColorField"),     QStringLiteral("QZEColorArray"),
};

// The first <widget> of a widget box entry: its class and default geometry.
struct DomWidget
{
    QString className;
    QString name;
    QSize size;
};

int readInt(QXmlStreamReader& xml)
{
    bool ok = false;
    const int value = xml.readElementText().toInt(&ok);
    return ok ? value : -1;
}

QSize readRectSize(QXmlStreamReader& xml)
{
    QSize size(-1, -1);
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("width"))
            size.setWidth(readInt(xml));
        else if (xml.name() == QLatin1String("height"))
            size.setHeight(readInt(xml));
        else
            xml.skipCurrentElement();
    }
    return size;
}

DomWidget readDomWidget(const QString& domXml, QString* error)
{
    DomWidget widget;
    QXmlStreamReader xml(domXml);
    bool inWidget = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (!inWidget && xml.name() == QLatin1String("widget")) {
            inWidget = true;
            widget.className = xml.attributes().value(QLatin1String("class")).toString();
            widget.name = xml.attributes().value(QLatin1String("name")).toString();
        } else if (inWidget && xml.name() == QLatin1String("rect")) {
            widget.size = readRectSize(xml);
        }
    }
    if (xml.hasError())
        *error = xml.errorString();
    return widget;
}

// A property's value as the property editor shows it: enums by key name.
QVariant shownValue(const QMetaProperty& property, const QObject* object)
{
    const QVariant value = property.read(object);
    if (!property.isEnumType())
        return value;
    return QString::fromLatin1(property.enumerator().valueToKey(value.toInt()));
}

} // namespace

class tst_QtColorDesignerPlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void offersEveryExportedWidgetOnce();
    void entryDescribesItsWidget_data();
    void entryDescribesItsWidget();
    void createWidgetMakesTheNamedClassUnderTheParent_data();
    void createWidgetMakesTheNamedClassUnderTheParent();
    void domXmlIsAWidgetOfTheClassWithAGeometry_data();
    void domXmlIsAWidgetOfTheClassWithAGeometry();
    void propertyEditorCanWriteEachProperty_data();
    void propertyEditorCanWriteEachProperty();
    void initializeMarksTheEntryInitialized();

private:
    QDesignerCustomWidgetInterface* entry(const QString& className) const;
    void addEntryRows();

    QPluginLoader _loader;
    QDesignerCustomWidgetCollectionInterface* _collection = nullptr;
};

void tst_QtColorDesignerPlugin::initTestCase()
{
    _loader.setFileName(
        qEnvironmentVariable("QTCOLOR_DESIGNER_PLUGIN", QStringLiteral(QTCOLOR_DESIGNER_PLUGIN)));
    QVERIFY2(_loader.load(), qPrintable(_loader.errorString()));
    QCOMPARE(_loader.metaData().value(QLatin1String("IID")).toString(),
             QStringLiteral("org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface"));
    _collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(_loader.instance());
    QVERIFY(_collection);
}

void tst_QtColorDesignerPlugin::cleanupTestCase()
{
    _loader.unload();
}

QDesignerCustomWidgetInterface* tst_QtColorDesignerPlugin::entry(const QString& className) const
{
    const QList<QDesignerCustomWidgetInterface*> widgets = _collection->customWidgets();
    for (QDesignerCustomWidgetInterface* widget : widgets) {
        if (widget->name() == className)
            return widget;
    }
    return nullptr;
}

void tst_QtColorDesignerPlugin::addEntryRows()
{
    QTest::addColumn<QString>("className");
    for (const QString& className : ExpectedClasses)
        QTest::newRow(qPrintable(className)) << className;
}

void tst_QtColorDesignerPlugin::offersEveryExportedWidgetOnce()
{
    QStringList names;
    const QList<QDesignerCustomWidgetInterface*> widgets = _collection->customWidgets();
    for (const QDesignerCustomWidgetInterface* widget : widgets)
        names << widget->name();
    QCOMPARE(names, ExpectedClasses);
}

void tst_QtColorDesignerPlugin::entryDescribesItsWidget_data()
{
    addEntryRows();
}

void tst_QtColorDesignerPlugin::entryDescribesItsWidget()
{
    QFETCH(QString, className);
    QDesignerCustomWidgetInterface* widget = entry(className);
    QVERIFY(widget);
    QCOMPARE(widget->group(), QStringLiteral("QtColor"));
    QCOMPARE(widget->includeFile(), className + QStringLiteral(".h"));
    QVERIFY(!widget->toolTip().isEmpty());
    QVERIFY(!widget->whatsThis().isEmpty());
    QVERIFY(!widget->isContainer());
    // The widget box shows the icon at its own size; it must render there.
    const QPixmap pixmap = widget->icon().pixmap(22, 22);
    QVERIFY(!pixmap.isNull());
    QVERIFY(pixmap.toImage().pixelColor(pixmap.width() / 2, pixmap.height() / 2).alpha() > 0);
}

void tst_QtColorDesignerPlugin::createWidgetMakesTheNamedClassUnderTheParent_data()
{
    addEntryRows();
}

void tst_QtColorDesignerPlugin::createWidgetMakesTheNamedClassUnderTheParent()
{
    QFETCH(QString, className);
    QDesignerCustomWidgetInterface* designerEntry = entry(className);
    QVERIFY(designerEntry);
    QWidget form;
    QWidget* widget = designerEntry->createWidget(&form);
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->parentWidget(), &form);
    form.resize(400, 300);
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QVERIFY(widget->isVisible());
}

void tst_QtColorDesignerPlugin::domXmlIsAWidgetOfTheClassWithAGeometry_data()
{
    addEntryRows();
}

void tst_QtColorDesignerPlugin::domXmlIsAWidgetOfTheClassWithAGeometry()
{
    QFETCH(QString, className);
    QDesignerCustomWidgetInterface* designerEntry = entry(className);
    QVERIFY(designerEntry);
    QString error;
    const DomWidget dom = readDomWidget(designerEntry->domXml(), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(dom.className, className);
    // "QZEColorSlider" is placed as "colorSlider".
    QCOMPARE(dom.name, className.mid(3, 1).toLower() + className.mid(4));
    QVERIFY(dom.size.width() > 0);
    QVERIFY(dom.size.height() > 0);
}

void tst_QtColorDesignerPlugin::propertyEditorCanWriteEachProperty_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("slider mode") << "QZEColorSlider" << "mode" << QVariant(QStringLiteral("Bstar"));
    QTest::newRow("slider orientation") << "QZEColorSlider" << "orientation"
                                        << QVariant(QStringLiteral("Vertical"));
    QTest::newRow("slider tracking") << "QZEColorSlider" << "tracking" << QVariant(false);
    QTest::newRow("button dialog") << "QZEColorButton" << "showColorDialog" << QVariant(false);
    QTest::newRow("manipulator slider") << "QZEColorManipulator" << "sliderVisible"
                                        << QVariant(false);
    QTest::newRow("field mode") << "QZEColorField" << "mode" << QVariant(QStringLiteral("Green"));
}

// Designer's property editor lists a class's designable properties and
// writes them through the meta-object; enums by their key names.
void tst_QtColorDesignerPlugin::propertyEditorCanWriteEachProperty()
{
    QFETCH(QString, className);
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QWidget form;
    QDesignerCustomWidgetInterface* designerEntry = entry(className);
    QVERIFY(designerEntry);
    QWidget* widget = designerEntry->createWidget(&form);
    const QMetaObject* meta = widget->metaObject();
    const QMetaProperty metaProperty = meta->property(meta->indexOfProperty(qPrintable(property)));
    QVERIFY(metaProperty.isValid());
    QVERIFY(metaProperty.isDesignable());
    QVERIFY(metaProperty.isWritable());
    QVERIFY(shownValue(metaProperty, widget) != value);
    QVERIFY(metaProperty.write(widget, value));
    QCOMPARE(shownValue(metaProperty, widget), value);
}

void tst_QtColorDesignerPlugin::initializeMarksTheEntryInitialized()
{
    QDesignerCustomWidgetInterface* widget = entry(ExpectedClasses.first());
    QVERIFY(!widget->isInitialized());
    widget->initialize(nullptr);
    QVERIFY(widget->isInitialized());
}

QTEST_MAIN(tst_QtColorDesignerPlugin)
#include "tst_QtColorDesignerPlugin.moc"
