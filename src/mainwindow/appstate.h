#pragma once

#include <QString>
#include <array>
#include <cstdint>

// Module-wide state of the main window, alive for the whole run. Field names follow the
// vocabulary used across the program; the reaction, amounts, advancement and options live in
// their controls (Combo1's Tag, Text1, HScroll1, Check1, Option1).
struct AppState {
    static constexpr int MaxAtoms = 54;
    using AtomArray = std::array<std::int16_t, MaxAtoms + 1>; // index 0 unused, 1..54

    // Shell
    QString ProgramFolder; // always ends with the platform separator
    std::int16_t ExerciseOpened = 0;
    std::int16_t StatementModified = 0;
    QString CopyMessage;

    // The configuration file being written or read, set by the open and save dialogs (and by
    // whoever else opens a configuration) before the writer or the loader runs.
    QString ConfigFilePath;

    // Tabs: 1 Micro, 2 Macro, 3 Options; 0 before the strip is first painted.
    std::int16_t ActiveTab = 0;

    // Bond-energy totals of the selected reaction, kJ per mole of advancement.
    std::int16_t BrokenBondsEnergy = 0;
    std::int16_t FormedBondsEnergy = 0;

    // Microscopic animation
    std::int16_t AnimStep = 0;
    std::int16_t BreakCount = 0;
    std::int16_t FormStartStep = 0;
    std::int16_t FormCount = 0;
    std::int16_t AtomCount = 0;
    float CurrentEnergy = 0;
    AtomArray AtomKind{}, AtomX{}, AtomY{}, StartX{}, StartY{}, EndX{}, EndY{};

    // Macroscopic balance
    double MaxAdvancement = 0;
    std::int16_t CoolingCounter = 0;
};
