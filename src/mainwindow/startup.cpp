#include "mainwindow/startup.h"

std::optional<QRect> mainWindowGeometry(QSize screen) {
    if (screen.width() <= 850)
        return std::nullopt;
    const int w = 800, h = 600;
    return QRect((screen.width() - w) / 2, (screen.height() - h) / 2, w, h);
}

std::vector<WelcomeSegment> welcomeSegments() {
    const QString crlf = QStringLiteral("\r\n");
    const std::vector<std::pair<QString, int>> pieces = {
        {QStringLiteral("Thermivo") + crlf, 9},
        {crlf + QStringLiteral("Cette application permet d'établir le bilan énergétique de "
                               "différentes "),
         0},
        {QStringLiteral("réactions à l'échelle microscopique (molécules) et macroscopique "
                        "(quantités de matière).") +
             crlf + crlf,
         0},
        {QStringLiteral("Pour utiliser Thermivo :") + crlf + crlf, 6},
        {QStringLiteral("- choisir une réaction dans la liste.") + crlf + crlf, 0},
        {QStringLiteral("- activer l'animation de l'onglet Micro pour visualiser les variations "
                        "d'énergie lors de la rupture ou de la formation des liaisons,") +
             crlf + crlf,
         0},
        {QStringLiteral("- saisir les quantités initiales de matière dans l'onglet Macro pour "
                        "obtenir un bilan de matière et l'énergie libérée par la réaction en "
                        "fonction de l'avancement.") +
             crlf + crlf,
         0},
        {QStringLiteral("Tous les paramètres sont modifiables et l'image obtenue peut être "
                        "imprimée ou placée dans le presse-papiers "),
         6},
        {QStringLiteral("(bouton Copier) pour la coller dans une autre application.") + crlf + crlf,
         0},
        {QStringLiteral("Vous pouvez obtenir l'énoncé d'un exercice "), 0},
        {QStringLiteral("dans cette fenêtre en appuyant sur l'onglet "), 0},
        {QStringLiteral("Exercices"), 1},
        {QStringLiteral(".") + crlf + crlf, 0},
        {QStringLiteral("Pour vous familiariser avec ce simulateur, choisissez d'abord "
                        "l'activité "),
         0},
        {QStringLiteral("Prise en main "), 1},
        {QStringLiteral("dans le menu Exercices."), 0},
    };
    std::vector<WelcomeSegment> out;
    int pos = 0;
    for (const auto& [text, format] : pieces) {
        const int len = static_cast<int>(text.size());
        out.push_back({text, format, pos, len});
        pos += len;
    }
    return out;
}

QString defaultHint() {
    return QStringLiteral("Vous pouvez modifier les paramètres,\r\nouvrir une configuration ou "
                          "un exercice");
}

QString copyMessage() {
    return QStringLiteral("L'image est copiée : vous pouvez la retrouver depuis toute "
                          "application Windows (coller)");
}
