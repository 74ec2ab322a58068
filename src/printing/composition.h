#pragma once

#include "printing/layout.h"

#include <QString>

namespace platform {
class Printer;
class Surface;
} // namespace platform

namespace printing {

// The main window's three illustrations.
struct Illustrations {
    platform::Surface* micro = nullptr;   // Picmicro
    platform::Surface* diagram = nullptr; // Picture2
    platform::Surface* macro = nullptr;   // Picture4
};

struct PrintJob {
    QString title;
    Choice choice;
    int copies = 1;
};

// One page per copy: the title in Arial 12 bold at the top left, then the chosen pictures at
// their screen size; a new page between copies, the end of the document after the last.
void printPages(platform::Printer& printer, const Illustrations& pictures, const PrintJob& job);

} // namespace printing
