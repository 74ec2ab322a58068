#pragma once

#include <QScrollBar>

namespace platform {

// A scroll bar used as a slider: the style draws no focus for scroll bars, so this one frames
// itself while it has the keyboard focus.
class FocusScrollBar : public QScrollBar {
    Q_OBJECT
public:
    FocusScrollBar(Qt::Orientation orientation, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace platform
