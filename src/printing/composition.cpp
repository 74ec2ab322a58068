#include "printing/composition.h"

#include "platform/printer.h"
#include "platform/surface.h"

namespace printing {

namespace {

QSizeF twipsOf(const platform::Surface* s, double tx, double ty) {
    return s ? QSizeF(s->width() * tx, s->height() * ty) : QSizeF();
}

void paint(platform::Printer& printer, platform::Surface* picture, const QPointF& at) {
    if (!picture)
        return;
    printer.setCurrentX(at.x());
    printer.setCurrentY(at.y());
    printer.paintPicture(*picture, at.x(), at.y());
}

} // namespace

void printPages(platform::Printer& printer, const Illustrations& pictures, const PrintJob& job) {
    const double tx = platform::twipsPerPixelX();
    const double ty = platform::twipsPerPixelY();
    const PictureSizes sizes{twipsOf(pictures.micro, tx, ty), twipsOf(pictures.diagram, tx, ty),
                             twipsOf(pictures.macro, tx, ty)};
    for (int copy = 1; copy <= job.copies; ++copy) {
        printer.setFontName(QStringLiteral("Arial"));
        printer.setFontSize(12);
        printer.setFontBold(true);
        printer.setCurrentX(0);
        printer.setCurrentY(0);
        printer.print(job.title);
        printer.setFontSize(10);
        printer.print();

        const double w = printer.scaleWidth();
        const double h = printer.scaleHeight();
        printer.setCurrentX(w / 20);
        printer.setCurrentY(h / 20);
        const Placement at = placePictures(w, h, job.choice, sizes);
        if (at.micro)
            paint(printer, pictures.micro, *at.micro);
        if (at.diagram)
            paint(printer, pictures.diagram, *at.diagram);
        if (at.macro)
            paint(printer, pictures.macro, *at.macro);

        if (copy < job.copies)
            printer.newPage();
        else
            printer.endDoc();
    }
}

} // namespace printing
