#include "QZEColorArray.h"

#include "zePlatform.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSettings>
#include <QStringList>
#include <QToolTip>
#include <qdrawutil.h>

#include <cmath>

namespace {

// A cell is a small swatch with a sunken bevel around it.
constexpr int CellPaddingX = 6;
constexpr int CellPaddingY = 2;

QString keyOf(const QString& group, const char* name)
{
    return group + QLatin1Char('/') + QLatin1String(name);
}

// "h s v" with enough digits to give back the same floats.
QString cellText(const std::optional<QZEColor>& cell)
{
    if (!cell)
        return QString();
    const auto number = [](float x) { return QString::number(double(x), 'g', 9); };
    return QStringLiteral("%1 %2 %3").arg(number(cell->h), number(cell->s), number(cell->v));
}

// A cell written by cellText(); anything else leaves the cell free.
std::optional<QZEColor> cellFromText(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() != 3)
        return std::nullopt;
    float hsv[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        hsv[i] = parts[i].toFloat(&ok);
        if (!ok || !std::isfinite(hsv[i]))
            return std::nullopt;
    }
    return QZEColor(hsv[0], hsv[1], hsv[2]);
}

QString fixed4(float x)
{
    return QString::number(double(x), 'f', 4);
}

} // namespace

QZEColorArray::QZEColorArray(QWidget* parent, const char*) : QWidget(parent)
{
    setObjectName(QStringLiteral("QZEColorArray"));
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Custom colours"));
}

QZEColor QZEColorArray::getColor(int index) const
{
    return isFreeCell(index) ? QZEColor() : *_cells[size_t(index)];
}

bool QZEColorArray::isFreeCell(int index) const
{
    return index < 0 || index >= CellCount || !_cells[size_t(index)];
}

int QZEColorArray::getNextCell() const
{
    const int free = firstFreeCell();
    return free >= 0 ? free : _next;
}

int QZEColorArray::firstFreeCell() const
{
    for (int i = 0; i < CellCount; ++i) {
        if (!_cells[size_t(i)])
            return i;
    }
    return -1;
}

void QZEColorArray::addColor(QZEColor color)
{
    const int index = getNextCell();
    _cells[size_t(index)] = color;
    _next = (index + 1) % CellCount;
    save();
    update(cellRect(index));
}

QString QZEColorArray::describeCell(int index) const
{
    if (isFreeCell(index))
        return tr("Free cell");
    const QZEColor& color = *_cells[size_t(index)];
    float r, g, b;
    color.getRGB(r, g, b);
    return tr("H: %1  S: %2  V: %3\nR: %4  G: %5  B: %6")
        .arg(fixed4(color.h), fixed4(color.s), fixed4(color.v), fixed4(r), fixed4(g), fixed4(b));
}

QSize QZEColorArray::sizeHint() const
{
    return QSize(ColumnCount * (zePlatform::getSmallIconSizeX() + CellPaddingX),
                 RowCount * (zePlatform::getSmallIconSizeY() + CellPaddingY));
}

// --- Persistence ---------------------------------------------------------------

void QZEColorArray::setSettings(QSettings* settings, const QString& group)
{
    if (_settings != settings)
        delete _settings;
    _settings = settings;
    _group = group;
    if (!_settings)
        return;
    _settings->setParent(this);
    load();
}

void QZEColorArray::load()
{
    if (!_settings->contains(keyOf(_group, "cells"))) {
        save();
        return;
    }
    const QStringList cells = _settings->value(keyOf(_group, "cells")).toStringList();
    for (int i = 0; i < CellCount; ++i)
        _cells[size_t(i)] = i < cells.size() ? cellFromText(cells[i]) : std::nullopt;
    bool ok = false;
    const int next = _settings->value(keyOf(_group, "next")).toInt(&ok);
    _next = ok && next >= 0 && next < CellCount ? next : 0;
    update();
}

void QZEColorArray::save() const
{
    if (!_settings)
        return;
    QStringList cells;
    for (const auto& cell : _cells)
        cells.append(cellText(cell));
    _settings->setValue(keyOf(_group, "cells"), cells);
    _settings->setValue(keyOf(_group, "next"), _next);
}

// --- Geometry and painting -------------------------------------------------------

// The widget is split evenly into the grid; a cell leaves one pixel free on
// each side.
QRect QZEColorArray::cellRect(int index) const
{
    const int column = index % ColumnCount;
    const int row = index / ColumnCount;
    const int left = column * width() / ColumnCount;
    const int right = (column + 1) * width() / ColumnCount;
    const int top = row * height() / RowCount;
    const int bottom = (row + 1) * height() / RowCount;
    return QRect(left + 1, top + 1, right - left - 2, bottom - top - 2);
}

int QZEColorArray::cellAt(const QPoint& point) const
{
    if (!rect().contains(point))
        return -1;
    const int column = point.x() * ColumnCount / width();
    const int row = point.y() * RowCount / height();
    return row * ColumnCount + column;
}

void QZEColorArray::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    for (int i = 0; i < CellCount; ++i) {
        const QBrush fill = isFreeCell(i) ? palette().button() : QBrush(_cells[size_t(i)]->getGammaQColor());
        qDrawShadePanel(&painter, cellRect(i), palette(), true, 1, &fill);
    }
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(cellRect(_current).adjusted(-1, -1, 0, 0));
    }
}

// --- Gestures ----------------------------------------------------------------

bool QZEColorArray::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int index = cellAt(help->pos());
    if (index < 0) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(help->globalPos(), describeCell(index), this, cellRect(index));
    }
    return true;
}

void QZEColorArray::mousePressEvent(QMouseEvent* event)
{
    const int index = cellAt(event->pos());
    if (event->button() != Qt::LeftButton || index < 0) {
        QWidget::mousePressEvent(event);
        return;
    }
    _current = index;
    update();
    emit selected(index);
}

void QZEColorArray::moveCurrent(int rows, int columns)
{
    const int column = _current % ColumnCount + columns;
    const int row = _current / ColumnCount + rows;
    if (column < 0 || column >= ColumnCount || row < 0 || row >= RowCount)
        return;
    _current = row * ColumnCount + column;
    update();
}

// Arrows move the current cell within the grid; Space and Return select it.
void QZEColorArray::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left: moveCurrent(0, -1); break;
    case Qt::Key_Right: moveCurrent(0, 1); break;
    case Qt::Key_Up: moveCurrent(-1, 0); break;
    case Qt::Key_Down: moveCurrent(1, 0); break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit selected(_current);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}
