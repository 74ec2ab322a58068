#include "platform/imagebutton.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace platform {

ImageButton::ImageButton(Glyph glyph, const QString& name, const QString& toolTip, QWidget* parent)
    : QAbstractButton(parent), glyph_(glyph) {
    setObjectName(name);
    setToolTip(toolTip);
    setAccessibleName(toolTip); // what a screen reader says is what the mouse shows
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    resize(sizeHint());
}

void drawButtonFace(QPainter& p, const QRect& rect, bool down) {
    p.setRenderHint(QPainter::Antialiasing, true);
    const QRectF r = QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
    QLinearGradient g(r.topLeft(), r.bottomLeft());
    g.setColorAt(0, down ? QColor(200, 195, 190) : QColor(252, 250, 246));
    g.setColorAt(1, down ? QColor(235, 230, 225) : QColor(214, 208, 200));
    p.setPen(QColor(128, 128, 128));
    p.setBrush(g);
    p.drawRoundedRect(r, 3, 3);
}

void ImageButton::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const bool down = isDown();
    drawButtonFace(p, rect(), down);

    const QColor ink = isEnabled() ? QColor(0, 70, 160) : QColor(150, 150, 150);
    p.setPen(Qt::NoPen);
    p.setBrush(ink);
    const double cx = width() / 2.0 + (down ? 1 : 0);
    const double cy = height() / 2.0 + (down ? 1 : 0);
    const double s = std::min(width(), height()) * 0.28;
    auto triangle = [&](double x0, bool right) {
        QPainterPath path;
        if (right) {
            path.moveTo(x0, cy - s);
            path.lineTo(x0 + 1.5 * s, cy);
            path.lineTo(x0, cy + s);
        } else {
            path.moveTo(x0 + 1.5 * s, cy - s);
            path.lineTo(x0, cy);
            path.lineTo(x0 + 1.5 * s, cy + s);
        }
        path.closeSubpath();
        p.drawPath(path);
    };
    switch (glyph_) {
    case Glyph::First:
        p.drawRect(QRectF(cx - 1.2 * s, cy - s, 0.45 * s, 2 * s));
        triangle(cx - 0.6 * s, false);
        break;
    case Glyph::Last:
        triangle(cx - 0.9 * s, true);
        p.drawRect(QRectF(cx + 0.75 * s, cy - s, 0.45 * s, 2 * s));
        break;
    case Glyph::Pause:
        p.drawRect(QRectF(cx - 0.8 * s, cy - s, 0.55 * s, 2 * s));
        p.drawRect(QRectF(cx + 0.25 * s, cy - s, 0.55 * s, 2 * s));
        break;
    case Glyph::Play:
        triangle(cx - 0.6 * s, true);
        break;
    }
    if (hasFocus()) {
        p.setRenderHint(QPainter::Antialiasing, false);
        drawFocusFrame(p, rect().adjusted(2, 2, -2, -2));
    }
}

void ImageButton::keyPressEvent(QKeyEvent* event) {
    // Space is the button's own key; Enter presses it too, as it does a push button.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void drawFocusFrame(QPainter& painter, const QRect& r) {
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0, 0, 0), 1, Qt::DotLine));
    painter.drawRect(r.adjusted(0, 0, -1, -1));
    painter.restore();
}

} // namespace platform
