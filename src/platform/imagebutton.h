#pragma once

#include <QAbstractButton>

namespace platform {

// The old "Image" control used as a button: a small picture that reacts to a click and takes
// no focus. The pictures are drawn here rather than shipped as bitmaps.
class ImageButton : public QAbstractButton {
    Q_OBJECT
public:
    enum class Glyph { First, Last, Pause, Play };

    ImageButton(Glyph glyph, const QString& name, const QString& toolTip, QWidget* parent);

    Glyph glyph() const { return glyph_; }
    QSize sizeHint() const override { return {26, 24}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Glyph glyph_;
};

} // namespace platform
