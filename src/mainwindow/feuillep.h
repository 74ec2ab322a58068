#pragma once

#include "mainwindow/appstate.h"
#include "mainwindow/context.h"

#include <QImage>
#include <QSize>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class CopyMenu;
class Hints;
class QComboBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QPagedPaintDevice;
class QPushButton;
class QTextEdit;
class MicroPanel;
class MacroPanel;
class OptionsPanel;
class TabStrip;

namespace platform {
class Canvas;
class Surface;
} // namespace platform

namespace exercises {
class ExerciseMenu;
}
namespace configurations {
class Configurations;
}

// The main window. It owns the module-wide state and composes one panel per subsystem; its
// own code is start-up, shutdown, the reaction change and the button row.
class feuilleP : public QWidget {
    Q_OBJECT
public:
    explicit feuilleP(QWidget* parent = nullptr);
    ~feuilleP() override;

    AppState& state() { return state_; }
    MainContext& context() { return ctx_; }
    MicroPanel* micro() const { return micro_; }
    MacroPanel* macro() const { return macro_; }
    TabStrip* tabs() const { return tabs_; }
    OptionsPanel* options() const { return options_; }
    // Configuration files: LoadConfiguration and the writer on AppState::ConfigFilePath.
    configurations::Configurations* configurations() const { return configurations_; }
    exercises::ExerciseMenu* exerciseMenu() const { return exerciseMenu_; }
    // The exercise field above the statement area.
    QLineEdit* fich() const { return fich_; }
    CopyMenu* copyMenu() const { return copyMenu_; }
    // The program's printer, kept with the user's choice between two prints.
    QPrinter& printer();

    // Screen size used by the sizing rule; the real screen unless a test sets one.
    void setScreenSizeOverride(std::optional<QSize> pixels) { screenOverride_ = pixels; }
    // Closing without the two questions (used by --screenshot).
    void setQuietShutdown(bool quiet) { quiet_ = quiet; }
    // Who opens an exercise requested by the suite's main module.
    void setExerciseOpener(std::function<void(const QString& path)> opener) {
        exerciseOpener_ = std::move(opener);
    }

    bool loaded() const { return loaded_; }
    // Loads the window's contents without showing it and without telling the suite that
    // Thermivo runs (used by --export).
    void loadWithoutWindow();
    // K steps of the molecules' animation, as Timer1 would run them.
    void runAnimationSteps(int count);

    // The statement area `supertext`, for the exercise browser: rich text (RTF) loaded, saved
    // and printed. A load makes the area editable and is not an edit: StatementModified is
    // left as it was. Load and save return false when the file cannot be read or written.
    QTextEdit* supertext() const { return supertext_; }
    bool loadStatement(const QString& path);
    bool saveStatement(const QString& path) const;
    void printStatement(QPagedPaintDevice& device) const;

    // Picks a reaction (1..8) as the user would in the list, and a tab (1..3) as a click on it.
    void selectReaction(int index);
    void selectTab(int tab);
    // The next (+1) or previous (-1) tab, round the three.
    void switchTab(int delta);

    // Opens a configuration file as "Ouvrir" would, without its dialog (command line, a file
    // dropped on the window): the animations stop first; a missing or bad file gives the
    // usual messages.
    void openConfiguration(const QString& path);
    // A file named on the command line: an exercise (".E31") or a configuration.
    void openFile(const QString& path);
    void btexo_Click();

signals:
    // The first time the window has been painted (start-up measurements, --screenshot).
    void firstPainted();

public:
    // Handlers, named as the rest of the program knows them.
    void Form_Load();
    void Form_Activate();
    void Form_Resize();
    void Form_Paint(platform::Canvas& c);
    bool Form_QueryUnload(); // false when the user cancels
    void Form_Unload();
    void ShowWelcomeText();
    void liste();
    void Combo1_Click();
    void Command1_Click();
    void Command2_Click();
    void Command4_Click();
    void Command7_Click();
    void Command8_Click();
    void Command10_Click();
    void Command11_Click();

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildControls();
    void buildShortcuts();
    void applySizingRule();
    void setHint(const QString& text);
    void stopForOpening();
    QSize screenPixels() const;

    AppState state_;
    MainContext ctx_;
    QLabel* label1_ = nullptr;
    QComboBox* combo1_ = nullptr;
    platform::Surface* onglets_ = nullptr;
    QLabel* info_ = nullptr;
    QLineEdit* fich_ = nullptr;
    QTextEdit* supertext_ = nullptr;
    QPushButton* btexo_ = nullptr;
    std::array<QPushButton*, 12> commands_{}; // Command1 .. Command11 by number
    OptionsPanel* options_ = nullptr;
    TabStrip* tabs_ = nullptr;
    MicroPanel* micro_ = nullptr;
    MacroPanel* macro_ = nullptr;
    configurations::Configurations* configurations_ = nullptr;
    exercises::ExerciseMenu* exerciseMenu_ = nullptr;
    CopyMenu* copyMenu_ = nullptr;
    Hints* hints_ = nullptr;
    std::unique_ptr<QPrinter> printer_;

    QImage background_;
    std::optional<QSize> screenOverride_;
    std::function<void(const QString&)> exerciseOpener_;
    bool loaded_ = false;
    bool quiet_ = false;
    bool unloaded_ = false;
    bool writingStatement_ = false;
    bool resizing_ = false;
    bool painted_ = false;
    bool windowless_ = false;
};
