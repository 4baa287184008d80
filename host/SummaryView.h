// SPDX-License-Identifier: MIT
// The Summary tab's list: the panels' summary lines as Setting and Value.
#pragma once

#include <QStringList>
#include <QTreeWidget>

namespace pdehost {

class SummaryView : public QTreeWidget
{
    Q_OBJECT

public:
    explicit SummaryView(QWidget *parent = nullptr);

    // Shows the lines ("Title: value"), one row each, in their order.
    void showLines(const QStringList &lines);
};

} // namespace pdehost
