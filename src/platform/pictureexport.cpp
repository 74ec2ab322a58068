#include "platform/pictureexport.h"

#include "platform/surface.h"

#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace platform {

namespace {

// Vector files are drawn on a grid finer than the surface's pixels, so that lines and circles
// are written as shapes of the right width rather than as runs of one-pixel squares.
constexpr int SvgUnitsPerPixel = 4;
constexpr int PdfDotsPerInch = 1200;
constexpr int ScreenDotsPerInch = 96;

bool writePng(const QString& path, QSize size, const std::function<void(QPainter&)>& draw,
              int scale) {
    QImage image(size * scale, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter p(&image);
        p.scale(scale, scale);
        draw(p);
    }
    return image.save(path, "PNG");
}

bool writeSvg(const QString& path, QSize size, const std::function<void(QPainter&)>& draw,
              const QString& title) {
    QSvgGenerator svg;
    svg.setFileName(path);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size * SvgUnitsPerPixel));
    svg.setResolution(ScreenDotsPerInch);
    svg.setTitle(title);
    QPainter p;
    if (!p.begin(&svg))
        return false;
    p.scale(SvgUnitsPerPixel, SvgUnitsPerPixel);
    draw(p);
    return p.end();
}

bool writePdf(const QString& path, QSize size, const std::function<void(QPainter&)>& draw,
              const QString& title) {
    QPdfWriter pdf(path);
    pdf.setTitle(title);
    pdf.setCreator(QStringLiteral("Thermivo"));
    pdf.setResolution(PdfDotsPerInch);
    const QSizeF points = QSizeF(size) * 72.0 / ScreenDotsPerInch;
    pdf.setPageLayout(
        QPageLayout(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch),
                    QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    QPainter p;
    if (!p.begin(&pdf))
        return false;
    const double k = double(PdfDotsPerInch) / ScreenDotsPerInch;
    p.scale(k, k);
    draw(p);
    return p.end();
}

} // namespace

ExportFormat exportFormatFor(const QString& path) {
    const QString ext = QFileInfo(path).suffix().toLower();
    if (ext == QLatin1String("png"))
        return ExportFormat::Png;
    if (ext == QLatin1String("svg"))
        return ExportFormat::Svg;
    if (ext == QLatin1String("pdf"))
        return ExportFormat::Pdf;
    return ExportFormat::Unknown;
}

bool exportDrawing(const QString& path, QSize size, const std::function<void(QPainter&)>& draw,
                   int scale, const QString& title) {
    if (size.isEmpty() || scale < 1)
        return false;
    switch (exportFormatFor(path)) {
    case ExportFormat::Png:
        return writePng(path, size, draw, scale);
    case ExportFormat::Svg:
        return writeSvg(path, size, draw, title);
    case ExportFormat::Pdf:
        return writePdf(path, size, draw, title);
    case ExportFormat::Unknown:
        break;
    }
    return false;
}

bool exportSurface(Surface& surface, const QString& path, int scale, const QString& title) {
    return exportDrawing(
        path, surface.size().expandedTo(QSize(1, 1)),
        [&surface](QPainter& p) { surface.paintTo(p); }, scale, title);
}

} // namespace platform
