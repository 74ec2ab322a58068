#include "mainwindow/tabstrip.h"

#include "mainwindow/appstate.h"
#include "platform/canvas.h"
#include "platform/checkedint.h"
#include "platform/surface.h"

#include <QStringList>
#include <algorithm>
#include <QWidget>
#include <cmath>

using platform::LineKind;
using platform::qbColor;

namespace {
const QStringList& tabLabels() {
    static const QStringList labels = {QString(),
                                       QStringLiteral("Micro"),
                                       QStringLiteral("Macro"),
                                       QStringLiteral("Options"),
                                       QString(),
                                       QString()};
    return labels;
}
} // namespace

TabStrip::TabStrip(AppState& state, platform::Surface* onglets, QObject* parent)
    : QObject(parent), state_(state), onglets_(onglets) {
    onglets_->setPaintHandler([this](platform::Canvas& c) { Onglets_Paint(c); });
    connect(onglets_, &platform::Surface::mouseReleased, this, &TabStrip::Onglets_MouseUp);
}

void TabStrip::setPanels(QWidget* micro, QWidget* macro, QWidget* options) {
    panels_ = {micro, macro, options};
    // Until the strip first paints, only the first tab's panel is up: the others are not
    // drawn while the window opens.
    for (std::size_t i = 1; i < panels_.size(); ++i)
        if (panels_[i])
            panels_[i]->hide();
}

void TabStrip::Onglets_Paint(platform::Canvas& c) {
    auto& st = c.state();
    if (state_.ActiveTab == 0)
        state_.ActiveTab = 1;
    const int active = state_.ActiveTab;
    static const char* const names[3] = {"Micro", "Macro", "Options"};
    const QString said =
        QStringLiteral("Onglet actif : %1").arg(QLatin1String(names[std::clamp(active, 1, 3) - 1]));
    if (onglets_->accessibleDescription() != said)
        onglets_->setAccessibleDescription(said);
    const QStringList& label = tabLabels();

    st.fontName = QStringLiteral("Arial");
    st.fontSize = 8;
    st.fontBold = false;
    st.foreColor = qbColor(0);
    h_ = static_cast<int>(std::nearbyint(c.textHeight(label[1])));
    const double W = c.scaleWidth();
    const double H = c.scaleHeight();

    std::int16_t total = 0;
    for (int i = 1; i <= 3; ++i) {
        st.fontBold = (i == active);
        total = platform::roundToInt16(total + c.textWidth(label[i]));
    }
    st.fontBold = false;
    gap_ = static_cast<float>((W - total) / 6.0);

    edges_[0] = -1;
    for (int i = 1; i <= 2; ++i) {
        st.fontBold = (i == active);
        edges_[i] = platform::roundToInt16(edges_[i - 1] + c.textWidth(label[i]) + 2.0 * gap_);
    }
    st.fontBold = false;
    edges_[3] = platform::roundToInt16(W);

    c.line(0, 0, W - 1, H - 1, qbColor(8), LineKind::Box);
    c.line(0, 0, 0, H - 1, qbColor(15), LineKind::Box);
    for (int i = 0; i <= 3; ++i) {
        c.line(edges_[i] - 1, 1, edges_[i] - 1, h_ + 1, qbColor(8));
        c.line(edges_[i], 0, edges_[i], h_, qbColor(15));
    }
    for (int i = 0; i <= 2; ++i)
        c.line(edges_[i] + 1, 0, edges_[i + 1] - 1, 0, qbColor(15));
    if (active >= 1 && active <= 3) {
        c.line(0, h_ + 1, edges_[active - 1] + 2, h_ + 1, qbColor(15));
        c.line(edges_[active], h_ + 1, W, h_ + 1, qbColor(15));
    }

    for (int i = 1; i <= 3; ++i) {
        st.fontBold = (i == active);
        st.currentY = (i == active) ? 2 : 1;
        st.currentX = edges_[i - 1] + gap_;
        c.print(label[i]);
    }
    st.fontBold = false;

    for (int i = 1; i <= 3; ++i) {
        QWidget* panel = panels_[static_cast<std::size_t>(i - 1)];
        if (!panel)
            continue;
        if (i == active) {
            const int left = 4, top = h_ + 5;
            panel->setGeometry(left, top, static_cast<int>(W) - 4 - left,
                               static_cast<int>(H) - 4 - top);
            panel->setVisible(true);
        } else {
            panel->setVisible(false);
        }
    }

    const QColor inset(210, 205, 200);
    c.line(1, h_ + 2, W - 2, H - 2, inset, LineKind::Box);
    c.line(2, h_ + 3, W - 3, H - 3, inset, LineKind::Box);
    c.line(3, h_ + 4, W - 4, H - 4, qbColor(8), LineKind::Box);
    c.line(4, h_ + 5, W - 4, H - 4, qbColor(15), LineKind::Box);
}

void TabStrip::Onglets_MouseUp(Qt::MouseButton, Qt::KeyboardModifiers, double x, double y) {
    if (y < 0 || y > 15)
        return;
    std::int16_t selected = 0;
    for (int i = 1; i <= 5; ++i) {
        if (edges_[i - 1] < x && x <= edges_[i]) {
            selected = static_cast<std::int16_t>(i);
            break;
        }
    }
    if (selected != state_.ActiveTab) {
        state_.ActiveTab = selected;
        onglets_->refresh();
    }
    if (state_.ActiveTab < 3 && refreshDataPanel_)
        refreshDataPanel_();
}
