// SPDX-License-Identifier: MIT
// Nib loading on top of QUiLoader: declared objects, outlets, actions and
// bindings, then awakeFromNib.
#include "pdekit/Nib.h"

#include "pdekit/Binding.h"
#include "pdekit/Bundle.h"
#include "pdekit/PdeKitLogging.h"
#include "pdekit/ResourceFile.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMetaMethod>
#include <QPointer>
#include <QSet>
#include <QUiLoader>
#include <QWidget>
#include <QXmlStreamReader>

#include <optional>
#include <unordered_map>
#include <utility>

namespace pde {
namespace {

constexpr const char *kObjectsProperty = "nibObjects";
constexpr const char *kOutletsProperty = "nibOutlets";
constexpr const char *kActionsProperty = "nibActions";
constexpr const char *kBindingsProperty = "nibBindings";

// Creates the widget classes that the bundle registered, Qt's own otherwise.
class BundleUiLoader : public QUiLoader
{
public:
    explicit BundleUiLoader(const Bundle *bundle) : m_bundle(bundle) {}

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        const bool registered = m_bundle != nullptr && m_bundle->classes().contains(className);
        const bool root = !m_rootSeen;
        m_rootSeen = true;
        // For a class it cannot make, QUiLoader would make the class the .ui
        // says it extends. The root is the view the nib's code works on
        // (outlets, awakeFromNib), so a stand-in there would leave that code
        // talking to a plain widget: an unregistered class of the panel's own
        // is an error. Qt's own classes need no registration.
        if (root && !registered && !qtWidgetClasses().contains(className)) {
            m_error = QStringLiteral("the class %1 of the root widget %2 is not registered by the bundle")
                          .arg(className, name);
            return nullptr;
        }
        if (registered) {
            QObject *object = m_bundle->classes().create(className, parent);
            auto *widget = qobject_cast<QWidget *>(object);
            if (widget == nullptr) {
                delete object;
                m_error = QStringLiteral("class %1 of widget %2 is not a widget").arg(className, name);
                return nullptr;
            }
            widget->setObjectName(name);
            return widget;
        }
        return QUiLoader::createWidget(className, parent, name);
    }

    const QString &error() const { return m_error; }

private:
    // The widget classes QUiLoader makes itself; the same for every load.
    const QSet<QString> &qtWidgetClasses() const
    {
        static const QSet<QString> classes = [this] {
            const QStringList names = availableWidgets();
            return QSet<QString>(names.cbegin(), names.cend());
        }();
        return classes;
    }

    const Bundle *m_bundle;
    bool m_rootSeen = false;
    QString m_error;
};

// "name.member" split at the last dot before any parenthesis.
std::optional<std::pair<QString, QString>> splitMember(const QString &text)
{
    const QString trimmed = text.trimmed();
    const qsizetype paren = trimmed.indexOf(u'(');
    const qsizetype dot = trimmed.lastIndexOf(u'.', paren < 0 ? -1 : paren);
    if (dot <= 0 || dot == trimmed.size() - 1)
        return std::nullopt;
    return std::make_pair(trimmed.left(dot).trimmed(), trimmed.mid(dot + 1).trimmed());
}

// Methods of `meta` called `name` (or with exactly that signature, when the
// name has parentheses) of the given kinds, fewest parameters first.
QList<QMetaMethod> methodsNamed(const QMetaObject *meta, const QString &name, bool signalsOnly)
{
    QList<QMetaMethod> found;
    const QByteArray wanted = name.toUtf8();
    const bool signature = wanted.contains('(');
    const QByteArray normalized = signature ? QMetaObject::normalizedSignature(wanted.constData()) : QByteArray();
    for (int i = 0; i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (signalsOnly && method.methodType() != QMetaMethod::Signal)
            continue;
        if (signature ? method.methodSignature() == normalized : method.name() == wanted)
            found.append(method);
    }
    std::stable_sort(found.begin(), found.end(), [](const QMetaMethod &a, const QMetaMethod &b) {
        return a.parameterCount() < b.parameterCount();
    });
    return found;
}

// The deepest nesting of elements handed to QUiLoader; a real panel's .ui
// nests a few dozen (each widget in a layout takes three levels).
constexpr int kMaxUiDepth = 256;

// Why QUiLoader must not read the .ui: it nests elements deeper than
// kMaxUiDepth, or it is not well-formed XML (where QUiLoader would stop, this
// stops first); nullopt when it may.
std::optional<QString> tooDeepForTheLoader(const QByteArray &ui)
{
    QXmlStreamReader xml(ui);
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::StartElement && ++depth > kMaxUiDepth)
            return QStringLiteral("nests elements more than %1 deep").arg(kMaxUiDepth);
        if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    if (xml.hasError())
        return QStringLiteral("not a valid .ui file: line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    return std::nullopt;
}

} // namespace

