// SPDX-License-Identifier: MIT
// The panel's per-keystroke and per-change costs: the formatter's check of a
// 12-character text beside a regular-expression validator with the same rule
// (at least 5 times faster), and one full recomputation of the derived state
// with the bindings that follow it on the real panel (under 50 µs).
#include "RatioReporter.h"

#include "panel/InputStringChecker.h"
#include "panel/PanelClasses.h"
#include "panel/VmbController.h"
#include "panel/VmbModel.h"
#include "pdekit/Bundle.h"
#include "pdekit/Nib.h"

#include <QApplication>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

// Twelve units, all accepted: both validators must check every one of them
// rather than stop at the length.
const QString kDocumentName = QStringLiteral(u"Report \u00e92026");

void BM_Baseline_RegularExpressionValidator(benchmark::State &state)
{
    QRegularExpressionValidator validator(
        QRegularExpression(QStringLiteral(u"[\\x{20}-\\x{7e}\\x{a0}-\\x{ff}]{0,12}")));
    QString text = kDocumentName;
    int position = 0;
    if (validator.validate(text, position) != QValidator::Acceptable) {
        state.SkipWithError("the baseline refuses the text");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(validator.validate(text, position));
}

void BM_InputStringChecker_Validate12(benchmark::State &state)
{
    jt::InputStringChecker checker;
    checker.setMaxLength(12);
    checker.setAcceptableCodeRange(jt::kDocNameAcceptableRange);
    QString text = kDocumentName;
    int position = 0;
    if (checker.validate(text, position) != QValidator::Acceptable) {
        state.SkipWithError("the formatter refuses the text");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(checker.validate(text, position));
}

class Owner : public QObject
{
    Q_OBJECT
    Q_PROPERTY(com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::VmbController *vmbController MEMBER vmbController)
public:
    jt::VmbController *vmbController = nullptr;
};

// Switching between a secure and a sample job flips the password field and
// two captions; every derived property is set and every binding runs.
void BM_DerivedStateRecomputation(benchmark::State &state)
{
    pde::Bundle *bundle = pde::Bundle::open(QStringLiteral(PDE_BUNDLE_DIR));
    if (bundle == nullptr) {
        state.SkipWithError("the job-type bundle was not found");
        return;
    }
    jt::registerPanelClasses(bundle->classes());
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    if (!pde::Nib::load(*bundle, QStringLiteral("SecurePrint"), &owner, &objects) || owner.vmbController == nullptr) {
        state.SkipWithError("the panel's nib did not load");
        return;
    }
    jt::VmbModel *model = owner.vmbController->vmbModel();
    model->setCanStore(true);
    int type = 1;
    for (auto _ : state) {
        type = type == 1 ? 2 : 1;
        model->setPrintType(type);
    }
}

} // namespace

BENCHMARK(BM_Baseline_RegularExpressionValidator);
BENCHMARK(BM_InputStringChecker_Validate12);
BENCHMARK(BM_DerivedStateRecomputation);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runWithRatioReport(argc, argv, {
        {"BM_InputStringChecker_Validate12", "BM_Baseline_RegularExpressionValidator", 0.2},
        {"BM_DerivedStateRecomputation", "", 50000.0},
    });
}

#include "PanelBench.moc"
