#pragma once

#include <QDialog>
#include <QPoint>
#include <QRect>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>

class QGroupBox;
class QKeyEvent;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace calculator {

// The calculator window: a keypad that edits one text, the entry, shown in the display box
// z1. EXE hands a copy of the entry to the evaluator and shows the result or an error message.
// The main window opens it modally with exec().
class Machine : public QDialog {
    Q_OBJECT
public:
    explicit Machine(QWidget* parent = nullptr);
    ~Machine() override;

    // Window fields.
    const QString& entry() const { return Entry; }
    const QString& lastAnswer() const { return LastAnswer; }
    const QString& lastExpression() const { return LastExpression; }
    std::int16_t errorCode() const { return ErrorCode; }
    // Where the last left-button press in the top strip of the window was, in twips.
    QPoint titlePressTwips() const { return TitlePress; }

    // The beep of the error paths; tests count it instead of sounding it.
    void setBeepHandler(std::function<void()> beep) { beep_ = std::move(beep); }

    // The window's key handler, with the key's ANSI code (8 Backspace, 13 Enter).
    void Form_KeyPress(int keyAscii);

    static const QString WaitingText;
    static const QString ScientificPattern;
    // What EXE shows instead of a result.
    static const QString ImpossibleMessage;
    static const QString ParenthesesMessage;
    static const QString OperatorsMessage; // the longest text the display ever shows
    static const QString OverflowMessage;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static constexpr double DisplayPoints = 12;
    int displayFloorPixels_ = 0;
    QPushButton* addKey(const char* name, const QString& caption, const QString& toolTip,
                        QRect place, std::function<void()> handler);
    QPushButton* addPictureKey(const char* name, const QString& base, const QString& exponent,
                               QRect place, std::function<void()> handler);
    bool routeKey(QKeyEvent* event);
    int displayRoom() const;
    int displayPixelsFor(const QString& text) const;
    void fitDisplayFont();

    // Editing rules shared by the keys.
    void append(const QString& text);
    void showEntry();
    void productRule();
    void answerRule();
    bool displayNotBlank() const;
    QString resultText(double value) const;
    void beep();

    // Key handlers.
    void digit(char d);
    void Bpoint_Click();
    void BtoEXP_Click();
    void prefix(const char* exponent);
    void Bpo_Click();
    void bpf_Click();
    void function(const char* word);
    void Bexp_Click();
    void B10x_Click();
    void racine_Click();
    void Command5_Click();
    void pi_Click();
    void puissance_Click();
    void btcarre_Click();
    void multip_Click();
    void div_Click();
    void plus_Click();
    void moins_Click();
    void ANS_Click();
    void EXE_Click();
    void EFFACE_Click();
    void RAZ_Click();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void C_Click();
    void z1_Change();

    QString Entry;
    QString LastAnswer;
    QString LastExpression;
    std::int16_t ErrorCode = 0;
    QPoint TitlePress;

    QLineEdit* z1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    QGroupBox* Frame3 = nullptr;
    std::array<QRadioButton*, 2> angle{};
    std::array<QRadioButton*, 2> C{};

    std::function<void()> beep_;
};

} // namespace calculator
