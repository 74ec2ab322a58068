#include "platform/programfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace platform {

namespace {
QString& overrideFolder() {
    static QString folder;
    return folder;
}
} // namespace

void setProgramFolderOverride(const QString& folder) {
    overrideFolder() = folder;
}

QString withTrailingSeparator(const QString& folder) {
    QString f = QDir::fromNativeSeparators(folder);
    f.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!f.endsWith(QLatin1Char('/')))
        f += QLatin1Char('/');
    return f;
}

QString programFolder() {
    if (!overrideFolder().isEmpty())
        return withTrailingSeparator(overrideFolder());
    const QString env = qEnvironmentVariable("THERMIVO_PROGRAM_FOLDER");
    if (!env.isEmpty())
        return withTrailingSeparator(env);
    const QString exe = QCoreApplication::applicationDirPath();
    const QFileInfo installed(exe + QStringLiteral("/../share/thermivo"));
    if (installed.isDir())
        return withTrailingSeparator(installed.canonicalFilePath());
    return withTrailingSeparator(exe);
}

QString writableFolder(const QString& programFolder) {
    if (QFileInfo(programFolder).isWritable())
        return withTrailingSeparator(programFolder);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(data);
    return withTrailingSeparator(data);
}

QString chooseStartingFolder(const QString& current, const QString& home, const QString& documents,
                             const QString& programFolder, bool currentWritable) {
    const QString here = withTrailingSeparator(current);
    const bool ownFolder = currentWritable && here != QStringLiteral("/") &&
                           here != withTrailingSeparator(home) &&
                           !here.startsWith(withTrailingSeparator(programFolder));
    return ownFolder || documents.isEmpty() ? current : documents;
}

QString documentsFolder() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return !documents.isEmpty() && QDir().mkpath(documents) ? documents : QDir::homePath();
}

QString startingFolder(const QString& programFolder) {
    const QString current = QDir::currentPath();
    return chooseStartingFolder(current, QDir::homePath(), documentsFolder(), programFolder,
                                QFileInfo(current).isWritable());
}

QString resolveInFolder(const QString& folder, const QString& name) {
    QString n = name;
    n.replace(QLatin1Char('\\'), QLatin1Char('/'));
    // A drive-letter path written on Windows cannot be honoured here; keep its file part
    // relative to the folder rather than failing outright.
    if (n.size() > 2 && n.at(1) == QLatin1Char(':') && n.at(2) == QLatin1Char('/'))
        n = n.mid(3);
    if (QDir::isAbsolutePath(n))
        return n;
    return withTrailingSeparator(folder) + n;
}

} // namespace platform
