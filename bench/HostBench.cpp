// SPDX-License-Identifier: MIT
// A whole host session on the example printer (open and mark the PPD, load
// the bundle's panels, make the view, restore, save) beside constructing
// Qt's print dialog in the same run: the session should cost less than the
// dialog. Each step is measured too, so that its share shows.
#include "RatioReporter.h"

#include "host/BundleLocator.h"
#include "host/PanelHost.h"
#include "host/PrinterSession.h"

#include <QApplication>
#include <QPrintDialog>
#include <QPrinter>

#include <memory>

namespace {

const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");
const QStringList kBundles{QStringLiteral(PDE_BUNDLE_DIR)};

std::unique_ptr<pdehost::PrinterSession> openPrinter()
{
    QString error;
    return pdehost::PrinterSession::fromPpdFile(kPpd, {}, &error);
}

void BM_Baseline_QPrintDialogConstruction(benchmark::State &state)
{
    QPrinter printer;
    for (auto _ : state) {
        QPrintDialog dialog(&printer);
        benchmark::DoNotOptimize(&dialog);
    }
}

void BM_HostSession(benchmark::State &state)
{
    for (auto _ : state) {
        std::unique_ptr<pdehost::PrinterSession> session = openPrinter();
        pdehost::PanelHost host;
        host.load(pdehost::locateBundles(kBundles, pdehost::dialogExtensionsOf(session->ppdFile()), {}).paths,
                  session.get());
        for (pdehost::HostedPanel &hosted : host.panels()) {
            benchmark::DoNotOptimize(hosted.panel->panelView());
            hosted.panel->restoreValuesAndReturnError(nullptr);
            hosted.panel->saveValuesAndReturnError(nullptr);
        }
    }
}

void BM_Step1_OpenAndMarkPpd(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(openPrinter());
}

void BM_Step2_LoadBundlePanels(benchmark::State &state)
{
    const std::unique_ptr<pdehost::PrinterSession> session = openPrinter();
    for (auto _ : state) {
        pdehost::PanelHost host;
        host.load(kBundles, session.get());
        benchmark::DoNotOptimize(host.panels().size());
    }
}

void BM_Step3_PanelView(benchmark::State &state)
{
    const std::unique_ptr<pdehost::PrinterSession> session = openPrinter();
    for (auto _ : state) {
        state.PauseTiming();
        auto host = std::make_unique<pdehost::PanelHost>();
        host->load(kBundles, session.get());
        state.ResumeTiming();
        benchmark::DoNotOptimize(host->panels().front().panel->panelView());
        state.PauseTiming();
        host.reset();
        state.ResumeTiming();
    }
}

void BM_Step4_RestoreAndSave(benchmark::State &state)
{
    const std::unique_ptr<pdehost::PrinterSession> session = openPrinter();
    pdehost::PanelHost host;
    host.load(kBundles, session.get());
    pde::PDEPanel &panel = *host.panels().front().panel;
    panel.panelView();
    for (auto _ : state) {
        panel.restoreValuesAndReturnError(nullptr);
        benchmark::DoNotOptimize(panel.saveValuesAndReturnError(nullptr));
    }
}

} // namespace

BENCHMARK(BM_Baseline_QPrintDialogConstruction)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HostSession)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Step1_OpenAndMarkPpd)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Step2_LoadBundlePanels)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Step3_PanelView)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Step4_RestoreAndSave)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // The steps' shares are their ratios to the whole session.
    return runWithRatioReport(argc, argv, {
        {"BM_HostSession", "BM_Baseline_QPrintDialogConstruction", 1.0},
        {"BM_Step1_OpenAndMarkPpd", "BM_HostSession", 1.0},
        {"BM_Step2_LoadBundlePanels", "BM_HostSession", 1.0},
        {"BM_Step3_PanelView", "BM_HostSession", 1.0},
        {"BM_Step4_RestoreAndSave", "BM_HostSession", 1.0},
    });
}
