#include "configurations/configurationfile.h"

#include "calculator/numbertext.h"
#include "chemistry/catalogue.h"
#include "platform/programfolder.h"
#include "platform/recordfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cmath>

namespace configurations {

namespace {

using platform::RecordFile;

QString flag(bool on) {
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

bool isOn(const QString& text) {
    return text == QLatin1String("1");
}

} // namespace

std::array<QString, RecordCount> recordTexts(const ConfigurationData& data) {
    return {
        QString::fromLatin1(Signature),
        calculator::NumberText(data.listIndex),
        data.amounts[0],
        data.amounts[1],
        flag(data.checked[0]),
        flag(data.checked[1]),
        flag(data.checked[2]),
        flag(data.isolated),
    };
}

std::optional<QByteArray> encodeConfiguration(const ConfigurationData& data, int* failedRecord) {
    if (failedRecord)
        *failedRecord = 0;
    QByteArray file(FileSize, '\0');
    const auto texts = recordTexts(data);
    for (int n = 1; n <= RecordCount; ++n) {
        const std::optional<QByteArray> record =
            RecordFile::encodeText(texts[static_cast<std::size_t>(n - 1)]);
        if (!record) {
            if (failedRecord)
                *failedRecord = n;
            return std::nullopt;
        }
        file.replace((n - 1) * RecordLength, record->size(), *record);
    }
    return file;
}

std::optional<std::int16_t> listIndexFromText(const QString& text) {
    double value = 0;
    try {
        value = calculator::NumberValue(text);
    } catch (const calculator::NumberOverflow&) {
        return std::nullopt;
    }
    // Rounded as an assignment to an integer property rounds: halves go to the even neighbour.
    const double rounded = std::nearbyint(value);
    if (!(rounded >= 0 && rounded < chemistry::ReactionCount))
        return std::nullopt;
    return static_cast<std::int16_t>(rounded);
}

LoadPlan planLoad(const std::optional<QByteArray>& bytes) {
    LoadPlan plan;
    std::array<QString, RecordCount> texts;
    int readable = 0; // records 1..readable could be read
    if (bytes) {
        for (int n = 1; n <= RecordCount; ++n) {
            const std::optional<QString> text = RecordFile::textAt(*bytes, n);
            if (!text)
                break;
            texts[static_cast<std::size_t>(n - 1)] = *text;
            readable = n;
        }
    }
    if (readable < 1) {
        plan.failedRecord = 1;
        return plan;
    }
    plan.signatureValid = texts[0] == QLatin1String(Signature);
    if (!plan.signatureValid)
        return plan;

    for (int n = 2; n <= RecordCount; ++n) {
        if (n > readable) {
            plan.failedRecord = n;
            return plan;
        }
        const QString& text = texts[static_cast<std::size_t>(n - 1)];
        switch (n) {
        case 2:
            plan.listIndex = listIndexFromText(text);
            if (!plan.listIndex) {
                plan.failedRecord = 2;
                return plan;
            }
            break;
        case 3:
        case 4:
            plan.amounts[static_cast<std::size_t>(n - 3)] = text;
            break;
        case 5:
        case 6:
        case 7:
            plan.checked[static_cast<std::size_t>(n - 5)] = isOn(text);
            break;
        default:
            plan.isolated = isOn(text);
            break;
        }
    }
    return plan;
}

std::optional<ConfigurationData> decodeConfiguration(const QByteArray& bytes) {
    const LoadPlan plan = planLoad(bytes);
    if (!plan.signatureValid || plan.failedRecord != 0)
        return std::nullopt;
    ConfigurationData data;
    data.listIndex = *plan.listIndex;
    for (std::size_t i = 0; i < 2; ++i)
        data.amounts[i] = *plan.amounts[i];
    for (std::size_t i = 0; i < 3; ++i)
        data.checked[i] = *plan.checked[i];
    data.isolated = *plan.isolated;
    return data;
}

QString resolvedConfigurationPath(const QString& path) {
    if (path.isEmpty() || QFileInfo(path).isFile() || !path.contains(QLatin1Char('\\')))
        return path;
    const QString converted = platform::resolveInFolder(QDir::currentPath(), path);
    return QFileInfo(converted).isFile() ? converted : path;
}

bool configurationFileExists(const QString& path) {
    return !path.isEmpty() && QFileInfo(resolvedConfigurationPath(path)).isFile();
}

std::optional<QByteArray> readConfigurationFile(const QString& path) {
    const QString file = resolvedConfigurationPath(path);
    if (!configurationFileExists(file))
        return std::nullopt;
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray data = f.read(FileSize);
    if (f.error() != QFileDevice::NoError)
        return std::nullopt;
    return data;
}

bool writeConfigurationFile(const QString& path, const QByteArray& bytes) {
    if (path.isEmpty())
        return false;
    QSaveFile file(path);
    // Unbuffered, so that a short write (a full disk) shows in write()'s count: a buffered
    // flush can drop it silently and the short file would replace the old one.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

SaveName saveNameFor(const QString& typed, const QString& folder) {
    QString text = typed.trimmed();
    for (;;) {
        const qsizetype nameStart = text.lastIndexOf(QLatin1Char('/')) + 1;
        const qsizetype dot = text.indexOf(QLatin1Char('.'), nameStart);
        if (dot < 0)
            break;
        text = text.left(dot).trimmed();
    }
    const qsizetype slash = text.lastIndexOf(QLatin1Char('/'));
    if (text.isEmpty() || slash == text.size() - 1)
        return {text, QString()};

    QString path = text;
    if (slash < 0 || !QDir::isAbsolutePath(text))
        path = (folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/')) + text;
    path += QLatin1String(Extension);
    return {path, path};
}

} // namespace configurations