// Calls a method that takes the sender ("clickDefaults(QObject *sender)").
class ActionAdapter : public QObject
{
    Q_OBJECT
public:
    ActionAdapter(QObject *sender, QObject *receiver, QMetaMethod method)
        : QObject(sender), m_receiver(receiver), m_method(method)
    {
    }

public Q_SLOTS:
    void trigger()
    {
        if (m_receiver)
            m_method.invoke(m_receiver.data(), Qt::DirectConnection, Q_ARG(QObject *, parent()));
    }

private:
    QPointer<QObject> m_receiver;
    QMetaMethod m_method;
};

namespace {

class NibLoader
{
public:
    NibLoader(const Bundle *bundle, QString path, QObject *owner)
        : m_bundle(bundle), m_path(std::move(path)), m_owner(owner)
    {
    }

    bool run(Nib::TopLevelObjects *topLevelObjects)
    {
        if (topLevelObjects == nullptr)
            return fail(QStringLiteral("no list for the top-level objects"));
        if (!build())
            return rollBack();
        for (std::unique_ptr<QObject> &object : m_objects)
            awake(object.get());
        awake(m_root.get());
        for (QWidget *widget : m_root->findChildren<QWidget *>())
            awake(widget);
        topLevelObjects->push_back(std::move(m_root));
        for (std::unique_ptr<QObject> &object : m_objects)
            topLevelObjects->push_back(std::move(object));
        return true;
    }

private:
    bool fail(const QString &why)
    {
        qCWarning(lcPdeNib, "%s: %s", qUtf8Printable(m_path), qUtf8Printable(why));
        return false;
    }

    bool rollBack()
    {
        // The owner must not keep pointers into objects that are about to go,
        // nor the adapters and bindings the load gave it.
        for (const QMetaProperty &outlet : m_ownerOutlets)
            outlet.write(m_owner, QVariant(outlet.metaType()));
        for (const QPointer<QObject> &made : m_madeOnOwner)
            delete made.data();
        m_madeOnOwner.clear();
        m_objects.clear();
        m_root.reset();
        return false;
    }

    bool build()
    {
        const ResourceFile file = readResourceFile(m_path);
        if (!file.contents)
            return fail(file.error);
        // QUiLoader reads and builds the widget tree recursively.
        if (const std::optional<QString> fault = tooDeepForTheLoader(*file.contents))
            return fail(*fault);
        QBuffer contents;
        contents.setData(*file.contents);
        contents.open(QIODevice::ReadOnly);
        BundleUiLoader loader(m_bundle);
        // Relative paths in the .ui (pixmaps, icons) name files beside it.
        loader.setWorkingDirectory(QFileInfo(m_path).absoluteDir());
        m_root.reset(loader.load(&contents));
        if (!loader.error().isEmpty())
            return fail(loader.error());
        if (!m_root)
            return fail(QStringLiteral("not a valid .ui file: %1").arg(loader.errorString()));

        m_names.insert(m_root->objectName(), m_root.get());
        for (QObject *child : m_root->findChildren<QObject *>()) {
            if (!child->objectName().isEmpty() && !m_names.contains(child->objectName()))
                m_names.insert(child->objectName(), child);
        }
        return createObjects() && connectOutlets() && connectActions() && connectBindings();
    }

