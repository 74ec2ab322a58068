#pragma once

#include "printing/composition.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QPushButton;
class QSpinBox;

namespace printing {

// The print window "Imprimer": which illustrations go on the page, its title, the number of
// copies and the printer. Each opening starts from the designed defaults; the printer itself
// is the program's and keeps the user's choice between openings.
class confimp : public QDialog {
    Q_OBJECT
public:
    confimp(const Illustrations& pictures, QPrinter& printer, QWidget* mainWindow);
    ~confimp() override;

    QPrinter& printer() { return printer_; }

    void Form_Load();
    void UpDown1_Change();
    void Command1_Click(); // "&OK": prints, then closes
    void Command2_Click(); // "&Imprimantes": the printer dialog
    void Command3_Click(); // "&Annuler"
    void Apercu_Click();   // the page as it will print, before printing

private:
    void buildControls();
    bool choiceIsEmpty() const;
    PrintJob job() const;

    Illustrations pictures_;
    QPrinter& printer_;
    QWidget* mainWindow_;
    QGroupBox* frame1_ = nullptr;
    QLabel* label5_ = nullptr;
    QLineEdit* text1_ = nullptr;
    std::array<QCheckBox*, 4> chec_{};
    QLabel* label3_ = nullptr;
    QLabel* label4_ = nullptr;
    QSpinBox* upDown1_ = nullptr;
    QLineEdit* defaut_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QPushButton* command3_ = nullptr;
    QPushButton* apercu_ = nullptr;
    QGroupBox* frame2_ = nullptr;
    QLabel* label1_ = nullptr;
};

} // namespace printing
