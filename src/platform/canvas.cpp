#include "platform/canvas.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QVarLengthArray>
#include <algorithm>
#include <cmath>
#include <deque>
#include <numbers>

namespace platform {

QColor qbColor(int n) {
    static const QColor palette[16] = {
        {0, 0, 0},       {0, 0, 128},   {0, 128, 0},   {0, 128, 128},
        {128, 0, 0},     {128, 0, 128}, {128, 128, 0}, {192, 192, 192},
        {128, 128, 128}, {0, 0, 255},   {0, 255, 0},   {0, 255, 255},
        {255, 0, 0},     {255, 0, 255}, {255, 255, 0}, {255, 255, 255},
    };
    return palette[std::clamp(n, 0, 15)];
}

int pointsToPixels(double points) {
    return static_cast<int>(std::floor(points * 96.0 / 72.0 + 0.5));
}

QString symbolToUnicode(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        switch (text[i].unicode()) {
        case 'D':
            out += QChar(0x0394);
            break; // Δ
        case 'p':
            out += QChar(0x03C0);
            break; // π
        case 0xAE:
            out += QChar(0x2192);
            break; // →
        case 0xAC:
            out += QChar(0x2190);
            break; // ←
        case 0xD6:
            out += QChar(0x221A);
            break; // √
        case 0xB8:
            out += QChar(0x00F7);
            break; // ÷
        case 0xBE:
            // The arrow extender has no glyph in our fonts. Followed by the arrow head it
            // becomes the one-piece long arrow; alone, a box-drawing line.
            if (i + 1 < text.size() && text[i + 1].unicode() == 0xAE) {
                out += QChar(0x27F6); // ⟶
                ++i;
            } else {
                out += QChar(0x2500);
            }
            break;
        default:
            out += text[i];
            break;
        }
    }
    return out;
}

namespace {

bool isSymbolFont(const QString& name) {
    return name.compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0;
}

int roundPixel(double v) {
    return static_cast<int>(std::floor(v + 0.5));
}

Qt::PenStyle penStyleFor(int drawStyle) {
    switch (drawStyle) {
    case 1:
        return Qt::DashLine;
    case 2:
        return Qt::DotLine;
    case 3:
        return Qt::DashDotLine;
    case 4:
        return Qt::DashDotDotLine;
    case 5:
        return Qt::NoPen;
    default:
        return Qt::SolidLine;
    }
}

// From a to b, leaving out b, as the old line drawing did. Axis-parallel lines (most of what
// this program draws, the window background alone has 601) are filled as one rectangle.
void plotLine(QPainter& p, QPoint a, QPoint b, const QColor& color, bool scaled) {
    if (a == b)
        return;
    if (a.y() == b.y()) {
        const int x0 = a.x() < b.x() ? a.x() : b.x() + 1;
        p.fillRect(QRect(x0, a.y(), std::abs(b.x() - a.x()), 1), color);
        return;
    }
    if (a.x() == b.x()) {
        const int y0 = a.y() < b.y() ? a.y() : b.y() + 1;
        p.fillRect(QRect(a.x(), y0, 1, std::abs(b.y() - a.y())), color);
        return;
    }
    if (scaled) {
        // On a finer device the slanted line is drawn as a line one surface pixel wide, through
        // the pixel centres, rather than as a staircase of enlarged dots. Square ends cover the
        // end pixels whole: with flat ones, a curve made of one-pixel steps showed gaps.
        p.setPen(QPen(color, 1, Qt::SolidLine, Qt::SquareCap));
        p.drawLine(QPointF(a) + QPointF(0.5, 0.5), QPointF(b) + QPointF(0.5, 0.5));
        return;
    }
    // Bresenham for the slanted ones.
    int dx = std::abs(b.x() - a.x()), sx = a.x() < b.x() ? 1 : -1;
    int dy = -std::abs(b.y() - a.y()), sy = a.y() < b.y() ? 1 : -1;
    int err = dx + dy;
    int x = a.x(), y = a.y();
    QVarLengthArray<QPoint, 256> pts;
    while (!(x == b.x() && y == b.y())) {
        pts.append(QPoint(x, y));
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y += sy;
        }
    }
    p.setPen(QPen(color, 0));
    p.drawPoints(pts.constData(), static_cast<int>(pts.size()));
}

} // namespace

Canvas::Canvas(QPainter& painter, DrawState& state, QSize pixelSize)
    : p_(painter), st_(state), size_(pixelSize),
      // The device transform includes a high-density screen's pixel ratio.
      scaled_(painter.deviceTransform().type() >= QTransform::TxScale) {
    p_.setRenderHint(QPainter::Antialiasing, false);
    p_.setRenderHint(QPainter::TextAntialiasing, true);
}

void Canvas::setScale(double left, double top, double width, double height) {
    st_.setScale(left, top, width, height);
}

