// SPDX-License-Identifier: MIT
// The platform layer's hot paths: a localized lookup once its table is read
// (under a microsecond), and loading a panel-sized nib with its bindings
// beside a plain QUiLoader load of the same file (at most 1.5 times).
#include "RatioReporter.h"

#include "pdekit/Bundle.h"
#include "pdekit/Nib.h"

#include <QApplication>
#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUiLoader>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace {

class BenchModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QVariant choice READ choice WRITE setChoice NOTIFY changed)
    Q_PROPERTY(QVariant flag READ flag WRITE setFlag NOTIFY changed)
    Q_PROPERTY(QColor color READ color NOTIFY changed)

public:
    QVariant name() const { return m_name; }
    void setName(const QVariant &v) { m_name = v; Q_EMIT changed(); }
    QVariant choice() const { return m_choice; }
    void setChoice(const QVariant &v) { m_choice = v; Q_EMIT changed(); }
    QVariant flag() const { return m_flag; }
    void setFlag(const QVariant &v) { m_flag = v; Q_EMIT changed(); }
    QColor color() const { return QColor(Qt::lightGray); }

Q_SIGNALS:
    void changed();

private:
    QVariant m_name = QStringLiteral("text");
    QVariant m_choice = 1;
    QVariant m_flag = true;
};

constexpr int kRows = 5; // label, line edit, pop-up, check box: 20 controls

QByteArray panelUi()
{
    QString widgets;
    QString bindings;
    for (int row = 0; row < kRows; ++row) {
        widgets += QStringLiteral(R"(
   <item><widget class="QLabel" name="label%1"><property name="text"><string>Caption %1</string></property></widget></item>
   <item><widget class="QLineEdit" name="field%1"/></item>
   <item><widget class="QComboBox" name="popup%1">
     <item><property name="text"><string>None</string></property></item>
     <item><property name="text"><string>Secure</string></property></item>
     <item><property name="text"><string>Sample</string></property></item>
   </widget></item>
   <item><widget class="QCheckBox" name="check%1"><property name="text"><string>Option %1</string></property></widget></item>)")
                       .arg(row);
        bindings += QStringLiteral("<string>label%1.captionColor &lt;- model.color</string>"
                                   "<string>field%1.text &lt;-&gt; model.name</string>"
                                   "<string>popup%1.currentIndex &lt;-&gt; model.choice</string>"
                                   "<string>check%1.checked &lt;-&gt; model.flag</string>")
                        .arg(row);
    }
    return QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>Panel</class>
 <widget class="QWidget" name="panelView">
  <property name="nibObjects" stdset="0"><stringlist><string>BenchModel model</string></stringlist></property>
  <property name="nibBindings" stdset="0"><stringlist>%1</stringlist></property>
  <layout class="QVBoxLayout" name="layout">%2
  </layout>
 </widget>
</ui>
)")
        .arg(bindings, widgets)
        .toUtf8();
}

struct Fixture {
    QTemporaryDir dir;
    pde::Bundle *bundle = nullptr;
    QString nibPath;

    Fixture()
    {
        const QString path = dir.path() + QStringLiteral("/Bench.plugin");
        QDir().mkpath(path + QStringLiteral("/Contents/Resources/en.lproj"));
        QDir().mkpath(path + QStringLiteral("/Contents/Resources/ja.lproj"));
        write(path + QStringLiteral("/Contents/Info.plist"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
              "<key>CFBundleIdentifier</key><string>org.example.bench</string>"
              "<key>CFBundleDevelopmentRegion</key><string>en</string></dict></plist>\n");
        QByteArray english;
        QByteArray japanese;
        for (int i = 0; i < 100; ++i) {
            english += QStringLiteral("\"Key %1\" = \"English %1\";\n").arg(i).toUtf8();
            if (i % 2 == 0)
                japanese += QStringLiteral("\"Key %1\" = \"日本語 %1\";\n").arg(i).toUtf8();
        }
        write(path + QStringLiteral("/Contents/Resources/en.lproj/Localizable.strings"), english);
        write(path + QStringLiteral("/Contents/Resources/ja.lproj/Localizable.strings"), japanese);
        nibPath = path + QStringLiteral("/Contents/Resources/Panel.ui");
        write(nibPath, panelUi());
        bundle = pde::Bundle::open(path);
        bundle->classes().registerClass<BenchModel>(QStringLiteral("BenchModel"));
    }

    static void write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        file.write(content);
    }
};

Fixture &fixture()
{
    static Fixture instance;
    return instance;
}

// A key the preferred language lacks, so the lookup walks on to the
// development region's table: the longer path.
void BM_LocalizedStringForKey_Cached(benchmark::State &state)
{
    pde::Bundle *bundle = fixture().bundle;
    const QString key = QStringLiteral("Key 51");
    bundle->localizedStringForKey(key, std::nullopt, std::nullopt);
    for (auto _ : state)
        benchmark::DoNotOptimize(bundle->localizedStringForKey(key, std::nullopt, std::nullopt));
}

void BM_Baseline_QUiLoaderLoad(benchmark::State &state)
{
    QFile file(fixture().nibPath);
    for (auto _ : state) {
        file.open(QIODevice::ReadOnly);
        QUiLoader loader;
        std::unique_ptr<QWidget> widget(loader.load(&file));
        benchmark::DoNotOptimize(widget.get());
        file.close();
    }
}

void BM_NibLoad_20ControlsWithBindings(benchmark::State &state)
{
    QObject owner;
    for (auto _ : state) {
        pde::Nib::TopLevelObjects objects;
        benchmark::DoNotOptimize(pde::Nib::loadFile(fixture().bundle, fixture().nibPath, &owner, &objects));
    }
}

} // namespace

BENCHMARK(BM_LocalizedStringForKey_Cached);
BENCHMARK(BM_Baseline_QUiLoaderLoad)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NibLoad_20ControlsWithBindings)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LANGUAGE", "ja_JP");
    QApplication app(argc, argv);
    return runWithRatioReport(argc, argv, {
        {"BM_LocalizedStringForKey_Cached", "", 1000.0},
        {"BM_NibLoad_20ControlsWithBindings", "BM_Baseline_QUiLoaderLoad", 1.5},
    });
}

#include "PdekitBench.moc"
