// SPDX-License-Identifier: MIT
// "Print to File (PDF)": the documents written into the file the dialog
// chose, with no job for any printer.
#pragma once

#include <QString>
#include <QStringList>

class QPrinter;

namespace pdehost {

// Writes the files into the printer's output file as Qt's PDF printer does
// for an application: a single PDF file is copied as it is; text files and
// pictures are laid out on the printer's pages (text in the fixed-width
// font, each file from a new page; a picture per page, scaled to fit), in
// the page size and orientation chosen. Returns false, with what went wrong
// in `error`, when no output file was chosen, a file cannot be read, cannot
// be combined (a PDF among other files) or is of another kind (PostScript,
// office documents), or the output cannot be written.
bool writeDocumentsToPdf(const QStringList &files, QPrinter &printer, QString *error);

} // namespace pdehost
