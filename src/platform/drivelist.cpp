#include "platform/drivelist.h"

#include <QDir>
#include <QSet>
#include <QStorageInfo>
#include <algorithm>

namespace platform {

namespace {

QString normalFolder(const QString& folder) {
    QString f = QDir::cleanPath(QDir::fromNativeSeparators(folder));
    if (f.size() > 1 && f.endsWith(QLatin1Char('/')))
        f.chop(1);
    return f;
}

bool contains(const QString& root, const QString& folder) {
    if (root == QLatin1String("/"))
        return folder.startsWith(QLatin1Char('/'));
    return folder == root || folder.startsWith(root + QLatin1Char('/'));
}

} // namespace

DriveList::DriveList(QWidget* parent) : QComboBox(parent) {
    connect(this, &QComboBox::currentIndexChanged, this, [this](int) {
        if (!filling_)
            emit Change();
    });
    setVolumes(systemVolumes());
}

QList<DriveList::Volume> DriveList::systemVolumes() {
    QList<Volume> list;
    QSet<QString> seen;
    const QString home = normalFolder(QDir::homePath());
    list.append({home, QStringLiteral("Dossier personnel")});
    seen.insert(home);
    QList<QStorageInfo> mounted = QStorageInfo::mountedVolumes();
    std::sort(mounted.begin(), mounted.end(), [](const QStorageInfo& a, const QStorageInfo& b) {
        return a.rootPath() < b.rootPath();
    });
    for (const QStorageInfo& v : mounted) {
        if (!v.isValid() || !v.isReady())
            continue;
        const QString root = normalFolder(v.rootPath());
        // Boot partitions and the read-only images of packaged applications hold no user's
        // files; they would only crowd the list.
        if (seen.contains(root) || root == QLatin1String("/boot") ||
            root.startsWith(QLatin1String("/boot/")) || root.startsWith(QLatin1String("/snap/")))
            continue;
        seen.insert(root);
        QString label = v.name();
        if (label.isEmpty() && root != QLatin1String("/"))
            label = QString::fromUtf8(v.fileSystemType());
        list.append({root, label});
    }
    return list;
}

void DriveList::setVolumes(const QList<Volume>& volumes) {
    filling_ = true;
    volumes_.clear();
    current_.clear();
    clear();
    for (const Volume& v : volumes) {
        Volume n{normalFolder(v.root), v.label};
        volumes_.append(n);
        current_.append(n.root);
        addItem(n.label.isEmpty() ? n.root
                                  : n.root + QStringLiteral(" [") + n.label + QLatin1Char(']'));
    }
    const QString here = normalFolder(QDir::currentPath());
    const int index = driveOf(here);
    if (index >= 0)
        current_[index] = here;
    setCurrentIndex(index >= 0 ? index : (volumes_.isEmpty() ? -1 : 0));
    filling_ = false;
}

int DriveList::driveOf(const QString& folder) const {
    int best = -1;
    qsizetype bestLength = -1;
    for (int i = 0; i < volumes_.size(); ++i) {
        const QString& root = volumes_[i].root;
        if (contains(root, folder) && root.size() > bestLength) {
            best = i;
            bestLength = root.size();
        }
    }
    return best;
}

QString DriveList::drive() const {
    const int i = currentIndex();
    return i >= 0 && i < current_.size() ? current_[i] : QString();
}

void DriveList::setDrive(const QString& folder) {
    const QString f = normalFolder(QDir(folder).absolutePath());
    const int index = driveOf(f);
    if (index < 0)
        return;
    current_[index] = f;
    setCurrentIndex(index); // fires Change when the selection moves
}

} // namespace platform
