#include "micro/drawing.h"

#include "micro/bonds.h"
#include "micro/geometry.h"
#include "platform/canvas.h"

#include <QHash>
#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace micro {

namespace {

int clampComponent(int v) {
    return std::clamp(v, 0, 255);
}

QColor grey(int g) {
    return QColor(clampComponent(g), clampComponent(g), clampComponent(g));
}

void drawStroke(platform::Canvas& c, const BondStroke& s) {
    c.line(s.x1, s.y1, s.x2, s.y2, std::nullopt,
           s.box ? platform::LineKind::Box : platform::LineKind::Plain);
}

void drawBond(platform::Canvas& c, const BondLine& bond) {
    const BondStrokes strokes = bondStrokes(bond);
    for (int i = 0; i < strokes.count; ++i)
        drawStroke(c, strokes.strokes[static_cast<std::size_t>(i)]);
}

// An atom never reaches further than this from its centre, in surface pixels.
constexpr int AtomReach = 11;

// An atom copied from its picture, and what drawing it leaves in the state (the last ring's
// centre, relative to the atom's, and its colour).
struct AtomSprite {
    QImage image;
    double currentDx = 0;
    double currentDy = 0;
    QColor fillColor;
};

// Drawn on a zoomed screen, an atom's rings are stroked curves, many times slower than at 100 %
// where they are hairlines, and a molecule view holds up to 54 atoms redrawn at each animation
// step. So each atom is drawn once per element, scale and offset within a device pixel into a
// transparent image, and copied from there. The copy is pixel for pixel the drawing, as the
// shapes sit at the same offset within a pixel. Printers, SVG and PDF get the curves.
const AtomSprite* cachedAtom(platform::Canvas& c, std::int16_t kind, std::int16_t x, std::int16_t y,
                             QPoint& at) {
    if (kind < Carbon || kind > FifthElement)
        return nullptr;
    QPainter& p = c.painter();
    const QTransform device = p.deviceTransform();
    const double scale = device.m11();
    if (!p.device() || p.device()->devType() != QInternal::Image ||
        device.type() != QTransform::TxScale || scale != device.m22() || scale <= 1.0 ||
        scale > 8.0)
        return nullptr;
    const double px = c.toPixelX(x);
    const double py = c.toPixelY(y);
    const QPointF corner = device.map(QPointF(px - AtomReach, py - AtomReach));
    at = QPoint(static_cast<int>(std::floor(corner.x())), static_cast<int>(std::floor(corner.y())));
    const double fx = corner.x() - at.x();
    const double fy = corner.y() - at.y();
    // At the zoom steps the offsets are multiples of 1/4 pixel; 1/64 keeps them apart.
    const quint64 key = (quint64(quint16(kind)) << 48) | (quint64(std::lround(scale * 64)) << 32) |
                        (quint64(std::lround(fx * 64)) << 16) | quint64(std::lround(fy * 64));
    static QHash<quint64, AtomSprite> sprites;
    if (const auto it = sprites.constFind(key); it != sprites.constEnd())
        return &*it;
    if (sprites.size() > 512)
        sprites.clear();
    const int side = static_cast<int>(std::ceil(2 * AtomReach * scale)) + 2;
    AtomSprite sprite;
    sprite.image = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
    sprite.image.fill(Qt::transparent);
    QPainter sp(&sprite.image);
    // Surface pixels as on the real device, shifted by whole device pixels.
    sp.setTransform(QTransform(scale, 0, 0, scale, device.dx() - at.x(), device.dy() - at.y()));
    platform::DrawState state = c.state();
    platform::Canvas sc(sp, state, c.pixelSize());
    atomeDirect(sc, kind, x, y);
    sp.end();
    sprite.currentDx = state.currentX - x;
    sprite.currentDy = state.currentY - y;
    sprite.fillColor = state.fillColor;
    return &*sprites.insert(key, sprite);
}

} // namespace

void atome(platform::Canvas& c, std::int16_t kind, std::int16_t x, std::int16_t y) {
    QPoint at;
    const AtomSprite* sprite = cachedAtom(c, kind, x, y, at);
    if (!sprite) {
        atomeDirect(c, kind, x, y);
        return;
    }
    QPainter& p = c.painter();
    // One device pixel per sprite pixel: undo the device's scale for the copy.
    p.save();
    p.setWorldTransform(p.deviceTransform().inverted() * p.worldTransform());
    p.drawImage(at, sprite->image);
    p.restore();
    platform::DrawState& st = c.state();
    st.currentX = x + sprite->currentDx;
    st.currentY = y + sprite->currentDy;
    st.fillColor = sprite->fillColor;
    st.fillStyle = platform::FillStyle::Transparent;
}

