#include "platform/printer.h"

#include "platform/surface.h"

#include <QFileInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>
#include <QScreen>
#include <cmath>

namespace platform {

namespace {

constexpr double TwipsPerInch = 1440;
constexpr double TwipsPerPoint = 20;

double screenDpi(bool horizontal) {
    const QScreen* s = QGuiApplication::primaryScreen();
    const double dpi = s ? (horizontal ? s->logicalDotsPerInchX() : s->logicalDotsPerInchY()) : 96;
    return dpi > 0 ? dpi : 96;
}

} // namespace

double twipsPerPixelX() {
    return TwipsPerInch / screenDpi(true);
}

double twipsPerPixelY() {
    return TwipsPerInch / screenDpi(false);
}

Printer::Printer(QPrinter& printer) : printer_(printer) {
    state_.fontName = QStringLiteral("Arial");
    state_.fontSize = 10;
}

Printer::~Printer() {
    endDoc();
}

QString Printer::deviceName() const {
    if (!printer_.printerName().isEmpty())
        return printer_.printerName();
    return QFileInfo(printer_.outputFileName()).fileName();
}

// The printable area as the device lays it out (its dots, not the rounded paper figures).
double Printer::scaleWidth() const {
    return printer_.width() * TwipsPerInch / printer_.logicalDpiX();
}

double Printer::scaleHeight() const {
    return printer_.height() * TwipsPerInch / printer_.logicalDpiY();
}

QPainter* Printer::page() {
    if (painter_)
        return painter_.get();
    if (failed_)
        return nullptr;
    auto p = std::make_unique<QPainter>();
    if (!p->begin(&printer_)) {
        failed_ = true;
        return nullptr;
    }
    // From here on the painter speaks twips; the device turns them into its own dots.
    p->setTransform(QTransform::fromScale(printer_.logicalDpiX() / TwipsPerInch,
                                          printer_.logicalDpiY() / TwipsPerInch));
    painter_ = std::move(p);
    return painter_.get();
}

QFont Printer::font() const {
    QFont f;
    f.setFamilies(fontFamilies(state_.fontName));
    // Pixels of the painter are twips here: a point is 20 of them.
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(state_.fontSize * TwipsPerPoint))));
    f.setBold(state_.fontBold);
    f.setItalic(state_.fontItalic);
    f.setUnderline(state_.fontUnderline);
    return f;
}

double Printer::textWidth(const QString& text) const {
    return QFontMetricsF(font()).horizontalAdvance(text);
}

double Printer::textHeight(const QString& text) const {
    const auto lines = std::max<qsizetype>(1, text.count(QLatin1Char('\n')) + 1);
    return QFontMetricsF(font()).height() * static_cast<double>(lines);
}

void Printer::print(const QString& text, LineEnd end) {
    const QFont f = font();
    const QFontMetricsF fm(f);
    if (!text.isEmpty()) {
        if (QPainter* p = page()) {
            p->setFont(f);
            p->setPen(state_.foreColor);
            p->drawText(QPointF(state_.currentX, state_.currentY + fm.ascent()), text);
        }
    } else {
        page(); // an empty Print still starts the page
    }
    if (end == LineEnd::NewLine) {
        state_.currentX = 0;
        state_.currentY += fm.height();
    } else {
        state_.currentX += fm.horizontalAdvance(text);
    }
}

void Printer::placePicture(QSize pixels, double x, double y, QSizeF size,
                           const std::function<void(QPainter&)>& draw) {
    QPainter* p = page();
    if (!p || pixels.isEmpty())
        return;
    if (!size.isValid())
        size = QSizeF(pixels.width() * twipsPerPixelX(), pixels.height() * twipsPerPixelY());
    p->save();
    p->translate(x, y);
    p->scale(size.width() / pixels.width(), size.height() / pixels.height());
    p->setClipRect(QRect(QPoint(0, 0), pixels));
    draw(*p);
    p->restore();
}

void Printer::paintPicture(Surface& picture, double x, double y, QSizeF size) {
    placePicture(picture.size(), x, y, size, [&](QPainter& p) { picture.paintTo(p); });
}

void Printer::paintPicture(const std::function<void(Canvas&)>& draw, QSize pixels,
                           const DrawState& state, double x, double y, QSizeF size) {
    placePicture(pixels, x, y, size, [&](QPainter& p) {
        DrawState st = state;
        p.fillRect(QRect(QPoint(0, 0), pixels), st.backColor);
        Canvas c(p, st, pixels);
        draw(c);
    });
}

void Printer::newPage() {
    if (QPainter* p = page()) {
        Q_UNUSED(p);
        printer_.newPage();
    }
    state_.currentX = 0;
    state_.currentY = 0;
}

void Printer::endDoc() {
    if (painter_) {
        painter_->end();
        painter_.reset();
    }
    failed_ = false;
    state_.currentX = 0;
    state_.currentY = 0;
}

} // namespace platform
