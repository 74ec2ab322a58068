#pragma once

#include "micro/micropanel.h"
#include "support/standinwindow.h"

// A stand-in for the main window: the state, the controls the micro view reads, and the panel.
struct MicroFixture : StandInWindow {
    MicroPanel* panel = nullptr;

    MicroFixture() {
        panel = new MicroPanel(ctx, window.get());
        panel->picture3()->move(4, 20);
        state.ActiveTab = 1;
    }

    // What the reaction list does on a choice, as far as this view is concerned.
    void select(int index) {
        state.AnimStep = 0;
        setReaction(index);
        panel->picture3()->refresh();
        panel->picture5()->refresh();
        std::int16_t idx = static_cast<std::int16_t>(index);
        panel->animicro(idx);
    }

    void runUntil(int step) {
        while (state.AnimStep < step)
            panel->Timer1_Timer();
    }
};
