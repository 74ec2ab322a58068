#pragma once

#include <poppler-qt6.h>

#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>
#include <algorithm>
#include <cmath>
#include <memory>

// Reading back the PDF files that printing tests write: pages rendered without smoothing, so
// that every colour lands exactly, and the boxes that colours cover.
namespace pdfpages {

inline std::unique_ptr<Poppler::Document> open(const QString& path) {
    std::unique_ptr<Poppler::Document> doc = Poppler::Document::load(path);
    if (doc) {
        doc->setRenderHint(Poppler::Document::Antialiasing, false);
        doc->setRenderHint(Poppler::Document::TextAntialiasing, false);
    }
    return doc;
}

// Page `index` (from 0) at `dpi`; `crop` in pixels of that rendering, the whole page if empty.
inline QImage render(const Poppler::Document& doc, int index, double dpi, QRect crop = {}) {
    std::unique_ptr<Poppler::Page> page = doc.page(index);
    if (!page)
        return {};
    QImage img = crop.isEmpty() ? page->renderToImage(dpi, dpi)
                                : page->renderToImage(dpi, dpi, crop.x(), crop.y(), crop.width(),
                                                      crop.height());
    return img.convertToFormat(QImage::Format_RGB32);
}

// Every pixel within `tolerance` (per channel) of `colour`, as one box; empty when none.
inline QRect boxOf(const QImage& img, const QColor& colour, int tolerance = 6) {
    int left = img.width(), top = img.height(), right = -1, bottom = -1;
    for (int y = 0; y < img.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            const QRgb p = line[x];
            if (std::abs(qRed(p) - colour.red()) <= tolerance &&
                std::abs(qGreen(p) - colour.green()) <= tolerance &&
                std::abs(qBlue(p) - colour.blue()) <= tolerance) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

// Twips to pixels of a rendering at `dpi`.
inline double pixels(double twips, double dpi) {
    return twips * dpi / 1440.0;
}

} // namespace pdfpages
