// Composing the page with the three illustrations and printing it to a PDF file, as "&OK" in
// the print window does.
#include "macro/macropanel.h"
#include "micro/micropanel.h"
#include "platform/printer.h"
#include "platform/surface.h"
#include "printing/composition.h"

#include <QPrinter>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include "qtbenchmarkmain.h"
#include "support/standinwindow.h"

namespace {

void BM_PrintThreeIllustrations(benchmark::State& st, int reaction) {
    StandInWindow main(reaction, true);
    MicroPanel micro(main.ctx, nullptr);
    MacroPanel macro(main.ctx, nullptr);
    macro.frame2()->setGeometry(4, 20, 452, 386);
    main.window->show();
    macro.prepapic4();
    macro.majqant();
    std::int16_t index = static_cast<std::int16_t>(reaction);
    micro.animicro(index);
    micro.Image6_Click(); // the products and the whole diagram
    macro.Image9_Click(); // the end of the reaction, gauges at their final levels

    QTemporaryDir dir;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath(QStringLiteral("page.pdf")));
    const printing::Illustrations pictures{micro.picmicro(), micro.picture2(), macro.picture4()};
    printing::PrintJob job;
    job.title = QStringLiteral("Orbitex - Thermivo");
    job.choice = printing::Choice{true, true, true};
    for (auto _ : st) {
        platform::Printer page(printer);
        printing::printPages(page, pictures, job);
    }
}

BENCHMARK_CAPTURE(BM_PrintThreeIllustrations, butane, 4)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

} // namespace

THERMIVO_QT_BENCHMARK_MAIN()