    QStringList declarations(const char *property) const
    {
        return m_root->property(property).toStringList();
    }

    QObject *resolve(const QString &name) const
    {
        if (name == QLatin1StringView(Nib::kFilesOwner))
            return m_owner;
        return m_names.value(name);
    }

    bool createObjects()
    {
        for (const QString &line : declarations(kObjectsProperty)) {
            const QStringList parts = line.split(u' ', Qt::SkipEmptyParts);
            if (parts.size() != 2)
                return fail(QStringLiteral("object \"%1\": expected \"ClassName objectName\"").arg(line));
            const QString &className = parts[0];
            const QString &name = parts[1];
            if (m_names.contains(name) || name == QLatin1StringView(Nib::kFilesOwner))
                return fail(QStringLiteral("object \"%1\": the name %2 is taken").arg(line, name));
            QObject *object = m_bundle != nullptr ? m_bundle->classes().create(className, nullptr) : nullptr;
            if (object == nullptr)
                return fail(QStringLiteral("object \"%1\": unknown class %2").arg(line, className));
            object->setObjectName(name);
            m_objects.emplace_back(object);
            m_names.insert(name, object);
        }
        return true;
    }

    bool connectOutlets()
    {
        for (const QString &line : declarations(kOutletsProperty)) {
            const qsizetype equals = line.indexOf(u'=');
            const auto source = equals > 0 ? splitMember(line.left(equals)) : std::nullopt;
            if (!source)
                return fail(QStringLiteral("outlet \"%1\": expected \"source.outlet = target\"").arg(line));
            QObject *object = resolve(source->first);
            QObject *target = resolve(line.mid(equals + 1).trimmed());
            if (object == nullptr || target == nullptr)
                return fail(QStringLiteral("outlet \"%1\": unknown object").arg(line));
            const QByteArray outlet = source->second.toUtf8();
            const int index = object->metaObject()->indexOfProperty(outlet.constData());
            const QMetaProperty property = object->metaObject()->property(index);
            if (index < 0 || !property.write(object, QVariant::fromValue(target)))
                return fail(QStringLiteral("outlet \"%1\": %2 has no outlet %3 that takes %4")
                                .arg(line, source->first, source->second,
                                     QString::fromUtf8(target->metaObject()->className())));
            if (object == m_owner)
                m_ownerOutlets.push_back(property);
        }
        return true;
    }

    bool connectActions()
    {
        for (const QString &line : declarations(kActionsProperty)) {
            const qsizetype arrow = line.indexOf(QStringLiteral("->"));
            const auto from = arrow > 0 ? splitMember(line.left(arrow)) : std::nullopt;
            const auto to = arrow > 0 ? splitMember(line.mid(arrow + 2)) : std::nullopt;
            if (!from || !to)
                return fail(QStringLiteral("action \"%1\": expected \"sender.signal -> receiver.method\"").arg(line));
            QObject *sender = resolve(from->first);
            QObject *receiver = resolve(to->first);
            if (sender == nullptr || receiver == nullptr)
                return fail(QStringLiteral("action \"%1\": unknown object").arg(line));
            if (!connectAction(sender, from->second, receiver, to->second))
                return fail(QStringLiteral("action \"%1\": no such signal, or no method that it can call").arg(line));
        }
        return true;
    }

    bool connectAction(QObject *sender, const QString &signalName, QObject *receiver, const QString &methodName)
    {
        const QList<QMetaMethod> signalList = methodsNamed(sender->metaObject(), signalName, true);
        const QList<QMetaMethod> methods = methodsNamed(receiver->metaObject(), methodName, false);
        for (const QMetaMethod &signal : signalList) {
            for (const QMetaMethod &method : methods) {
                if (QMetaObject::checkConnectArgs(signal, method))
                    return QObject::connect(sender, signal, receiver, method);
            }
        }
        // A method that takes the sender, as an action does.
        for (const QMetaMethod &method : methods) {
            if (method.parameterCount() == 1 && method.parameterMetaType(0) == QMetaType::fromType<QObject *>()
                && !signalList.isEmpty()) {
                auto *adapter = new ActionAdapter(sender, receiver, method);
                // An adapter on a nib object goes with it; one on the owner
                // would outlive a failed load.
                if (sender == m_owner)
                    m_madeOnOwner.emplace_back(adapter);
                const QMetaMethod trigger =
                    ActionAdapter::staticMetaObject.method(ActionAdapter::staticMetaObject.indexOfSlot("trigger()"));
                return QObject::connect(sender, signalList.first(), adapter, trigger);
            }
        }
        return false;
    }

