// SPDX-License-Identifier: MIT
// The plug-in as the host meets it: opening the panel (panel from the
// factory, first view, willShow) beside constructing Qt's print dialog in
// the same run (the panel may add at most half of that), and a save plus
// restore of the record (under 100 µs).
#include "RatioReporter.h"

#include "pdekit/Bundle.h"
#include "pdekit/PDEPluginInterface.h"
#include "pdekit/PrintSettings.h"

#include <QApplication>
#include <QPluginLoader>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>

namespace {

class Callback : public pde::PDEPluginCallback
{
public:
    ppd_file_t *ppdFile() override { return nullptr; }
    pde::PrintSettings *printSettings() override { return &settings; }
    pde::PrintSettings settings;
};

pde::PDEPlugIn *factory()
{
    static pde::PDEPlugIn *instance = [] () -> pde::PDEPlugIn * {
        pde::Bundle *bundle = pde::Bundle::open(QStringLiteral(PDE_BUNDLE_DIR));
        if (bundle == nullptr || !bundle->executablePath())
            return nullptr;
        static QPluginLoader loader(*bundle->executablePath());
        auto *plugIn = qobject_cast<pde::PDEPlugIn *>(loader.instance());
        if (plugIn != nullptr)
            plugIn->initWithBundle(bundle);
        return plugIn;
    }();
    return instance;
}

void BM_Baseline_QPrintDialogConstruction(benchmark::State &state)
{
    QPrinter printer;
    for (auto _ : state) {
        QPrintDialog dialog(&printer);
        benchmark::DoNotOptimize(&dialog);
    }
}

void BM_OpenPanel(benchmark::State &state)
{
    pde::PDEPlugIn *plugIn = factory();
    if (plugIn == nullptr) {
        state.SkipWithError("the bundle's module did not load");
        return;
    }
    Callback callback;
    for (auto _ : state) {
        std::optional<pde::PDEPanelList> panels = plugIn->PDEPanelsForType(pde::kPrintDialogTypeID, &callback);
        pde::PDEPanel &panel = *panels->front();
        benchmark::DoNotOptimize(panel.panelView());
        panel.willShow();
    }
}

void BM_SaveAndRestoreRecord(benchmark::State &state)
{
    pde::PDEPlugIn *plugIn = factory();
    if (plugIn == nullptr) {
        state.SkipWithError("the bundle's module did not load");
        return;
    }
    Callback callback;
    callback.settings.setValue(QStringLiteral("com.norvanta.qs.o.print.printsettings.PrintType"), QStringLiteral("4"));
    callback.settings.setValue(QStringLiteral("com.norvanta.qs.o.print.printsettings.PrintTypeUserName"), QStringLiteral("taro"));
    callback.settings.setValue(QStringLiteral("com.norvanta.qs.o.print.printsettings.DocumentName"), QStringLiteral("a,b"));
    std::optional<pde::PDEPanelList> panels = plugIn->PDEPanelsForType(pde::kPrintDialogTypeID, &callback);
    pde::PDEPanel &panel = *panels->front();
    for (auto _ : state) {
        panel.restoreValuesAndReturnError(nullptr);
        benchmark::DoNotOptimize(panel.saveValuesAndReturnError(nullptr));
    }
}

} // namespace

BENCHMARK(BM_Baseline_QPrintDialogConstruction)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OpenPanel)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SaveAndRestoreRecord)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runWithRatioReport(argc, argv, {
        {"BM_OpenPanel", "BM_Baseline_QPrintDialogConstruction", 0.5},
        {"BM_SaveAndRestoreRecord", "", 100000.0},
    });
}
