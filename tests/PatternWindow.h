#ifndef PATTERNWINDOW_H
#define PATTERNWINDOW_H

// A window of known colours for tests that read the screen.

#include <QColor>
#include <QPainter>
#include <QRect>
#include <QWidget>

#include <utility>
#include <vector>

using Fill = std::pair<QRect, QColor>;

// A frameless window painted with rectangles of known colours, in logical
// pixels of the window.
class PatternWindow : public QWidget
{
public:
    PatternWindow(const QRect& geometry, std::vector<Fill> fills) : _fills(std::move(fills))
    {
        setWindowFlags(Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        setGeometry(geometry);
    }

    // The colour the pattern gives a point of the window.
    QColor colourAt(const QPoint& local) const
    {
        QColor colour;
        for (const Fill& fill : _fills)
            if (fill.first.contains(local))
                colour = fill.second;
        return colour;
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        for (const Fill& fill : _fills)
            painter.fillRect(fill.first, fill.second);
    }

private:
    std::vector<Fill> _fills;
};

#endif // PATTERNWINDOW_H
