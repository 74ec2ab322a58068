// Loading an exercise statement into the statement area: a two-page text in the old
// rich-edit style (subscripts and superscripts as offsets, accents, a Symbol-font Δ) with a
// picture, read from RTF and laid out in a QTextEdit the size of `supertext`.
#include "platform/richtext.h"
#include "platform/rtfreader.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QTextEdit>
#include <benchmark/benchmark.h>

#include "qtbenchmarkmain.h"

namespace {

QByteArray picture() {
    QImage img(160, 120, QImage::Format_RGB32);
    img.fill(QColor(255, 255, 240));
    QPainter p(&img);
    p.setPen(QPen(QColor(0, 0, 200), 2));
    p.drawRect(40, 10, 80, 80);
    p.fillRect(42, 50, 77, 39, QColor(150, 200, 255));
    p.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "PNG");
    return png;
}

// About 1 000 words: what two printed pages of a statement hold.
QByteArray statement() {
    QByteArray rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}"
        "{\\f1\\froman\\fcharset2 Symbol;}}\r\n{\\colortbl ;\\red0\\green0\\blue200;}\r\n"
        "\\viewkind4\\uc1\\pard\\qc\\cf1\\b\\f0\\fs36 Combustion du butane\\cf0\\b0\\fs20\\par\r\n";
    for (int i = 1; i <= 24; ++i) {
        rtf += "\\pard\\li300\\sa120 " + QByteArray::number(i) +
               ". Le butane C\\dn4 4\\up0 H\\dn4 10\\up0  br\\'fble dans le dioxyg\\'e8ne O\\dn4 "
               "2\\up0  ; il se forme du dioxyde de carbone CO\\dn4 2\\up0  et de l'eau H\\dn4 "
               "2\\up0 O. L'\\'e9nergie de liaison C-H vaut 415 kJ\\'b7mol\\up6 -1\\up0 , soit "
               "0,689 \\'d7 10\\up6 -18\\up0  J par liaison ; \\f1 D\\f0\\i H\\i0  est n\\'e9gatif "
               "et l'on calcule la quantit\\'e9 de mati\\'e8re restante.\\par\r\n";
        if (i == 12)
            rtf += "\\pard\\qc{\\pict\\pngblip\\picw160\\pich120\\picwgoal2400\\pichgoal1800 " +
                   picture().toHex() + "}\\par\r\n";
    }
    return rtf + "}";
}

struct Area {
    QTextEdit edit;
    QByteArray rtf = statement();
    Area() {
        edit.resize(311, 436);
        edit.show();
        QApplication::processEvents();
    }
};

void BM_ReadStatement(benchmark::State& st) {
    const QByteArray rtf = statement();
    for (auto _ : st)
        benchmark::DoNotOptimize(platform::rtf::read(rtf));
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations()) * rtf.size());
}

// Read, build the document and lay all of it out (the scroll bar knows the length), over a
// short text as the welcome text is: the scroll bar appears, so the text is laid out twice.
void BM_LoadStatement(benchmark::State& st) {
    Area a;
    for (auto _ : st) {
        st.PauseTiming();
        platform::setRichText(a.edit, "{\\rtf1 Bienvenue\\par}");
        a.edit.document()->documentLayout()->documentSize();
        st.ResumeTiming();
        platform::setRichText(a.edit, a.rtf);
        benchmark::DoNotOptimize(a.edit.document()->documentLayout()->documentSize());
    }
}

// One statement over another: laid out once.
void BM_ReplaceStatement(benchmark::State& st) {
    Area a;
    for (auto _ : st) {
        platform::setRichText(a.edit, a.rtf);
        benchmark::DoNotOptimize(a.edit.document()->documentLayout()->documentSize());
    }
}

// Replaced, then painted as it reaches the screen.
void BM_ReplaceStatementPainted(benchmark::State& st) {
    Area a;
    for (auto _ : st) {
        platform::setRichText(a.edit, a.rtf);
        a.edit.viewport()->repaint();
    }
}

BENCHMARK(BM_ReadStatement)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LoadStatement)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_ReplaceStatement)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReplaceStatementPainted)->Unit(benchmark::kMillisecond);

} // namespace

THERMIVO_QT_BENCHMARK_MAIN()
