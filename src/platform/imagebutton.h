#pragma once

#include <QAbstractButton>

class QPainter;

namespace platform {

// The old "Image" control used as a button: a small picture that reacts to a click. A click
// does not take the focus from the field being edited (leaving a field validates it), but the
// keyboard reaches it with Tab, shows a focus frame and presses it with Space or Enter. The
// pictures are drawn here rather than shipped as bitmaps.
class ImageButton : public QAbstractButton {
    Q_OBJECT
public:
    enum class Glyph { First, Last, Pause, Play };

    ImageButton(Glyph glyph, const QString& name, const QString& toolTip, QWidget* parent);

    Glyph glyph() const { return glyph_; }
    QSize sizeHint() const override { return {26, 24}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Glyph glyph_;
};

// The raised face every picture button of the program shares, pressed in when `down`. Leaves
// the painter anti-aliased for the glyph drawn over it.
void drawButtonFace(QPainter& painter, const QRect& r, bool down);

// The keyboard focus frame of the program's own controls: a dotted rectangle inside `r`.
void drawFocusFrame(QPainter& painter, const QRect& r);

} // namespace platform
