#include "platform/surface.h"

#include <QHideEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QShowEvent>

namespace platform {

Surface::Surface(QWidget* parent, const QString& name) : QWidget(parent) {
    if (!name.isEmpty())
        setObjectName(name);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

Surface::~Surface() {
    endDrawing();
}

void Surface::setBackColor(const QColor& c) {
    state_.backColor = c;
    endDrawing();
    clearImage();
    update();
}

void Surface::setScale(double left, double top, double width, double height) {
    state_.setScale(left, top, width, height);
}

void Surface::setPixelScale() {
    setScale(0, 0, 0, 0);
}

double Surface::scaleWidth() const {
    return state_.userWidth(width());
}
double Surface::scaleHeight() const {
    return state_.userHeight(height());
}

void Surface::setPaintHandler(PaintHandler handler) {
    paint_ = std::move(handler);
}

void Surface::setRedrawHandler(PaintHandler handler) {
    redraw_ = std::move(handler);
}

void Surface::endDrawing() {
    canvas_.reset();
    if (painter_) {
        painter_->end();
        painter_.reset();
    }
}

double Surface::pixelRatio() const {
    return devicePixelRatioF();
}

void Surface::ensureImage() {
    // The image is kept at the screen's resolution; painters on it work in logical pixels.
    const double ratio = pixelRatio();
    const QSize want = (QSizeF(logicalSize()) * ratio).toSize();
    if (image_.size() == want && image_.devicePixelRatio() == ratio)
        return;
    // A box with Paint code repaints at its new size the next time it is shown or read;
    // hidden panels resized while the window is built are not drawn for nothing.
    pending_ = static_cast<bool>(paint_);
    QImage old = image_;
    image_ = QImage(want, QImage::Format_RGB32);
    image_.setDevicePixelRatio(ratio);
    image_.fill(state_.backColor);
    QPainter p(&image_);
    if (!picture_.isNull())
        p.drawImage(0, 0, picture_);
    else if (!old.isNull() && !paint_)
        p.drawImage(0, 0, old); // boxes drawn from outside keep what they had
}

void Surface::clearImage() {
    ensureImage();
    image_.fill(state_.backColor);
    if (!picture_.isNull()) {
        QPainter p(&image_);
        p.drawImage(0, 0, picture_);
    }
}

Canvas& Surface::canvas() {
    if (!painter_) {
        ensureImage();
        if (pending_)
            refresh();
        painter_ = std::make_unique<QPainter>(&image_);
        canvas_ = std::make_unique<Canvas>(*painter_, state_, logicalSize());
        canvas_->setBackgroundPicture(&picture_);
    }
    update();
    return *canvas_;
}

void Surface::cls() {
    canvas().cls();
}

void Surface::refresh() {
    pending_ = false;
    stale_ = false;
    if (paint_) {
        endDrawing();
        clearImage();
        state_.currentX = state_.scaleWidth == 0 ? 0 : state_.scaleLeft;
        state_.currentY = state_.scaleHeight == 0 ? 0 : state_.scaleTop;
        QPainter p(&image_);
        Canvas c(p, state_, logicalSize());
        c.setBackgroundPicture(&picture_);
        paint_(c);
    }
    update();
}

void Surface::freezePicture() {
    endDrawing();
    ensureImage();
    picture_ = image_.copy();
}

void Surface::clearPicture() {
    endDrawing();
    picture_ = QImage();
}

void Surface::setPicture(const QImage& picture) {
    endDrawing();
    picture_ = picture;
    clearImage();
    update();
}

QImage Surface::image() {
    const QImage device = deviceImage();
    if (device.devicePixelRatio() == 1.0)
        return device;
    // Each logical pixel is a block of identical device pixels for everything drawn on the
    // pixel grid, so its first device pixel stands for it.
    QImage logical = device.scaled(logicalSize(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    logical.setDevicePixelRatio(1.0);
    return logical;
}

QImage Surface::deviceImage() {
    endDrawing();
    ensureImage();
    if (pending_)
        refresh();
    return image_;
}

void Surface::restoreImage(const QImage& kept) {
    endDrawing();
    ensureImage();
    pending_ = false;
    QPainter p(&image_);
    p.drawImage(0, 0, kept);
    p.end();
    update();
}

void Surface::paintTo(QPainter& painter) {
    if (!paint_ && !redraw_) {
        painter.drawImage(0, 0, image());
        return;
    }
    const QSize sz = size().expandedTo(QSize(1, 1));
    painter.fillRect(QRect(QPoint(0, 0), sz), state_.backColor);
    DrawState copy = state_; // the screen keeps its own CurrentX/CurrentY and colours
    Canvas c(painter, copy, sz);
    if (paint_) {
        if (!picture_.isNull())
            painter.drawImage(0, 0, picture_);
        c.setBackgroundPicture(&picture_);
        paint_(c);
    } else {
        // The redraw draws the frozen background too, from its code.
        redraw_(c);
    }
}

QPointF Surface::toUser(const QPointF& pixel) const {
    const double x = state_.scaleWidth == 0
                         ? pixel.x()
                         : state_.scaleLeft + pixel.x() * state_.scaleWidth / width();
    const double y = state_.scaleHeight == 0
                         ? pixel.y()
                         : state_.scaleTop + pixel.y() * state_.scaleHeight / height();
    return {x, y};
}

void Surface::paintEvent(QPaintEvent*) {
    endDrawing();
    ensureImage();
    if (pending_)
        refresh();
    QPainter p(this);
    p.drawImage(0, 0, image_);
}

void Surface::resizeEvent(QResizeEvent* event) {
    endDrawing();
    ensureImage();
    update();
    QWidget::resizeEvent(event);
}

void Surface::showEvent(QShowEvent* event) {
    // Restoring a minimised window changes nothing that was drawn; only a real hide can have
    // skipped a refresh.
    if (stale_ && paint_ && !event->spontaneous())
        pending_ = true;
    QWidget::showEvent(event);
}

void Surface::hideEvent(QHideEvent* event) {
    if (!event->spontaneous())
        stale_ = true;
    QWidget::hideEvent(event);
}

void Surface::mousePressEvent(QMouseEvent* event) {
    const QPointF u = toUser(event->position());
    emit mousePressed(event->button(), event->modifiers(), u.x(), u.y());
}

void Surface::mouseReleaseEvent(QMouseEvent* event) {
    const QPointF u = toUser(event->position());
    emit mouseReleased(event->button(), event->modifiers(), u.x(), u.y());
}

void Surface::mouseMoveEvent(QMouseEvent* event) {
    const QPointF u = toUser(event->position());
    emit mouseMoved(event->buttons(), event->modifiers(), u.x(), u.y());
}

} // namespace platform
