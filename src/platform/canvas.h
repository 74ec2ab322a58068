#pragma once

#include <QColor>
#include <QFont>
#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>

class QImage;
class QPainter;

namespace platform {

// The standard 16-colour palette of the old runtime (0 black, 7 light grey, 8 grey, 15 white).
QColor qbColor(int n);

enum class FillStyle { Solid = 0, Transparent = 1 };
enum class LineKind { Plain, Box, FilledBox };

// The drawing properties a picture box keeps between calls. Units are the box's own scale
// (pixels when no user scale is set).
struct DrawState {
    // User scale; a zero width or height means "pixels".
    double scaleLeft = 0, scaleTop = 0, scaleWidth = 0, scaleHeight = 0;
    QColor foreColor = QColor(0, 0, 0);
    QColor fillColor = QColor(0, 0, 0);
    QColor backColor = QColor(255, 255, 255);
    FillStyle fillStyle = FillStyle::Transparent;
    int drawWidth = 1;
    int drawStyle = 0; // 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot, 5 transparent
    QString fontName = QStringLiteral("Arial");
    double fontSize = 8; // points, rendered at 96 dots per inch as the old screens were
    bool fontBold = false;
    bool fontItalic = false;
    bool fontUnderline = false;
    // Horizontal stretch in percent, for the rare text that must be narrowed to fit its place.
    int fontStretch = 100;
    double currentX = 0, currentY = 0;

    void setScale(double left, double top, double width, double height) {
        scaleLeft = left;
        scaleTop = top;
        scaleWidth = width;
        scaleHeight = height;
    }
    // ScaleWidth/ScaleHeight of a box of the given pixel size.
    double userWidth(int pixels) const { return scaleWidth != 0 ? scaleWidth : pixels; }
    double userHeight(int pixels) const { return scaleHeight != 0 ? scaleHeight : pixels; }
};

// Picture-box drawing on any paint device. Coordinates are in the state's user scale;
// the painter may carry a transform from surface pixels to its device (printer, export).
// Boxes and lines are drawn without anti-aliasing so that they land on exact pixels.
class Canvas {
public:
    Canvas(QPainter& painter, DrawState& state, QSize pixelSize);

    DrawState& state() { return st_; }
    const DrawState& state() const { return st_; }
    QPainter& painter() { return p_; }
    QSize pixelSize() const { return size_; }

    // Scale: Scale (left, top)-(right, bottom) as one call, or back to pixels.
    void setScale(double left, double top, double width, double height);
    void setPixelScale();
    double scaleWidth() const;
    double scaleHeight() const;

    // Fills with BackColor, then lays the frozen picture (if any) over it, and puts
    // CurrentX/CurrentY back to the origin.
    void cls();
    void setBackgroundPicture(const QImage* picture);
    // Line (x1, y1)-(x2, y2) [, color] [, B | BF]. A plain line leaves out its last point, as
    // the old runtime did. A box covers both corners; with FillStyle solid its inside takes
    // FillColor. BF fills the whole box with the line colour. Sets CurrentX/Y to (x2, y2).
    void line(double x1, double y1, double x2, double y2, std::optional<QColor> color = {},
              LineKind kind = LineKind::Plain);
    // Circle (x, y), r [, color [, start, end [, aspect]]]. Angles in radians; a negative angle
    // also draws the radius to that end. Filled with FillColor when FillStyle is solid.
    void circle(double x, double y, double r, std::optional<QColor> color = {},
                std::optional<double> start = {}, std::optional<double> end = {},
                double aspect = 1.0);
    void pset(double x, double y, std::optional<QColor> color = {});

    // Print at CurrentX/CurrentY: the text's top-left stands there and CurrentX advances by
    // its width. Text in the "Symbol" font is drawn as its Unicode equivalent.
    void print(const QString& text);
    double textWidth(const QString& text) const;
    double textHeight(const QString& text = QStringLiteral("Ag")) const;

    // The font the current state stands for (pixel size at 96 dpi).
    QFont font() const;

    // Conversions between the user scale and surface pixels.
    double toPixelX(double x) const;
    double toPixelY(double y) const;
    double toUserWidth(double pixels) const;
    double toUserHeight(double pixels) const;

private:
    QPainter& p_;
    DrawState& st_;
    QSize size_;
    const QImage* picture_ = nullptr;
    // Drawn onto a finer device (a printer page): one-pixel strokes must keep their width there
    // instead of becoming hairlines.
    bool scaled_ = false;
};

// Maps text written for the old "Symbol" font to Unicode (Δ, π, →, ←, √, ÷); the extender and
// arrow head " ¾®" become the one-piece long arrow ⟶.
QString symbolToUnicode(const QString& text);

// Font families standing for a font name of the old program ("Arial" → Liberation Sans).
QStringList fontFamilies(const QString& name);

// Pixel size of a font of `points` on a 96-dpi screen, rounded as the old runtime did.
int pointsToPixels(double points);

} // namespace platform
