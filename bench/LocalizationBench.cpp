// SPDX-License-Identifier: MIT
// Translating a panel-sized widget tree (about 20 controls) from cached
// strings tables, beside setting the same texts directly: under a
// millisecond, and at most twice the direct cost.
#include "RatioReporter.h"

#include "localization/BasicPdeView.h"
#include "pdekit/Bundle.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <vector>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

const QStringList kKeys{
    QStringLiteral("Job Type Title"), QStringLiteral("Job Type None"), QStringLiteral("Job Type Secure"),
    QStringLiteral("Job Type Sample"), QStringLiteral("Job Type Public"), QStringLiteral("User ID Title"),
    QStringLiteral("Password Title"), QStringLiteral("Document Type Title"),
    QStringLiteral("Document Name Type Auto"), QStringLiteral("Document Name Type Enter Name"),
    QStringLiteral("Document Name Title"), QStringLiteral("Defaults"), QStringLiteral("Help"),
    QStringLiteral("Options"), QStringLiteral("Notify"), QStringLiteral("Panel"),
};

struct Tree {
    QTemporaryDir dir;
    pde::Bundle *bundle = nullptr;
    std::unique_ptr<QWidget> window;
    jt::BasicPdeView *view = nullptr;
    // Each text control with its key and the translation it gets.
    struct Text {
        QWidget *widget;
        QString key;
        QString translation;
    };
    std::vector<Text> texts;
    QComboBox *popup = nullptr;
    QTabWidget *tabs = nullptr;
    QGroupBox *group = nullptr;
    // The translations of the pop-up's items, the tab's label and the box's
    // title, looked up once so that the baseline only sets texts.
    QStringList popupTranslations;
    QString tabTranslation;
    QString groupTranslation;

    Tree()
    {
        const QString path = dir.path() + QStringLiteral("/Bench.plugin");
        QDir().mkpath(path + QStringLiteral("/Contents/Resources/ja.lproj"));
        QFile info(path + QStringLiteral("/Contents/Info.plist"));
        info.open(QIODevice::WriteOnly);
        info.write("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                   "<string>org.example.localizationbench</string></dict></plist>");
        info.close();
        QFile strings(path + QStringLiteral("/Contents/Resources/ja.lproj/Localizable.strings"));
        strings.open(QIODevice::WriteOnly);
        for (const QString &key : kKeys)
            strings.write(QStringLiteral("\"%1\" = \"訳 %1\";\n").arg(key).toUtf8());
        strings.close();
        bundle = pde::Bundle::open(path);

        window = std::make_unique<QWidget>();
        view = new jt::BasicPdeView(window.get());
        view->setBundle(bundle);
        auto *layout = new QVBoxLayout(view);
        tabs = new QTabWidget(view);
        layout->addWidget(tabs);
        auto *page = new QWidget;
        tabs->addTab(page, kKeys[15]);
        auto *pageLayout = new QVBoxLayout(page);
        group = new QGroupBox(kKeys[13], page);
        pageLayout->addWidget(group);
        auto *groupLayout = new QVBoxLayout(group);
        popup = new QComboBox(group);
        for (int i = 1; i <= 4; ++i)
            popup->addItem(kKeys[i]);
        groupLayout->addWidget(popup);
        for (int i : {0, 5, 6, 7, 10}) {
            auto *label = new QLabel(kKeys[i], group);
            groupLayout->addWidget(label);
            auto *field = new QLineEdit(group);
            groupLayout->addWidget(field);
        }
        for (int i : {8, 9}) {
            auto *radio = new QRadioButton(kKeys[i], group);
            groupLayout->addWidget(radio);
        }
        auto *check = new QCheckBox(kKeys[14], view);
        layout->addWidget(check);
        auto *defaults = new QPushButton(kKeys[11], view);
        layout->addWidget(defaults);
        auto *help = new QPushButton(kKeys[12], view);
        layout->addWidget(help);

        for (QWidget *widget : view->findChildren<QWidget *>()) {
            QString key;
            if (auto *label = qobject_cast<QLabel *>(widget))
                key = label->text();
            else if (auto *button = qobject_cast<QAbstractButton *>(widget))
                key = button->text();
            else
                continue;
            texts.push_back({widget, key, bundle->localizedStringForKey(key, {}, {})});
        }
        for (int i = 0; i < popup->count(); ++i)
            popupTranslations.append(bundle->localizedStringForKey(kKeys[i + 1], {}, {}));
        tabTranslation = bundle->localizedStringForKey(kKeys[15], {}, {});
        groupTranslation = bundle->localizedStringForKey(kKeys[13], {}, {});
        view->localizeAllControls(); // reads and caches the table
    }

    static void setText(QWidget *widget, const QString &text)
    {
        if (auto *label = qobject_cast<QLabel *>(widget))
            label->setText(text);
        else
            static_cast<QAbstractButton *>(widget)->setText(text);
    }

    // Puts the keys back, so that each round really changes every text, as
    // the first localization of a freshly loaded panel does.
    void showKeys()
    {
        for (const Text &text : texts)
            setText(text.widget, text.key);
        for (int i = 0; i < popup->count(); ++i)
            popup->setItemText(i, kKeys[i + 1]);
        tabs->setTabText(0, kKeys[15]);
        group->setTitle(kKeys[13]);
    }

    void showTranslationsDirectly()
    {
        for (const Text &text : texts)
            setText(text.widget, text.translation);
        for (int i = 0; i < popup->count(); ++i)
            popup->setItemText(i, popupTranslations[i]);
        tabs->setTabText(0, tabTranslation);
        group->setTitle(groupTranslation);
    }
};

Tree &tree()
{
    static Tree instance;
    return instance;
}

// Both rounds start from the keys; the baseline then sets the translations
// it already knows, the view looks each one up.
void BM_Baseline_SetTextsDirectly(benchmark::State &state)
{
    Tree &t = tree();
    for (auto _ : state) {
        t.showKeys();
        t.showTranslationsDirectly();
    }
}

void BM_LocalizeAllControls_20Controls(benchmark::State &state)
{
    Tree &t = tree();
    for (auto _ : state) {
        t.showKeys();
        t.view->localizeAllControls();
    }
}

} // namespace

BENCHMARK(BM_Baseline_SetTextsDirectly)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LocalizeAllControls_20Controls)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LANGUAGE", "ja");
    QApplication app(argc, argv);
    return runWithRatioReport(argc, argv, {
        {"BM_LocalizeAllControls_20Controls", "", 1e6},
        {"BM_LocalizeAllControls_20Controls", "BM_Baseline_SetTextsDirectly", 2.0},
    });
}
