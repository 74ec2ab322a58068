// Saves the micro view of every reaction at a few moments, to look at by eye.
#include "micro/drawing.h"
#include "microfixture.h"

#include <QApplication>
#include <QDir>
#include <QLabel>

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // micro_snapshots --zoom in.png x y w h factor out.png: enlarges a piece of a picture.
    if (argc == 9 && QLatin1String(argv[1]) == QLatin1String("--zoom")) {
        const QImage in(QString::fromLocal8Bit(argv[2]));
        const QImage piece = in.copy(atoi(argv[3]), atoi(argv[4]), atoi(argv[5]), atoi(argv[6]));
        const int k = atoi(argv[7]);
        return piece.scaled(piece.size() * k).save(QString::fromLocal8Bit(argv[8])) ? 0 : 1;
    }
    // micro_snapshots --atom KIND: prints the pixels around one atom drawn at (20, 20).
    if (argc == 3 && QLatin1String(argv[1]) == QLatin1String("--atom")) {
        platform::Surface box(nullptr);
        box.setBackColor(Qt::white);
        box.resize(40, 40);
        micro::atome(box.canvas(), static_cast<std::int16_t>(atoi(argv[2])), 20, 20);
        const QImage img = box.image();
        for (int y = 9; y <= 31; ++y) {
            QString line = QString::number(y - 20).rightJustified(3) + QLatin1Char(' ');
            for (int x = 9; x <= 31; ++x) {
                const QColor c = img.pixelColor(x, y);
                line +=
                    QStringLiteral("%1,%2,%3 ").arg(c.red(), 3).arg(c.green(), 3).arg(c.blue(), 3);
            }
            printf("%s\n", qPrintable(line));
        }
        return 0;
    }
    const QString dir =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("/tmp/thermivo-micro");
    QDir().mkpath(dir);
    MicroFixture f;
    f.window->show();
    for (int r = 1; r <= 9; ++r) {
        f.select(r);
        auto save = [&](const char* tag) {
            f.panel->picture3()->grab().save(
                QStringLiteral("%1/r%2_%3.png").arg(dir).arg(r).arg(QLatin1String(tag)));
        };
        save("0initial");
        if (r > 8)
            continue;
        f.runUntil(3);
        save("1cutting");
        f.runUntil(f.state.BreakCount + 12);
        save("2drift");
        f.runUntil(std::min(f.state.FormStartStep + 3, f.state.FormStartStep + f.state.FormCount));
        save("3forming");
        f.panel->Image6_Click();
        save("4final");
        f.ctx.Check1[1]->setChecked(true);
        f.panel->Check1_Click(1);
        save("5final_since");
        f.ctx.Check1[1]->setChecked(false);
        f.ctx.Check1[2]->setChecked(true);
        f.state.ActiveTab = 1;
        f.panel->picture5()->refresh();
        f.panel->picture5()->grab().save(QStringLiteral("%1/r%2_panel_micro.png").arg(dir).arg(r));
        f.state.ActiveTab = 2;
        f.panel->picture5()->refresh();
        f.panel->picture5()->grab().save(QStringLiteral("%1/r%2_panel_macro.png").arg(dir).arg(r));
        f.ctx.Check1[2]->setChecked(false);
        f.state.ActiveTab = 1;
    }
    return 0;
}
