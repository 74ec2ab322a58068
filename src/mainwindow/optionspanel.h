#pragma once

#include <QObject>
#include <array>

class QCheckBox;
class QComboBox;
class QRadioButton;
class QWidget;

namespace platform {
class Canvas;
class Surface;
} // namespace platform

// The Options tab "Picture1": what the views show and whether the system is isolated.
class OptionsPanel : public QObject {
    Q_OBJECT
public:
    OptionsPanel(QWidget* tabParent, QObject* parent);

    platform::Surface* picture1() const { return picture1_; }
    const std::array<QCheckBox*, 3>& check1() const { return check1_; }
    const std::array<QRadioButton*, 2>& option1() const { return option1_; }
    // The zoom of every window, under "Affichage".
    QComboBox* zoom() const { return zoom_; }

    void Picture1_Paint(platform::Canvas& c);

signals:
    // Fired when a box changes, by the user or by a program that sets it (as the old Click did).
    void Check1_Click(int index);
    // Fired when a button becomes the selected one.
    void Option1_Click(int index);

private:
    platform::Surface* picture1_;
    std::array<QCheckBox*, 3> check1_{};
    std::array<QRadioButton*, 2> option1_{};
    QComboBox* zoom_ = nullptr;
};
