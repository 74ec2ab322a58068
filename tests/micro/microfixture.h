#pragma once

#include "chemistry/catalogue.h"
#include "mainwindow/appstate.h"
#include "mainwindow/context.h"
#include "micro/micropanel.h"
#include "platform/surface.h"

#include <QCheckBox>
#include <QComboBox>
#include <QWidget>
#include <memory>

// A stand-in for the main window: the state, the controls the micro view reads, and the panel.
struct MicroFixture {
    AppState state;
    MainContext ctx{state};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    MicroPanel* panel = nullptr;

    MicroFixture() {
        window->resize(800, 600);
        ctx.window = window.get();
        ctx.Combo1 = new QComboBox(window.get());
        ctx.Combo1->setProperty("Tag", QStringLiteral("1"));
        ctx.Onglets = new platform::Surface(window.get(), QStringLiteral("Onglets"));
        ctx.Onglets->setGeometry(0, 40, 470, 420);
        for (std::size_t i = 0; i < 3; ++i)
            ctx.Check1[i] = new QCheckBox(window.get());
        panel = new MicroPanel(ctx, window.get());
        panel->picture3()->move(4, 20);
        state.ActiveTab = 1;
    }

    // What the reaction list does on a choice, as far as this view is concerned.
    void select(int index) {
        ctx.Combo1->setProperty("Tag", QString::number(index));
        state.AnimStep = 0;
        panel->picture3()->refresh();
        if (chemistry::isValidIndex(index)) {
            const chemistry::BondTotals t = chemistry::computeTotals(index);
            state.BrokenBondsEnergy = t.broken;
            state.FormedBondsEnergy = t.formed;
        }
        panel->picture5()->refresh();
        std::int16_t idx = static_cast<std::int16_t>(index);
        panel->animicro(idx);
    }

    void runUntil(int step) {
        while (state.AnimStep < step)
            panel->Timer1_Timer();
    }
};
