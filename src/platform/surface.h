#pragma once

#include "platform/canvas.h"

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>

class QPainter;

namespace platform {

// A picture box. It always keeps the image it shows, so what was drawn survives being covered
// and can be read back (tests, clipboard, printing). Drawing happens either in the Paint
// handler (run by refresh() and on resize) or at any time through canvas().
//
// Cls clears to BackColor and then to the frozen picture, if one was frozen: the old
// AutoRedraw + "Picture = Image" idiom that keeps a background under changing gauges.
class Surface : public QWidget {
    Q_OBJECT
public:
    explicit Surface(QWidget* parent = nullptr, const QString& name = {});
    ~Surface() override;

    DrawState& state() { return state_; }

    void setBackColor(const QColor& c);
    QColor backColor() const { return state_.backColor; }
    void setScale(double left, double top, double width, double height);
    void setPixelScale();
    double scaleWidth() const;
    double scaleHeight() const;

    // The Paint event of the box. Runs on refresh(); after a resize when the box is next shown
    // or read; and when the box is shown again after being hidden without a refresh since.
    using PaintHandler = std::function<void(Canvas&)>;
    void setPaintHandler(PaintHandler handler);
    // For boxes drawn from outside their Paint handler: code that draws what the box shows
    // now, so that paintTo can draw it again at another resolution.
    void setRedrawHandler(PaintHandler handler);
    // Refresh: clears to the background and runs the Paint handler now (if any), then repaints.
    void refresh();

    // Canvas for drawing outside Paint; valid until the next call that ends drawing
    // (image(), refresh(), resize, paint). Each use schedules a repaint.
    Canvas& canvas();
    void cls();

    // Picture = Image: the current image becomes the persistent background for later Cls.
    void freezePicture();
    // Picture = nothing.
    void clearPicture();
    void setPicture(const QImage& picture);
    bool hasPicture() const { return !picture_.isNull(); }

    // What the box shows now, in surface pixels: one pixel per logical pixel whatever the
    // zoom, as copy, print and read-back expect.
    QImage image();
    // The same at the screen's resolution (zoom × device pixel ratio pixels per logical one).
    QImage deviceImage();
    // Puts a drawing read earlier with image() back as what the box shows, leaving its frozen
    // picture alone.
    void restoreImage(const QImage& kept);

    // Draws the box's Paint handler (or its redraw handler) onto another painter (printer
    // page, export) at the painter's current transform, in this box's pixel size; a box with
    // neither gives its image.
    void paintTo(QPainter& painter);

    // Mouse positions converted to the box's scale.
    QPointF toUser(const QPointF& pixel) const;

signals:
    void mousePressed(Qt::MouseButton button, Qt::KeyboardModifiers mods, double x, double y);
    void mouseReleased(Qt::MouseButton button, Qt::KeyboardModifiers mods, double x, double y);
    void mouseMoved(Qt::MouseButtons buttons, Qt::KeyboardModifiers mods, double x, double y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void endDrawing();
    void ensureImage();
    void clearImage();
    QSize logicalSize() const { return size().expandedTo(QSize(1, 1)); }
    double pixelRatio() const;

    DrawState state_;
    QImage image_;
    QImage picture_;
    PaintHandler paint_;
    PaintHandler redraw_;
    std::unique_ptr<QPainter> painter_;
    std::unique_ptr<Canvas> canvas_;
    bool pending_ = false;
    // Nothing has been drawn since the box was last hidden (or ever). Callers skip Refresh on
    // hidden boxes, so a box coming back into view must run its Paint handler itself, as a
    // picture box did when it was uncovered.
    bool stale_ = true;
};

} // namespace platform
