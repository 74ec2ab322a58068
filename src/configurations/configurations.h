#pragma once

#include "configurations/configurationfile.h"

#include <QObject>
#include <QPointer>
#include <functional>

class MacroPanel;
class QDialog;
class QMimeData;
class QWidget;
struct MainContext;

namespace configurations {

// The main window's configuration files. It reads the controls into a file (the writer) and
// a file back into the controls (LoadConfiguration), with the messages, the window caption and
// the replay of the amounts and the reaction choice, and it shows the "Ouvrir" and
// "Enregistrer" dialogs. The file in use is always AppState::ConfigFilePath: set it, then call
// writeConfiguration() or LoadConfiguration(), as the dialogs do.
//
// Failures are reported with critical message boxes, parented to the dialog that is open (the
// open dialog while it is shown) or else to the main window:
// - writing: "Ecriture impossible sur disque" ("Enregistrement impossible"), then one more try;
//   a second failure ends the save silently, the previous file left as it was;
// - reading: "Lecture impossible sur disque" ("Erreur lors du chargement du fichier") at the
//   first failure, one more try of that step, later failures silent; a file whose first record
//   is not "TERVO" (or that could not be read at all) then gives "Ce fichier ne correspond pas
//   à cette application" ("Fichier non valide") and changes nothing.
class Configurations : public QObject {
    Q_OBJECT
public:
    // `combo1Click` is the main window's reaction change (Combo1 Click).
    Configurations(MainContext& ctx, MacroPanel& macro, std::function<void()> combo1Click,
                   QObject* parent);

    QString& ConfigFilePath();

    // The situation the controls show now.
    ConfigurationData currentConfiguration() const;

    // Writes ConfigFilePath from the controls. On success the main window's caption becomes
    // "Thermivo - " + ConfigFilePath and `dialog`, when given, is closed (accepted).
    bool writeConfiguration(QDialog* dialog = nullptr);

    // Reads ConfigFilePath into the controls: records 2 to 8 applied as they are read (the
    // list position through the reaction change), the open dialog closed, then the amounts'
    // LostFocus for field 0 and field 1 and the reaction change replayed, and the caption set.
    void LoadConfiguration();

    // True when ConfigFilePath names a regular file; otherwise shows "Nom de fichier incorrect
    // ou chemin non valide" ("impossible d'ouvrir ce fichier") and returns false.
    bool requireExistingFile();

    // Opens `path` as the open dialog's OUVRIR does, without the dialog (command line, a file
    // dropped on the window): a relative path counts from the current folder; a missing file
    // or a folder is refused with requireExistingFile's message. True when it was loaded.
    bool openConfigurationFile(const QString& path);

    // The dialogs, shown modally over the main window.
    void showOpenDialog();
    void showSaveDialog();

    // A ".C10" file dropped anywhere on `window` is handed to `open` once the drop is over.
    void acceptDrops(QWidget* window, std::function<void(const QString& path)> open);
    // The configuration file carried by a drag, or an empty text: one local file named *.C10
    // (the extension in any case).
    static QString droppedConfiguration(const QMimeData* mime);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* messageParent() const;
    void applyRecord(int record, const LoadPlan& plan);
    void setCaption();

    MainContext& ctx_;
    MacroPanel& macro_;
    std::function<void()> combo1Click_;
    QPointer<QDialog> openDialog_;
    QPointer<QWidget> dropWindow_;
    std::function<void(const QString&)> dropOpen_;
};

} // namespace configurations
