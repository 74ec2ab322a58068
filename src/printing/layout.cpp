#include "printing/layout.h"

namespace printing {

Placement placePictures(double pageWidth, double pageHeight, const Choice& choice,
                        const PictureSizes& sizes) {
    const double w = pageWidth;
    const double top = pageHeight / 20;
    const double left = w / 20;
    Placement out;
    if (choice.micro)
        out.micro = QPointF(choice.diagram ? left : (w - sizes.micro.width()) / 2, top);
    if (choice.diagram)
        out.diagram =
            QPointF(choice.micro || choice.macro ? 0.7 * w : (w - sizes.diagram.width()) / 2, top);
    // Under the molecules when they are printed, at the left margin when the diagram takes the
    // right of the page; otherwise centred at the top, where a wide system picture meets the
    // diagram and, printed last, lies over it.
    if (choice.macro) {
        const bool besideDiagram = choice.micro && choice.diagram;
        out.macro = QPointF(besideDiagram ? left : (w - sizes.macro.width()) / 2,
                            choice.micro ? top + sizes.micro.height() : top);
    }
    return out;
}

} // namespace printing
