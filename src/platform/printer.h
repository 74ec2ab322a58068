#pragma once

#include "platform/canvas.h"

#include <QColor>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <functional>
#include <memory>

class QPainter;
class QPrinter;

namespace platform {

class Surface;

// The screen's twips per pixel (1440 divided by its logical dots per inch, 15 on a 96-dpi
// screen): a picture measured in screen pixels takes this many twips per pixel on a page.
double twipsPerPixelX();
double twipsPerPixelY();

// The printer as the program drives it: a page measured in twips (1440 to the inch) from the
// top left of the printable area, a font, a print position CurrentX/CurrentY, and pictures
// placed and sized in twips. Everything is drawn at the printer's own resolution: text as
// text, pictures through their drawing code rather than as screen bitmaps.
//
// The first drawing call starts the document, NewPage starts the next page and EndDoc sends
// the document. A printer that cannot start (no printer, unwritable file) ignores the drawing.
class Printer {
public:
    explicit Printer(QPrinter& printer);
    ~Printer(); // a document still open is ended, as when the program stops
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    QPrinter& device() { return printer_; }
    // DeviceName: the printer's name, or the file a PDF goes to.
    QString deviceName() const;

    // ScaleWidth and ScaleHeight: the printable area in twips.
    double scaleWidth() const;
    double scaleHeight() const;

    // Font and colour of the text printed from now on (sizes in points).
    void setFontName(const QString& name) { state_.fontName = name; }
    QString fontName() const { return state_.fontName; }
    void setFontSize(double points) { state_.fontSize = points; }
    double fontSize() const { return state_.fontSize; }
    void setFontBold(bool on) { state_.fontBold = on; }
    bool fontBold() const { return state_.fontBold; }
    void setFontItalic(bool on) { state_.fontItalic = on; }
    bool fontItalic() const { return state_.fontItalic; }
    void setFontUnderline(bool on) { state_.fontUnderline = on; }
    bool fontUnderline() const { return state_.fontUnderline; }
    void setForeColor(const QColor& c) { state_.foreColor = c; }
    QColor foreColor() const { return state_.foreColor; }

    // CurrentX and CurrentY, in twips.
    void setCurrentX(double x) { state_.currentX = x; }
    double currentX() const { return state_.currentX; }
    void setCurrentY(double y) { state_.currentY = y; }
    double currentY() const { return state_.currentY; }

    // Print: the text's top left stands at CurrentX/CurrentY. A plain Print ends the line
    // (CurrentX back to 0, CurrentY one line of the current font lower); "Print text;" stays
    // on the line, CurrentX just past the text. Nothing wraps a long text.
    enum class LineEnd { NewLine, Stay };
    void print(const QString& text = {}, LineEnd end = LineEnd::NewLine);
    double textWidth(const QString& text) const;
    double textHeight(const QString& text = QStringLiteral("Ag")) const;

    // PaintPicture: the picture's top left at (x, y) and its size in twips; without a size, its
    // screen size (pixels × twips per pixel). A picture box prints what its drawing code draws
    // (see Surface::paintTo); any Canvas drawing of a picture `pixels` large prints the same
    // way, starting from `state` (its scale, colours and font).
    void paintPicture(Surface& picture, double x, double y, QSizeF size = {});
    void paintPicture(const std::function<void(Canvas&)>& draw, QSize pixels,
                      const DrawState& state, double x, double y, QSizeF size = {});

    void newPage();
    void endDoc();

private:
    QPainter* page();
    QFont font() const;
    void placePicture(QSize pixels, double x, double y, QSizeF size,
                      const std::function<void(QPainter&)>& draw);

    QPrinter& printer_;
    std::unique_ptr<QPainter> painter_;
    DrawState state_;
    bool failed_ = false;
};

} // namespace platform