void atomeDirect(platform::Canvas& c, std::int16_t kind, std::int16_t x, std::int16_t y) {
    QColor base;
    QColor outline;
    double radius = 9;
    switch (kind) {
    case Carbon:
        base = QColor(0, 0, 0);
        outline = platform::qbColor(8);
        break;
    case Hydrogen:
        base = QColor(180, 180, 180);
        outline = platform::qbColor(8);
        radius = 7;
        break;
    case Oxygen:
        base = QColor(180, 0, 0);
        outline = platform::qbColor(7);
        break;
    case Chlorine:
        base = QColor(0, 180, 0);
        outline = platform::qbColor(7);
        break;
    case FifthElement:
        base = QColor(0, 0, 180);
        outline = platform::qbColor(7);
        break;
    default:
        return;
    }

    platform::DrawState& st = c.state();
    st.fillStyle = platform::FillStyle::Solid;
    st.fillColor = base;
    c.circle(x, y, radius, outline);

    // The rings shrink and slide up-left, so the ball looks lit from the upper left.
    if (kind == Hydrogen) {
        int i = 1;
        for (int g = 195; g <= 255; g += 20, ++i) {
            st.fillColor = grey(g + 5);
            c.circle(x - i / 2.0, y - i / 2.0, 7.0 - i, outline);
        }
    } else {
        int i = 1;
        for (int g = 50; g <= 250; g += 50, ++i) {
            const int light = g + 5;
            const int tint = 205 + g / 5;
            switch (kind) {
            case Oxygen:
                st.fillColor = QColor(clampComponent(tint), light, light);
                break;
            case Chlorine:
                st.fillColor = QColor(light, clampComponent(tint), light);
                break;
            case FifthElement:
                st.fillColor = QColor(light, light, clampComponent(tint));
                break;
            default:
                st.fillColor = grey(light);
                break;
            }
            c.circle(x - i / 2.0, y - i / 2.0, 9.0 - 1.5 * i, outline);
        }
    }
    st.fillStyle = platform::FillStyle::Transparent;
}

void printRuns(platform::Canvas& c, const std::vector<TextRun>& runs) {
    platform::DrawState& st = c.state();
    for (const TextRun& r : runs) {
        st.fontName = r.fontName;
        st.fontSize = r.fontSize;
        st.fontBold = r.bold;
        st.fontItalic = r.italic;
        if (r.x)
            st.currentX = *r.x;
        if (r.rightEdge)
            st.currentX = *r.rightEdge - c.textWidth(r.text);
        st.currentY = r.y;
        c.print(r.text);
    }
}

void drawBanner(platform::Canvas& c, int reactionIndex) {
    c.state().foreColor = platform::qbColor(0);
    printRuns(c, bannerRuns(reactionIndex));
}

void drawMolecules(platform::Canvas& c, const MoleculeFrame& frame) {
    if (frame.showCut) {
        const auto bonds = cutBonds(frame.reaction);
        for (std::size_t k = std::max<int>(0, frame.cutStep); k < bonds.size(); ++k)
            drawBond(c, bonds[k]);
    }
    const auto formed = formedBonds(frame.reaction);
    const std::size_t shown =
        std::min<std::size_t>(formed.size(), std::max<int>(0, frame.formedCount));
    for (std::size_t j = 0; j < shown; ++j)
        drawBond(c, formed[j]);
    for (std::size_t i = 1; i <= static_cast<std::size_t>(frame.atomCount); ++i)
        atome(c, frame.kind[i], frame.x[i], frame.y[i]);
}

void drawEnergyDiagram(platform::Canvas& c, const EnergyDiagram& d) {
    platform::DrawState& st = c.state();
    st.fillStyle = platform::FillStyle::Solid;
    st.fillColor = QColor(255, 200, 150);
    c.line(d.received.x1, d.received.y1, d.received.x2, d.received.y2, std::nullopt,
           platform::LineKind::Box);
    st.fillColor = QColor(150, 200, 255);
    if (d.released)
        c.line(d.released->x1, d.released->y1, d.released->x2, d.released->y2, std::nullopt,
               platform::LineKind::Box);
    st.fillStyle = platform::FillStyle::Transparent;
    c.line(0, DiagramZeroLine, 57, DiagramZeroLine);
    printRuns(c, d.runs);
}

void drawDataPanel(platform::Canvas& c, const std::vector<TextRun>& runs) {
    c.state().foreColor = platform::qbColor(0);
    printRuns(c, runs);
}

} // namespace micro
