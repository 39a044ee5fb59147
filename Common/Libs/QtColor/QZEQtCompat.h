#pragma once

#include <QFont>
#include <QMetaType>
#include <QMouseEvent>
#include <QtGlobal>

/// The few calls whose spelling differs between Qt 5.15 and Qt 6, so that one
/// code path builds against both. Where both versions share an API (Qt 5.15
/// already has QRegularExpression, Qt::SkipEmptyParts, horizontalAdvance())
/// the code uses it directly; only what has no common spelling lives here.
///
/// @code
/// void Widget::mousePressEvent(QMouseEvent* event)
/// {
///     pick(QZEQtCompat::position(*event).toPoint());
/// }
/// @endcode
namespace QZEQtCompat {

/// The pointer's position in the receiving widget's coordinates, in
/// device-independent pixels with sub-pixel precision.
inline QPointF position(const QMouseEvent& event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.position();
#else
    return event.localPos();
#endif
}

/// The pointer's position in the coordinates of the receiving widget's window.
inline QPointF windowPosition(const QMouseEvent& event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.scenePosition();
#else
    return event.windowPos();
#endif
}

/// The pointer's position in global (virtual desktop) coordinates.
inline QPointF globalPosition(const QMouseEvent& event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.globalPosition();
#else
    return event.screenPos();
#endif
}

/// The id of the type registered under name, QMetaType::UnknownType when no
/// type has that name.
inline int metaTypeId(const char* name)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::fromName(name).id();
#else
    return QMetaType::type(name);
#endif
}

/// Which of the font's properties were set explicitly (QFont::ResolveProperties bits).
inline uint resolveMask(const QFont& font)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return uint(font.resolveMask());
#else
    return font.resolve();
#endif
}

} // namespace QZEQtCompat