void Canvas::setPixelScale() {
    setScale(0, 0, 0, 0);
}

double Canvas::scaleWidth() const {
    return st_.userWidth(size_.width());
}
double Canvas::scaleHeight() const {
    return st_.userHeight(size_.height());
}

double Canvas::toPixelX(double x) const {
    if (st_.scaleWidth == 0)
        return x;
    return (x - st_.scaleLeft) * size_.width() / st_.scaleWidth;
}

double Canvas::toPixelY(double y) const {
    if (st_.scaleHeight == 0)
        return y;
    return (y - st_.scaleTop) * size_.height() / st_.scaleHeight;
}

double Canvas::toUserWidth(double pixels) const {
    return st_.scaleWidth == 0 ? pixels : pixels * st_.scaleWidth / size_.width();
}

double Canvas::toUserHeight(double pixels) const {
    return st_.scaleHeight == 0 ? pixels : pixels * st_.scaleHeight / size_.height();
}

void Canvas::setBackgroundPicture(const QImage* picture) {
    picture_ = picture;
}

void Canvas::cls() {
    p_.fillRect(QRect(QPoint(0, 0), size_), st_.backColor);
    if (picture_ && !picture_->isNull())
        p_.drawImage(0, 0, *picture_);
    st_.currentX = st_.scaleWidth == 0 ? 0 : st_.scaleLeft;
    st_.currentY = st_.scaleHeight == 0 ? 0 : st_.scaleTop;
}

void Canvas::line(double x1, double y1, double x2, double y2, std::optional<QColor> color,
                  LineKind kind) {
    const QColor c = color.value_or(st_.foreColor);
    const QPoint a(roundPixel(toPixelX(x1)), roundPixel(toPixelY(y1)));
    const QPoint b(roundPixel(toPixelX(x2)), roundPixel(toPixelY(y2)));
    st_.currentX = x2;
    st_.currentY = y2;

    if (kind == LineKind::Plain) {
        if (st_.drawWidth <= 1 && st_.drawStyle == 0) {
            plotLine(p_, a, b, c, scaled_);
            return;
        }
        p_.setPen(QPen(c, std::max(1, st_.drawWidth), penStyleFor(st_.drawStyle), Qt::RoundCap));
        p_.drawLine(a, b);
        return;
    }

    // Inclusive of both corners, whichever order they come in.
    const QRect r(QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
                  QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y())));
    if (kind == LineKind::FilledBox) {
        p_.fillRect(r, c);
        return;
    }
    if (st_.fillStyle == FillStyle::Solid)
        p_.fillRect(r, st_.fillColor);
    const int w = std::max(1, st_.drawWidth);
    if (w == 1 && st_.drawStyle == 0) {
        p_.fillRect(QRect(r.left(), r.top(), r.width(), 1), c);
        p_.fillRect(QRect(r.left(), r.bottom(), r.width(), 1), c);
        p_.fillRect(QRect(r.left(), r.top(), 1, r.height()), c);
        p_.fillRect(QRect(r.right(), r.top(), 1, r.height()), c);
        return;
    }
    p_.setPen(QPen(c, w, penStyleFor(st_.drawStyle), Qt::SquareCap, Qt::MiterJoin));
    p_.setBrush(Qt::NoBrush);
    p_.drawRect(QRectF(r.left(), r.top(), r.width() - 1, r.height() - 1));
}

void Canvas::circle(double x, double y, double r, std::optional<QColor> color,
                    std::optional<double> start, std::optional<double> end, double aspect) {
    const QColor c = color.value_or(st_.foreColor);
    const double cx = toPixelX(x);
    const double cy = toPixelY(y);
    // The radius is measured along x unless the ellipse is taller than wide.
    double rx = std::abs(r * (st_.scaleWidth == 0 ? 1.0 : size_.width() / st_.scaleWidth));
    double ry = rx * aspect;
    if (aspect > 1.0) {
        ry =
            std::abs(r * (st_.scaleHeight == 0 ? 1.0 : size_.height() / std::abs(st_.scaleHeight)));
        rx = ry / aspect;
    }
    st_.currentX = x;
    st_.currentY = y;
    const QRectF box(cx - rx, cy - ry, 2 * rx, 2 * ry);

    QPen pen(c, std::max(1, st_.drawWidth), penStyleFor(st_.drawStyle));
    if (st_.drawWidth <= 1 && !scaled_)
        pen.setWidth(0);
    p_.setPen(pen);
    p_.setBrush(st_.fillStyle == FillStyle::Solid ? QBrush(st_.fillColor) : QBrush(Qt::NoBrush));

    if (!start && !end) {
        p_.drawEllipse(box);
        return;
    }
    const double s = std::abs(start.value_or(0.0));
    double e = std::abs(end.value_or(2 * std::numbers::pi));
    double span = e - s;
    if (span <= 0)
        span += 2 * std::numbers::pi;
    const int a16 = roundPixel(s * 180.0 / std::numbers::pi * 16);
    const int span16 = roundPixel(span * 180.0 / std::numbers::pi * 16);
    const bool radiusStart = start && *start < 0;
    const bool radiusEnd = end && *end < 0;
    if (radiusStart && radiusEnd) {
        p_.drawPie(box, a16, span16);
    } else {
        p_.drawArc(box, a16, span16);
        const auto edge = [&](double angle) {
            return QPointF(cx + rx * std::cos(angle), cy - ry * std::sin(angle));
        };
        if (radiusStart)
            p_.drawLine(QPointF(cx, cy), edge(s));
        if (radiusEnd)
            p_.drawLine(QPointF(cx, cy), edge(e));
    }
}

