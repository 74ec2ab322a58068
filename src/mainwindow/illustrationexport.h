#pragma once

#include <QString>
#include <optional>

class feuilleP;

// The illustrations a teacher can write to a file: the molecules (Picmicro), the energy
// diagram (Picture2), the system picture (Picture4) and the graph of the Macro tab.
enum class Illustration { Micro, Diagram, Macro, Graph };

// From the command line's names: micro, diagram, macro, graph.
std::optional<Illustration> illustrationFromName(const QString& name);
QString illustrationName(Illustration which);

// Writes the illustration as the window shows it now (the graph as its window would draw it
// from the balance) to `path`, in the format of its extension; `scale` for PNG only. False
// when the format is unknown, there is nothing to draw, or the file cannot be written.
bool exportIllustration(feuilleP& window, Illustration which, const QString& path, int scale = 1);

// The main window's copy menu dialog: which illustration, at which scale, into which file.
// Returns false when the user cancels or the file could not be written (after saying so).
bool askAndExportIllustration(feuilleP& window);
