#pragma once

#include <QPointF>
#include <QSizeF>
#include <optional>

namespace printing {

// Which illustrations go on the page.
struct Choice {
    bool micro = false;   // the molecules, Picmicro
    bool diagram = false; // the energy diagram, Picture2
    bool macro = false;   // the system picture, Picture4
};

// Sizes of the three pictures on the page, in twips.
struct PictureSizes {
    QSizeF micro, diagram, macro;
};

// Top left corners in twips of the illustrations chosen; the others stay empty.
struct Placement {
    std::optional<QPointF> micro, diagram, macro;
};

// The page's composition on a printable area W × H twips: margins of W / 20 and H / 20; the
// molecules on the left beside the diagram, the diagram at 0.7 × W beside another picture, the
// system picture under the molecules (at the left margin when all three are printed); any
// other picture is centred.
Placement placePictures(double pageWidth, double pageHeight, const Choice& choice,
                        const PictureSizes& sizes);

} // namespace printing
