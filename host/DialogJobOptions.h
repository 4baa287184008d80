// SPDX-License-Identifier: MIT
// What Qt's print dialog shows, as the CUPS job options that carry it.
#pragma once

#include <QList>
#include <QString>

#include <utility>

class QPrinter;

namespace pdehost {

// The job options for the printer's settings as Qt's print dialog left them,
// in the order they are sent, each replacing the print settings' entry of the
// same name:
//   media                  the page size's PPD name ("A4", "Letter")
//   orientation-requested  3 portrait, 4 landscape
//   copies, Collate        the copy count; with more than one copy, True or
//                          False for collated copies
//   sides                  one-sided, two-sided-long-edge or
//                          two-sided-short-edge (automatic: by orientation)
//   outputorder            normal, or reverse for "Reverse"
//   print-color-mode       color or monochrome
//   page-ranges            the pages chosen, when not all of them
// then every option the dialog's Properties and Job Options pages stored on
// the printer (number-up, number-up-layout, page-set, job-hold-until,
// job-billing, job-priority, job-sheets and the PPD's own options, such as
// ColorModel and InputSlot), as Qt's CUPS printing sends them.
QList<std::pair<QString, QString>> dialogJobOptions(QPrinter &printer);

// Takes `name` out of the options the dialog stored on the printer, as if the
// user had left it at CUPS's default.
void removeDialogJobOption(QPrinter &printer, const QString &name);

} // namespace pdehost