void Canvas::pset(double x, double y, std::optional<QColor> color) {
    const int w = std::max(1, st_.drawWidth);
    const int px = roundPixel(toPixelX(x)) - (w - 1) / 2;
    const int py = roundPixel(toPixelY(y)) - (w - 1) / 2;
    p_.fillRect(QRect(px, py, w, w), color.value_or(st_.foreColor));
    st_.currentX = x;
    st_.currentY = y;
}

namespace {

struct FontEntry {
    QString name;
    double size;
    bool bold, italic, underline;
    int stretch;
    QFont font;
    QFontMetricsF metrics;
};

// Text is printed in small pieces (subscripts, superscripts), each asking for the same few
// fonts again; a font and its metrics are built once.
const FontEntry& fontFor(const DrawState& st) {
    static std::deque<FontEntry> cache;
    for (const FontEntry& e : cache)
        if (e.size == st.fontSize && e.bold == st.fontBold && e.italic == st.fontItalic &&
            e.underline == st.fontUnderline && e.stretch == st.fontStretch && e.name == st.fontName)
            return e;
    QFont f;
    f.setFamilies(fontFamilies(st.fontName));
    f.setPixelSize(std::max(1, pointsToPixels(st.fontSize)));
    f.setBold(st.fontBold);
    f.setItalic(st.fontItalic);
    f.setUnderline(st.fontUnderline);
    if (st.fontStretch != 100)
        f.setStretch(st.fontStretch);
    if (cache.size() >= 32)
        cache.pop_front();
    cache.push_back({st.fontName, st.fontSize, st.fontBold, st.fontItalic, st.fontUnderline,
                     st.fontStretch, f, QFontMetricsF(f)});
    return cache.back();
}

} // namespace

QFont Canvas::font() const {
    return fontFor(st_).font;
}

QStringList fontFamilies(const QString& name) {
    // Arial (and Symbol, drawn as Unicode in the ordinary font) go straight to the metric
    // twin we ship with, sparing a font-configuration lookup for every size and style.
    if (isSymbolFont(name) || name.compare(QLatin1String("Arial"), Qt::CaseInsensitive) == 0)
        return {QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")};
    return {name, QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")};
}

double Canvas::textWidth(const QString& text) const {
    const QString shown = isSymbolFont(st_.fontName) ? symbolToUnicode(text) : text;
    return toUserWidth(fontFor(st_).metrics.horizontalAdvance(shown));
}

double Canvas::textHeight(const QString& text) const {
    const QFontMetricsF& fm = fontFor(st_).metrics;
    const auto lines = std::max<qsizetype>(1, text.count(QLatin1Char('\n')) + 1);
    return toUserHeight(fm.height() * static_cast<double>(lines));
}

void Canvas::print(const QString& text) {
    const QString shown = isSymbolFont(st_.fontName) ? symbolToUnicode(text) : text;
    const FontEntry& entry = fontFor(st_);
    const QFont& f = entry.font;
    const QFontMetricsF& fm = entry.metrics;
    p_.setFont(f);
    p_.setPen(st_.foreColor);
    if (!shown.contains(QLatin1Char('\n'))) {
        p_.drawText(QPointF(toPixelX(st_.currentX), toPixelY(st_.currentY) + fm.ascent()), shown);
        st_.currentX += toUserWidth(fm.horizontalAdvance(shown));
        return;
    }
    const QStringList lines = shown.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString piece = lines[i];
        piece.remove(QLatin1Char('\r'));
        const double px = toPixelX(st_.currentX);
        const double py = toPixelY(st_.currentY);
        p_.drawText(QPointF(px, py + fm.ascent()), piece);
        st_.currentX += toUserWidth(fm.horizontalAdvance(piece));
        if (i + 1 < lines.size()) {
            st_.currentX = st_.scaleWidth == 0 ? 0 : st_.scaleLeft;
            st_.currentY += toUserHeight(fm.height());
        }
    }
}

} // namespace platform
