// SPDX-License-Identifier: MIT
// The Summary tab's list.
#include "host/SummaryView.h"

#include <QHeaderView>

namespace pdehost {

SummaryView::SummaryView(QWidget *parent) : QTreeWidget(parent)
{
    setColumnCount(2);
    setHeaderLabels({tr("Setting"), tr("Value")});
    setRootIsDecorated(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

void SummaryView::showLines(const QStringList &lines)
{
    clear();
    for (const QString &line : lines) {
        const qsizetype colon = line.indexOf(QStringLiteral(": "));
        new QTreeWidgetItem(this, {line.left(colon), line.mid(colon + 2)});
    }
}

} // namespace pdehost
