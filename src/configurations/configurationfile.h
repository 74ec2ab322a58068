#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <optional>

// Configuration files (".C10"): a working situation of the main window kept as eight records
// of 128 bytes, in the record layout of platform::RecordFile:
//   1 "TERVO"   2 the reaction list's position as number text (" 3")
//   3, 4 the two amount fields exactly as displayed ("  2,5")
//   5, 6, 7 "1" or "0" for the three check boxes   8 "1" when the system is isolated, else "0"
// This part knows bytes and plain data only; applying them to the controls, the messages and
// the dialogs are in configurations/configurations.h.
namespace configurations {

inline constexpr int RecordCount = 8;
inline constexpr int RecordLength = 128;
inline constexpr int FileSize = RecordCount * RecordLength;
inline constexpr char Signature[] = "TERVO";
inline constexpr char Extension[] = ".C10";

// What a configuration holds, as the main window's controls show it.
struct ConfigurationData {
    std::int16_t listIndex = 0;     // Combo1's position: 0 for the first reaction
    std::array<QString, 2> amounts; // Text1(0), Text1(1), as displayed
    std::array<bool, 3> checked{};  // Check1(0..2)
    bool isolated = false;          // Option1(0) selected

    bool operator==(const ConfigurationData&) const = default;
};

// The eight record texts, in file order.
std::array<QString, RecordCount> recordTexts(const ConfigurationData& data);

// The whole file: eight records with zero filler. nullopt when a text is longer than a record
// holds (over 126 bytes); *failedRecord then gives that record (1 to 8).
std::optional<QByteArray> encodeConfiguration(const ConfigurationData& data,
                                              int* failedRecord = nullptr);

// Record 2 read back: the text as a number, rounded to the nearest integer (halves to even);
// nullopt when it is no position of the reaction list (0 to 7) or too large to read.
std::optional<std::int16_t> listIndexFromText(const QString& text);

// How a file is read back, record by record. Reading stops at the first record that cannot be
// read (missing, length field over 126, text past the end) or cannot be applied (a list
// position out of range): the file is closed there and the later records are not read, so
// their controls keep what they show. Values are given for the records read before that one.
struct LoadPlan {
    int failedRecord = 0;        // 1 to 8, 0 when all eight were read
    bool signatureValid = false; // record 1 is exactly "TERVO" (case counts)
    std::optional<std::int16_t> listIndex;
    std::array<std::optional<QString>, 2> amounts;
    std::array<std::optional<bool>, 3> checked;
    std::optional<bool> isolated;
};

// `bytes` is the start of the file (at least its first eight records), or nullopt when it
// could not be opened: then record 1 fails and the signature is not valid. Records after the
// eighth are ignored. Nothing is read once the signature is found wrong.
LoadPlan planLoad(const std::optional<QByteArray>& bytes);

// A whole, valid file as plain data; nullopt for anything planLoad would not read completely.
std::optional<ConfigurationData> decodeConfiguration(const QByteArray& bytes);

// The file behind a configuration path: the path itself, or, for a name written on Windows
// with "\" that does not exist as it stands, the same name with "/" (relative names from the
// current folder).
QString resolvedConfigurationPath(const QString& path);

// Only a regular file counts: a folder or a device of that name does not.
bool configurationFileExists(const QString& path);

// The first eight records of the file (fewer bytes when the file is shorter). nullopt when it
// is not a regular file or cannot be opened or read. Never creates anything.
std::optional<QByteArray> readConfigurationFile(const QString& path);

// Writes the whole file beside the old one and puts it in its place only once every byte is
// written, so a failure (full disk, read-only folder, a folder of that name, a name the file
// system refuses) leaves any previous file exactly as it was. False on failure.
bool writeConfigurationFile(const QString& path, const QByteArray& bytes);

// The save dialog's name rules. `typed` is the name box's text, `folder` the folder list's.
// The text is trimmed; the file name (after the last "/") loses everything from its first "."
// (a typed extension is dropped, folders keep their dots); a name without "/" goes into
// `folder`, a relative path counts from `folder`; ".C10" is appended.
struct SaveName {
    QString text; // what the name box shows afterwards: the path, or the trimmed name left
    QString path; // the file to write; empty when no name is left
};
SaveName saveNameFor(const QString& typed, const QString& folder);

} // namespace configurations
