#pragma once

#include "mainwindow/appstate.h"

#include <QString>
#include <cstdint>

namespace micro {

// Timer1 intervals: each cut and each formation is held half a second, the drift runs fast.
constexpr int HoldIntervalMs = 500;
constexpr int DriftIntervalMs = 20;

// The random source of the drift: a 24-bit linear congruential generator, cheap and
// repeatable once seeded.
class DriftRandom {
public:
    static constexpr std::uint32_t DefaultSeed = 0x50000;

    explicit DriftRandom(std::uint32_t seed = DefaultSeed) { reseed(seed); }
    void reseed(std::uint32_t seed) { state_ = seed & 0xFFFFFFu; }

    // Uniform in [0, 1).
    float next();
    // Int(3 × next) − 1: one of −1, 0, 1.
    std::int16_t jitter();

private:
    std::uint32_t state_ = 0;
};

// What one step leaves on Picmicro, so that the picture can be drawn (and redrawn on a resize
// or for printing) without replaying the step.
struct MoleculeFrame {
    std::int16_t reaction = 0;
    bool showCut = false; // reactant bonds k with cutStep < k are drawn
    std::int16_t cutStep = 0;
    std::int16_t formedCount = 0; // product bonds 1..formedCount are drawn
    std::int16_t atomCount = 0;   // atoms drawn; 0 when the step stopped before them
    AppState::AtomArray kind{}, x{}, y{};
};

// The values the energy diagram is drawn from.
struct DiagramInput {
    std::int16_t step = 0; // AnimStep as drawn
    std::int16_t breakCount = 0;
    std::int16_t formStartStep = 0;
    std::int16_t finalStep = 0;
    float current = 0;       // CurrentEnergy
    std::int16_t broken = 0; // BrokenBondsEnergy
    std::int16_t formed = 0; // FormedBondsEnergy
};

// What a call of the step decided. It is filled as the step goes, so that when the step is
// abandoned on a run-time error, the timer decisions already taken still hold.
struct StepOutcome {
    bool stopTimer = false;
    int intervalMs = 0; // 0 until decided
    MoleculeFrame frame;
    bool completed = false; // the energy readout and the diagram are to be redrawn
    DiagramInput diagram;
};

// The microscopic animation without its drawing: step counter, energy, atom positions.
class Animation {
public:
    explicit Animation(AppState& state) : s_(state) {}

    DriftRandom& random() { return random_; }

    // One call of animicro: works on step AnimStep of the reaction and leaves AnimStep on the
    // next one. `simultaneous` is the "cut and form all bonds at once" option. Throws
    // platform::OverflowError or std::out_of_range as the checked arithmetic does; `out` then
    // holds what was decided before the failure.
    void step(std::int16_t reactionIndex, bool simultaneous, StepOutcome& out);

private:
    void debliaison(std::int16_t reactionIndex, bool simultaneous, MoleculeFrame& frame);
    void finliaison(std::int16_t reactionIndex, bool simultaneous, MoleculeFrame& frame);
    void drift();

    AppState& s_;
    DriftRandom random_;
};

// Label2's caption: CurrentEnergy, BrokenBondsEnergy and FormedBondsEnergy on three lines.
QString energyReadout(float current, std::int16_t broken, std::int16_t formed);

} // namespace micro