    bool connectBindings()
    {
        for (const QString &line : declarations(kBindingsProperty)) {
            const bool twoWay = line.contains(QStringLiteral("<->"));
            const qsizetype arrow = line.indexOf(twoWay ? QStringLiteral("<->") : QStringLiteral("<-"));
            const qsizetype arrowLength = twoWay ? 3 : 2;
            const auto control = arrow > 0 ? splitMember(line.left(arrow)) : std::nullopt;
            const auto source = arrow > 0 ? splitMember(line.mid(arrow + arrowLength)) : std::nullopt;
            if (!control || !source)
                return fail(QStringLiteral("binding \"%1\": expected \"control.property <-> object.property\"").arg(line));
            auto *widget = qobject_cast<QWidget *>(resolve(control->first));
            QObject *object = resolve(source->first);
            if (widget == nullptr || object == nullptr)
                return fail(QStringLiteral("binding \"%1\": unknown control or object").arg(line));
            QString error;
            if (!bindProperty(widget, control->second.toUtf8(), object, source->second.toUtf8(),
                              twoWay ? BindingDirection::TwoWay : BindingDirection::ToControl, &error))
                return fail(QStringLiteral("binding \"%1\": %2").arg(line, error));
            // A binding lives on its control: the newest child of the owner
            // when the owner is the control.
            if (widget == m_owner) {
                const auto bindings = widget->findChildren<PropertyBinding *>(Qt::FindDirectChildrenOnly);
                if (!bindings.isEmpty())
                    m_madeOnOwner.emplace_back(bindings.last());
            }
        }
        return true;
    }

    static void awake(QObject *object)
    {
        // Most widgets are Qt's own and never have the method; asking each
        // class once keeps a large nib from searching method tables over again.
        static std::unordered_map<const QMetaObject *, bool> hasAwake;
        const QMetaObject *meta = object->metaObject();
        auto known = hasAwake.find(meta);
        if (known == hasAwake.end())
            known = hasAwake.emplace(meta, meta->indexOfMethod("awakeFromNib()") >= 0).first;
        if (known->second)
            QMetaObject::invokeMethod(object, "awakeFromNib", Qt::DirectConnection);
    }

    const Bundle *m_bundle;
    QString m_path;
    QObject *m_owner;
    std::unique_ptr<QWidget> m_root;
    std::vector<std::unique_ptr<QObject>> m_objects;
    QHash<QString, QObject *> m_names;
    std::vector<QMetaProperty> m_ownerOutlets;
    std::vector<QPointer<QObject>> m_madeOnOwner;
};

} // namespace

bool Nib::load(const Bundle &bundle, const QString &name, QObject *owner,
               TopLevelObjects *topLevelObjects)
{
    if (!Bundle::isPlainResourceName(name)) {
        qCWarning(lcPdeNib).nospace() << bundle.bundlePath() << ": the nib name " << name
                                      << " is not a plain name inside the bundle's resources";
        return false;
    }
    const std::optional<QString> path =
        bundle.pathForResource(name, QStringLiteral("ui"), {}, Bundle::Search::LocalizedFirst);
    if (!path) {
        qCWarning(lcPdeNib, "%s: no nib named %s", qUtf8Printable(bundle.bundlePath()), qUtf8Printable(name));
        return false;
    }
    return loadFile(&bundle, *path, owner, topLevelObjects);
}

bool Nib::loadFile(const Bundle *bundle, const QString &path, QObject *owner,
                   TopLevelObjects *topLevelObjects)
{
    return NibLoader(bundle, path, owner).run(topLevelObjects);
}

} // namespace pde

#include "Nib.moc"
