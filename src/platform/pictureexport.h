#pragma once

#include <QSize>
#include <QString>
#include <functional>

class QPainter;

namespace platform {

class Surface;

enum class ExportFormat { Unknown, Png, Svg, Pdf };

// The file format a name asks for, from its extension (case ignored).
ExportFormat exportFormatFor(const QString& path);

// Scales offered for bitmaps: the drawing is made again at that resolution, never enlarged.
inline constexpr int ExportScales[] = {1, 2, 4};

// Writes a drawing of `size` surface pixels to `path` in the format of its extension: a PNG
// `scale` times larger, an SVG or a one-page PDF of the same proportions. `draw` paints in
// surface pixels on a painter already transformed to the file's device. False when the format
// is unknown or the file cannot be written.
bool exportDrawing(const QString& path, QSize size, const std::function<void(QPainter&)>& draw,
                   int scale = 1, const QString& title = {});

// The same for what a picture box shows now, drawn again through its Paint or redraw code.
bool exportSurface(Surface& surface, const QString& path, int scale = 1, const QString& title = {});

} // namespace platform
