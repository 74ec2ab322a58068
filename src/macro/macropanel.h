#pragma once

#include "macro/balance.h"
#include "macro/graph.h"

#include <QObject>
#include <array>
#include <optional>

class QEvent;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QTimer;
struct MainContext;

namespace platform {
class Canvas;
class ImageButton;
class Surface;
} // namespace platform

// The Macro tab: the balance table Frame2 with the amount fields and result labels, the
// advancement slider and its animation, and the system picture Picture4 with its gauges.
// Frame2 is a child of the tab strip; the strip shows it and sets its geometry.
class MacroPanel : public QObject {
    Q_OBJECT
public:
    MacroPanel(MainContext& ctx, QObject* parent);

    platform::Surface* frame2() const { return frame2_; }
    platform::Surface* picture4() const { return picture4_; }
    QScrollBar* hscroll1() const { return hscroll1_; }
    QLineEdit* text1(int index) const { return text1_.at(static_cast<std::size_t>(index)); }
    QLabel* label4(int index) const { return label4_.at(static_cast<std::size_t>(index)); }
    QLabel* label5() const { return label5_; }
    QLabel* label6() const { return label6_; }
    QPushButton* command3() const { return command3_; }
    QTimer* timer2() const { return timer2_; }
    QTimer* timer3() const { return timer3_; }
    // What the graph window plots for the balance as it stands; nothing without an
    // advancement.
    std::optional<macro::GraphInput> graphInput() const;

public slots:
    // Recomputes the whole balance from the controls and redraws the gauges.
    void majqant();
    // Draws the system picture's background for the current kind of system and keeps it.
    void prepapic4();

    void Option1_Click(int index);
    void Text1_LostFocus(int index);
    void Image8_Click();
    void Image9_Click();
    void Image10_Click();
    void Image11_Click();
    void Timer2_Timer();
    void Timer3_Timer();
    // "Graphe": the graph window, modal, drawn from the balance as it stands.
    void Command3_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void leaveFields();
    void paintTable(platform::Canvas& c);
    void printSpecies(platform::Canvas& c, const QString& coefficient, const QString& formula,
                      int column);
    void updateColumns();
    void drawGauges(macro::GaugeMode mode, int sliderValue);
    void describePicture4(bool open, int sliderValue);
    // What Picture4 shows now (background and levels), on any canvas.
    void drawPicture4(platform::Canvas& c);
    // The background and gauges again, as they are, at the screen's new resolution.
    void redrawPicture4();
    bool isOpenSystem() const;
    bool handleAmountKey(int index, QEvent* event);
    void pasteAmount(int index);
    void showAmountMenu(int index, const QPoint& pos);

    MainContext& ctx_;
    bool systemOpen_ = true;      // the kind of system the background was drawn for
    macro::GaugeLevels gauges_{}; // the levels last drawn
    platform::Surface* frame2_ = nullptr;
    platform::Surface* picture4_ = nullptr;
    std::array<QLineEdit*, 4> text1_{};
    std::array<QLabel*, 4> label4_{};
    QLabel* label5_ = nullptr;
    QLabel* label6_ = nullptr;
    QScrollBar* hscroll1_ = nullptr;
    platform::ImageButton* image8_ = nullptr;
    platform::ImageButton* image9_ = nullptr;
    platform::ImageButton* image10_ = nullptr;
    platform::ImageButton* image11_ = nullptr;
    QPushButton* command3_ = nullptr;
    QTimer* timer2_ = nullptr;
    QTimer* timer3_ = nullptr;
};
