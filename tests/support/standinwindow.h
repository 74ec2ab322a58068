#pragma once

#include "chemistry/catalogue.h"
#include "mainwindow/appstate.h"
#include "mainwindow/context.h"
#include "platform/surface.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QWidget>
#include <memory>

// What the main window hands to a subsystem panel, built by hand so that a panel can be tested
// or measured alone: the state, the reaction list with its Tag, the tab strip, the options.
struct StandInWindow {
    AppState state;
    MainContext ctx{state};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();

    explicit StandInWindow(int reaction = 1, bool openSystem = true) {
        window->resize(800, 600);
        ctx.window = window.get();
        ctx.Combo1 = new QComboBox(window.get());
        ctx.Onglets = new platform::Surface(window.get(), QStringLiteral("Onglets"));
        ctx.Onglets->setGeometry(0, 0, 460, 410);
        for (auto& box : ctx.Check1)
            box = new QCheckBox(window.get());
        for (auto& button : ctx.Option1)
            button = new QRadioButton(window.get());
        ctx.Option1[openSystem ? 1 : 0]->setChecked(true);
        setReaction(reaction);
    }

    // Combo1's Tag and the bond totals, as a reaction change leaves them.
    void setReaction(int reaction) {
        ctx.Combo1->setProperty("Tag", QString::number(reaction));
        if (chemistry::isValidIndex(reaction)) {
            const chemistry::BondTotals t = chemistry::computeTotals(reaction);
            state.BrokenBondsEnergy = t.broken;
            state.FormedBondsEnergy = t.formed;
        }
    }
};
