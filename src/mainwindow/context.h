#pragma once

#include "mainwindow/appstate.h"

#include <QComboBox>
#include <QVariant>
#include <array>
#include <cstdint>
#include <functional>

class QCheckBox;
class QLabel;
class QPrinter;
class QRadioButton;
class QWidget;

namespace platform {
class Surface;
}

// What the main window hands to each subsystem panel: the shared state and the controls
// that several subsystems read. feuilleP fills it before it builds the panels.
struct MainContext {
    AppState& state;
    QWidget* window = nullptr;              // feuilleP
    QComboBox* Combo1 = nullptr;            // reaction list; its "Tag" property holds "1".."8"
    platform::Surface* Onglets = nullptr;   // tab strip: parent of Picture3, Frame2, Picture1
    std::array<QCheckBox*, 3> Check1{};     // options
    std::array<QRadioButton*, 2> Option1{}; // 0 isolated system, 1 open system
    QLabel* info = nullptr;                 // hint label
    // The program's printer, kept with the user's choice between prints (made on first use).
    std::function<QPrinter*()> printer;

    explicit MainContext(AppState& s) : state(s) {}

    // Combo1.Tag as a 16-bit reaction index (0 when not set yet).
    std::int16_t reactionIndex() const {
        return Combo1 ? static_cast<std::int16_t>(Combo1->property("Tag").toString().toInt()) : 0;
    }
};
