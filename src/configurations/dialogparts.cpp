#include "configurations/dialogparts.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

namespace configurations {

QLabel* makeLabel(QWidget* parent, const QString& name, const QString& caption, const QRect& at) {
    auto* label = new QLabel(caption, parent);
    label->setObjectName(name);
    label->setGeometry(at);
    return label;
}

QPushButton* makeButton(QWidget* parent, const QString& name, const QString& caption,
                        const QRect& at) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setGeometry(at);
    button->setAutoDefault(false);
    button->setDefault(false);
    return button;
}

void placeBesideMainWindow(QWidget* dialog, const QWidget* mainWindow) {
    if (mainWindow)
        dialog->move(mainWindow->pos() + QPoint(20, 20));
}

QPixmap hourglassPicture(int size) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter p(&picture);
    p.setRenderHint(QPainter::Antialiasing);
    const double s = size;
    // Frame: top and bottom plates.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(128, 64, 0));
    p.drawRect(QRectF(s * 0.15, s * 0.04, s * 0.7, s * 0.08));
    p.drawRect(QRectF(s * 0.15, s * 0.88, s * 0.7, s * 0.08));
    // Glass.
    QPainterPath glass;
    glass.moveTo(s * 0.22, s * 0.12);
    glass.lineTo(s * 0.78, s * 0.12);
    glass.lineTo(s * 0.54, s * 0.5);
    glass.lineTo(s * 0.78, s * 0.88);
    glass.lineTo(s * 0.22, s * 0.88);
    glass.lineTo(s * 0.46, s * 0.5);
    glass.closeSubpath();
    p.setPen(QPen(QColor(0, 0, 0), 1));
    p.setBrush(QColor(220, 235, 255));
    p.drawPath(glass);
    // Sand: what is left above, the heap below.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(230, 190, 80));
    QPainterPath top;
    top.moveTo(s * 0.34, s * 0.3);
    top.lineTo(s * 0.66, s * 0.3);
    top.lineTo(s * 0.5, s * 0.48);
    top.closeSubpath();
    p.drawPath(top);
    QPainterPath heap;
    heap.moveTo(s * 0.26, s * 0.87);
    heap.lineTo(s * 0.74, s * 0.87);
    heap.lineTo(s * 0.5, s * 0.66);
    heap.closeSubpath();
    p.drawPath(heap);
    p.drawRect(QRectF(s * 0.49, s * 0.48, s * 0.02, s * 0.3));
    return picture;
}

} // namespace configurations
