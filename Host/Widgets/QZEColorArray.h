#ifndef QZECOLORARRAY_H
#define QZECOLORARRAY_H

#include "QZEColor.h"

#include <QString>
#include <QWidget>

#include <array>
#include <optional>

class QSettings;

/// A grid of custom colour cells, two rows of eight, numbered row by row.
///
/// addColor() fills the first free cell; once every cell holds a colour it
/// overwrites them in turn, oldest first. A click on a cell, or Space / Return
/// on the current cell (moved with the arrow keys), emits selected(index),
/// free cells included. Cells are painted sRGB-encoded through
/// QZEColor::getGammaQColor and show their values in a tooltip.
///
/// With setSettings() the cells persist between runs: they are read from the
/// settings at once and written back whenever one changes.
class QZEColorArray : public QWidget
{
    Q_OBJECT

public:
    static constexpr int RowCount = 2;                      ///< Rows of cells.
    static constexpr int ColumnCount = 8;                   ///< Cells per row.
    static constexpr int CellCount = RowCount * ColumnCount; ///< All cells.

    /// An empty grid over parent; name, when given, becomes the object name.
    explicit QZEColorArray(QWidget* parent = nullptr, const char* name = nullptr);

    /// A free cell, or an index outside the grid, gives black.
    QZEColor getColor(int index) const;
    /// True for a cell without a colour and for an index outside the grid.
    bool isFreeCell(int index) const;
    /// The cell the keyboard works on (0 to CellCount - 1).
    int getCurrentCell() const { return _current; }
    /// The cell addColor() writes to next.
    int getNextCell() const;

    /// Takes ownership of settings (nullptr ends persistence) and keeps the
    /// cells under group: "cells" (one "h s v" text per cell, empty when free)
    /// and "next" (the cell overwritten next once all are full). When the
    /// group holds no cells yet, the current ones are written there.
    void setSettings(QSettings* settings, const QString& group);

    /// The tooltip text of a cell.
    QString describeCell(int index) const;

    /// Room for the grid of cells.
    QSize sizeHint() const override;

public slots:
    /// Stores color in the first free cell, or over the oldest one when all are full.
    void addColor(QZEColor color);

signals:
    /// A cell was clicked or chosen with Space / Return (free cells included).
    void selected(int index);

protected:
    /// Shows the tooltip of the cell under the cursor.
    bool event(QEvent* event) override;
    /// Paints the cells, sRGB-encoded, and the current cell's focus frame.
    void paintEvent(QPaintEvent* event) override;
    /// A click on a cell makes it current and emits selected().
    void mousePressEvent(QMouseEvent* event) override;
    /// Arrow keys move the current cell; Space and Return select it.
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect cellRect(int index) const;
    int cellAt(const QPoint& point) const;
    int firstFreeCell() const;
    void moveCurrent(int rows, int columns);
    void load();
    void save() const;

    std::array<std::optional<QZEColor>, CellCount> _cells;
    int _next = 0; // cycle position once every cell is full
    int _current = 0;
    QSettings* _settings = nullptr;
    QString _group;
};

#endif // QZECOLORARRAY_H
