#include "micro/animation.h"

#include "micro/bonds.h"
#include "micro/geometry.h"
#include "platform/checkedint.h"

#include <algorithm>
#include <cmath>

namespace micro {

using platform::add16;
using platform::sub16;

float DriftRandom::next() {
    state_ = (state_ * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
    return static_cast<float>(state_) / 16777216.0f;
}

std::int16_t DriftRandom::jitter() {
    return static_cast<std::int16_t>(static_cast<int>(3.0f * next()) - 1);
}

void Animation::step(std::int16_t reactionIndex, bool simultaneous, StepOutcome& out) {
    out = StepOutcome{};
    out.frame.reaction = reactionIndex;

    if (s_.AnimStep == 0)
        referencesmicro(s_, reactionIndex);
    if (const auto c = animationConstants(reactionIndex)) {
        s_.BreakCount = c->breakCount;
        s_.FormStartStep = c->formStartStep;
        s_.FormCount = c->formCount;
        s_.AtomCount = c->atomCount;
    }
    const std::int16_t last = finalStep(s_);
    if (s_.AnimStep >= last)
        out.stopTimer = true;

    if (simultaneous) {
        if (s_.AnimStep == 1)
            s_.AnimStep = add16(s_.BreakCount, 1);
        s_.CurrentEnergy = s_.BrokenBondsEnergy;
        if (s_.AnimStep == s_.FormStartStep) {
            s_.AnimStep = last;
            s_.CurrentEnergy = sub16(s_.BrokenBondsEnergy, s_.FormedBondsEnergy);
        }
    }

    out.intervalMs = (s_.AnimStep < s_.BreakCount || s_.AnimStep > s_.FormStartStep)
                         ? HoldIntervalMs
                         : DriftIntervalMs;

    if (s_.AnimStep < 2) {
        s_.CurrentEnergy = 0;
        for (std::size_t i = 1; i <= static_cast<std::size_t>(std::max<int>(0, s_.AtomCount));
             ++i) {
            s_.AtomX.at(i) = s_.StartX.at(i);
            s_.AtomY.at(i) = s_.StartY.at(i);
        }
    }
    if (s_.AnimStep <= s_.BreakCount)
        debliaison(reactionIndex, simultaneous, out.frame);
    if (s_.BreakCount < s_.AnimStep && s_.AnimStep < s_.FormStartStep)
        drift();
    if (s_.AnimStep >= s_.FormStartStep) {
        for (std::size_t i = 1; i <= static_cast<std::size_t>(std::max<int>(0, s_.AtomCount));
             ++i) {
            s_.AtomX.at(i) = s_.EndX.at(i);
            s_.AtomY.at(i) = s_.EndY.at(i);
        }
    }
    if (s_.AnimStep > s_.FormStartStep)
        finliaison(reactionIndex, simultaneous, out.frame);

    const int atoms = std::max<int>(0, s_.AtomCount);
    if (atoms > AppState::MaxAtoms)
        throw std::out_of_range("atom index");
    std::copy_n(s_.AtomKind.begin(), atoms + 1, out.frame.kind.begin());
    std::copy_n(s_.AtomX.begin(), atoms + 1, out.frame.x.begin());
    std::copy_n(s_.AtomY.begin(), atoms + 1, out.frame.y.begin());
    out.frame.atomCount = static_cast<std::int16_t>(atoms);

    out.diagram = DiagramInput{s_.AnimStep,      s_.BreakCount,        s_.FormStartStep,    last,
                               s_.CurrentEnergy, s_.BrokenBondsEnergy, s_.FormedBondsEnergy};
    out.completed = true;

    if (s_.AnimStep < last)
        s_.AnimStep = add16(s_.AnimStep, 1);
}

// Reactant bonds still standing at this step, and the energy of the one cut now. In the
// simultaneous mode the energy has already been set for all the cuts together.
void Animation::debliaison(std::int16_t reactionIndex, bool simultaneous, MoleculeFrame& frame) {
    const auto bonds = cutBonds(reactionIndex);
    if (bonds.empty())
        return;
    frame.showCut = true;
    frame.cutStep = s_.AnimStep;
    const int k = s_.AnimStep;
    if (!simultaneous && k >= 1 && k <= static_cast<int>(bonds.size()))
        s_.CurrentEnergy += cuttingEnergy(bonds[static_cast<std::size_t>(k - 1)].type);
}

// Product bonds formed up to this step, and the energy given back by the one formed now.
void Animation::finliaison(std::int16_t reactionIndex, bool simultaneous, MoleculeFrame& frame) {
    const auto bonds = formedBonds(reactionIndex);
    const int k = sub16(s_.AnimStep, s_.FormStartStep);
    frame.formedCount = static_cast<std::int16_t>(std::clamp<int>(k, 0, bonds.size()));
    if (!simultaneous && k >= 1 && k <= static_cast<int>(bonds.size()))
        s_.CurrentEnergy -= formingEnergy(bonds[static_cast<std::size_t>(k - 1)].type);
}

// The free atoms wander towards their places in the products, 3 units a step while far,
// 1 when close, with a jitter of one unit shared by both coordinates.
void Animation::drift() {
    const auto move = [](std::int16_t& pos, std::int16_t target, std::int16_t r) {
        const std::int16_t gap = platform::toInt16(std::abs(int{sub16(pos, target)}));
        const std::int16_t d = gap < 11 ? 1 : 3;
        if (pos <= target) {
            pos = add16(pos, add16(d, r));
        } else {
            pos = sub16(pos, d);
            pos = add16(pos, r);
        }
    };
    for (std::size_t i = 1; i <= static_cast<std::size_t>(std::max<int>(0, s_.AtomCount)); ++i) {
        const std::int16_t r = random_.jitter();
        move(s_.AtomX.at(i), s_.EndX.at(i), r);
        move(s_.AtomY.at(i), s_.EndY.at(i), r);
    }
}

QString energyReadout(float current, std::int16_t broken, std::int16_t formed) {
    QString energy;
    if (std::isfinite(current) && current == std::trunc(current) && std::abs(current) < 1e7f)
        energy = QString::number(static_cast<long long>(current));
    else
        energy = QString::number(current, 'g', 7).replace(QLatin1Char('.'), QLatin1Char(','));
    return energy + QLatin1Char('\n') + QString::number(broken) + QLatin1Char('\n') +
           QString::number(formed);
}

} // namespace micro
