#include "mainwindow/helpwindow.h"

#include "platform/messagebox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

// Lower case without accents, so that "energie" finds "Énergie".
QString folded(const QString& text) {
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString out;
    out.reserve(decomposed.size());
    for (QChar c : decomposed)
        if (c.category() != QChar::Mark_NonSpacing)
            out += c;
    return out.toCaseFolded();
}

QString readHtml(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll());
}

// The pages a page links to, in the order they appear, each once.
QStringList linkedPages(const QString& html) {
    QTextDocument doc;
    doc.setHtml(html);
    QStringList out;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next())
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat f = it.fragment().charFormat();
            if (!f.isAnchor())
                continue;
            const QUrl url(f.anchorHref());
            const QString file = url.path();
            if (url.scheme().isEmpty() && file.endsWith(QLatin1String(".html")) &&
                !out.contains(file))
                out << file;
        }
    return out;
}

} // namespace

void HelpWindow::showHelp(QWidget* parent, const QString& programFolder) {
    const QString folder = QDir(programFolder).filePath(folderName());
    if (!QFileInfo::exists(QDir(folder).filePath(contentsPage()))) {
        platform::showExclamation(
            parent, QStringLiteral("Aide"),
            QStringLiteral("L'aide de Thermivo est introuvable : le dossier "
                           "« %1 » manque dans le dossier du programme.\r\n%2")
                .arg(folderName(), QDir::toNativeSeparators(folder)));
        return;
    }
    HelpWindow help(folder, parent);
    help.exec();
}

HelpWindow::HelpWindow(const QString& helpFolder, QWidget* parent)
    : QDialog(parent), folder_(helpFolder) {
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowTitle(QStringLiteral("Aide de Thermivo"));
    resize(780, 540);

    const auto tool = [this](const QString& name, const QString& text, const QString& tip) {
        auto* b = new QToolButton(this);
        b->setObjectName(name);
        b->setText(text);
        b->setToolTip(tip);
        b->setToolButtonStyle(Qt::ToolButtonTextOnly);
        return b;
    };
    back_ = tool(QStringLiteral("back"), QStringLiteral("◀ Précédent"),
                 QStringLiteral("Revenir à la page précédente"));
    forward_ = tool(QStringLiteral("forward"), QStringLiteral("Suivant ▶"),
                    QStringLiteral("Aller à la page suivante"));
    home_ = tool(QStringLiteral("home"), QStringLiteral("Sommaire"),
                 QStringLiteral("Revenir au sommaire"));
    back_->setEnabled(false);
    forward_->setEnabled(false);

    browser_ = new QTextBrowser(this);
    browser_->setObjectName(QStringLiteral("browser"));
    browser_->setOpenExternalLinks(true);
    browser_->setSearchPaths({folder_});

    contents_ = new QListWidget(this);
    contents_->setObjectName(QStringLiteral("contents"));
    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(QStringLiteral("Rechercher des mots"));
    search_->setClearButtonEnabled(true);
    results_ = new QListWidget(this);
    results_->setObjectName(QStringLiteral("results"));

    for (QListWidget* list : {contents_, results_}) {
        // Long titles wrap rather than hide behind a scroll bar.
        list->setWordWrap(true);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    auto* side = new QVBoxLayout;
    side->addWidget(new QLabel(QStringLiteral("Table des matières"), this));
    side->addWidget(contents_, 3);
    side->addWidget(new QLabel(QStringLiteral("Recherche"), this));
    side->addWidget(search_);
    side->addWidget(results_, 2);
    auto* bar = new QHBoxLayout;
    bar->addWidget(back_);
    bar->addWidget(forward_);
    bar->addWidget(home_);
    bar->addStretch();
    auto* right = new QVBoxLayout;
    right->addLayout(bar);
    right->addWidget(browser_);
    auto* all = new QHBoxLayout(this);
    auto* sideWidget = new QWidget(this);
    sideWidget->setLayout(side);
    side->setContentsMargins(0, 0, 0, 0);
    sideWidget->setFixedWidth(230);
    all->addWidget(sideWidget);
    all->addLayout(right, 1);

    connect(back_, &QToolButton::clicked, browser_, &QTextBrowser::backward);
    connect(forward_, &QToolButton::clicked, browser_, &QTextBrowser::forward);
    connect(home_, &QToolButton::clicked, this, [this] { showPage(contentsPage()); });
    connect(browser_, &QTextBrowser::backwardAvailable, back_, &QToolButton::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward_, &QToolButton::setEnabled);
    connect(browser_, &QTextBrowser::sourceChanged, this, &HelpWindow::followSource);
    connect(search_, &QLineEdit::textChanged, this, &HelpWindow::runSearch);
    const auto open = [this](QListWidgetItem* item) {
        if (item && !item->data(Qt::UserRole).toString().isEmpty())
            showPage(item->data(Qt::UserRole).toString());
    };
    connect(contents_, &QListWidget::itemClicked, this, open);
    connect(results_, &QListWidget::itemClicked, this, open);

    readPages();
    showPage(contentsPage());
}

void HelpWindow::readPages() {
    const QDir dir(folder_);
    QStringList order{contentsPage()};
    const QString index = readHtml(dir.filePath(contentsPage()));
    QStringList linked = linkedPages(index);
    linked.removeAll(contentsPage());
    const int inContents = static_cast<int>(linked.size()) + 1;
    order << linked;
    for (const QString& file : dir.entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name))
        if (!order.contains(file))
            order << file;

    for (int i = 0; i < order.size(); ++i) {
        const QString html = readHtml(dir.filePath(order[i]));
        if (html.isEmpty())
            continue;
        QTextDocument doc;
        doc.setHtml(html);
        QString title = doc.metaInformation(QTextDocument::DocumentTitle).trimmed();
        if (title.isEmpty())
            title = order[i];
        pages_.push_back({order[i], title, folded(doc.toPlainText() + QLatin1Char(' ') + title)});
        if (i < inContents) {
            auto* item = new QListWidgetItem(title, contents_);
            item->setData(Qt::UserRole, order[i]);
        }
    }
}

void HelpWindow::showPage(const QString& fileName) {
    browser_->setSource(QUrl::fromLocalFile(QDir(folder_).filePath(fileName)));
}

void HelpWindow::followSource(const QUrl& source) {
    const QString file = QFileInfo(source.toLocalFile()).fileName();
    for (int i = 0; i < contents_->count(); ++i)
        if (contents_->item(i)->data(Qt::UserRole).toString() == file) {
            contents_->setCurrentRow(i);
            return;
        }
    contents_->clearSelection();
}

QStringList HelpWindow::pagesWithWords(const QString& query) const {
    static const QRegularExpression separators(QStringLiteral("[^\\w]+"),
                                               QRegularExpression::UseUnicodePropertiesOption);
    const QStringList words = folded(query).split(separators, Qt::SkipEmptyParts);
    QStringList found;
    if (words.isEmpty())
        return found;
    for (const Page& p : pages_) {
        bool all = true;
        for (const QString& w : words)
            all = all && p.words.contains(w);
        if (all)
            found << p.file;
    }
    return found;
}

void HelpWindow::runSearch() {
    results_->clear();
    const QString query = search_->text().trimmed();
    if (query.isEmpty())
        return;
    const QStringList files = pagesWithWords(query);
    for (const QString& file : files)
        for (const Page& p : pages_)
            if (p.file == file) {
                auto* item = new QListWidgetItem(p.title, results_);
                item->setData(Qt::UserRole, p.file);
            }
    if (files.isEmpty())
        new QListWidgetItem(QStringLiteral("Aucune page ne contient ces mots."), results_);
}
