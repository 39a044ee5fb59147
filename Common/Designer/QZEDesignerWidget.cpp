#include "QZEDesignerWidget.h"

#include <QIcon>
#include <QXmlStreamWriter>

#include <utility>

QZEDesignerWidget::QZEDesignerWidget(QZEDesignerWidgetInfo info, QObject* parent)
    : QObject(parent), _info(std::move(info))
{
}

QString QZEDesignerWidget::group() const
{
    return QStringLiteral("QtColor");
}

QString QZEDesignerWidget::includeFile() const
{
    return _info.className + QStringLiteral(".h");
}

QIcon QZEDesignerWidget::icon() const
{
    return QIcon(_info.iconFile);
}

QWidget* QZEDesignerWidget::createWidget(QWidget* parent)
{
    return _info.create(parent);
}

void QZEDesignerWidget::initialize(QDesignerFormEditorInterface*)
{
    _initialized = true;
}

// "QZEColorSlider" becomes "colorSlider": the prefix dropped, the first
// letter lowered; Designer numbers further instances itself.
QString QZEDesignerWidget::defaultObjectName() const
{
    QString name = _info.className.mid(3);
    name[0] = name[0].toLower();
    return name;
}

QString QZEDesignerWidget::domXml() const
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(QStringLiteral("ui"));
    writer.writeAttribute(QStringLiteral("language"), QStringLiteral("c++"));
    writer.writeStartElement(QStringLiteral("widget"));
    writer.writeAttribute(QStringLiteral("class"), _info.className);
    writer.writeAttribute(QStringLiteral("name"), defaultObjectName());
    writer.writeStartElement(QStringLiteral("property"));
    writer.writeAttribute(QStringLiteral("name"), QStringLiteral("geometry"));
    writer.writeStartElement(QStringLiteral("rect"));
    writer.writeTextElement(QStringLiteral("x"), QStringLiteral("0"));
    writer.writeTextElement(QStringLiteral("y"), QStringLiteral("0"));
    writer.writeTextElement(QStringLiteral("width"), QString::number(_info.defaultSize.width()));
    writer.writeTextElement(QStringLiteral("height"), QString::number(_info.defaultSize.height()));
    writer.writeEndElement(); // rect
    writer.writeEndElement(); // property
    writer.writeEndElement(); // widget
    writer.writeEndElement(); // ui
    return xml;
}
