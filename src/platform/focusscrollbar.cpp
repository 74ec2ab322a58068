#include "platform/focusscrollbar.h"

#include "platform/imagebutton.h"

#include <QPainter>

namespace platform {

FocusScrollBar::FocusScrollBar(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent) {
    setFocusPolicy(Qt::StrongFocus);
}

void FocusScrollBar::paintEvent(QPaintEvent* event) {
    QScrollBar::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter p(this);
    drawFocusFrame(p, rect());
}

} // namespace platform
