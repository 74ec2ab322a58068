// Renders the open and save dialogs (and the open dialog's waiting notice) as PNG files into
// the folder given as argument, over a sample folder of configurations.
#include "configurations/configurations.h"
#include "configurations/enregistrer.h"
#include "configurations/ouvrir.h"
#include "mainwindow/application.h"
#include "mainwindow/feuillep.h"
#include "platform/dirlist.h"
#include "platform/filelist.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QLineEdit>
#include <QTemporaryDir>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    setUpApplication(app);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".");

    QTemporaryDir sample;
    QDir d(sample.path());
    for (const char* folder : {"cours/seconde", "cours/premiere", "exercices"})
        d.mkpath(QString::fromLatin1(folder));
    for (const char* file : {"cours/butane.C10", "cours/methane isole.C10", "cours/hydrogene.c10",
                             "cours/notes.txt"}) {
        QFile f(d.filePath(QString::fromLatin1(file)));
        f.open(QIODevice::WriteOnly);
    }
    const QString cours = d.filePath(QStringLiteral("cours"));

    feuilleP window;
    window.setQuietShutdown(true);
    window.show();
    window.state().ConfigFilePath = cours + QStringLiteral("/butane.C10");

    configurations::ouvrir open(*window.configurations(), &window);
    open.show();
    open.dir1()->setPath(cours);
    open.file1()->setListIndex(0);
    open.grab().save(out + QStringLiteral("/ouvrir.png"));
    open.frame1()->show();
    open.grab().save(out + QStringLiteral("/ouvrir-patience.png"));
    open.hide();

    configurations::enregistrer save(*window.configurations(), &window);
    save.show();
    save.grab().save(out + QStringLiteral("/enregistrer.png"));
    save.dir1()->setPath(cours);
    save.grab().save(out + QStringLiteral("/enregistrer-cours.png"));
    save.hide();
    window.close();
    return 0;
}
