#include "tests/animatedimage/walks/hostears.h"

#include "framework/framework.h"
#include "host/baseobject.h"

namespace
{

/// The framework as the plug-in sees it: what is not heard as a signal is noted on the way.
class HeardFramework final : public IFramework
{
public:
    IGdDocument *defaultDocument() override { return Framework::instance().defaultDocument(); }
    INotifier *notifier() override { return Framework::instance().notifier(); }
    QString translated(const QString &id, const QString &fallback) override
    {
        return Framework::instance().translated(id, fallback);
    }
    bool isUndoMacroOpen() override { return Framework::instance().isUndoMacroOpen(); }
    void openUndoMacro(const QString &id) override
    {
        HostEars::instance().hear(QStringLiteral("opened the macro ") + id);
        Framework::instance().openUndoMacro(id);
    }
    void closeUndoMacro() override
    {
        HostEars::instance().hear(QStringLiteral("closed the macro"));
        Framework::instance().closeUndoMacro();
    }
    void refreshObject(CGDRootObject *object) override
    {
        HostEars &ears = HostEars::instance();
        ears.hear(QStringLiteral("object %1 was refreshed").arg(ears.serialOf(object)));
        Framework::instance().refreshObject(object);
    }
};

/// Warnings are of Qt, about devices that cannot do what was asked; they are passed over.
void hearMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool isDefault = !context.category || qstrcmp(context.category, "default") == 0;
    if (type == QtDebugMsg && isDefault)
        HostEars::instance().hear(QStringLiteral("debug ") + text);
    else if (type == QtFatalMsg)
        fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

/// The program's own definitions go before those of the framework's library.
IFramework *GetFramework()
{
    static HeardFramework framework;
    return &framework;
}

void CBaseObject::clearLayerEffectCache(ClearLayerEffectCacheReason reason)
{
    m_shadowCache = QImage();
    update();
    // The base itself clears the cache when it is given another shadow.
    if (reason == ClearLayerEffectCacheReason::EffectChanged)
        return;
    HostEars &ears = HostEars::instance();
    ears.hear(QStringLiteral("object %1 cleared its cache, reason %2")
                  .arg(ears.serialOf(this))
                  .arg(int(reason)));
}

HostEars &HostEars::instance()
{
    static HostEars ears;
    return ears;
}

HostEars::HostEars()
{
    const Notifier *notifier = Framework::instance().notifier();
    connect(notifier, &Notifier::propertyChanged, this,
            [this](const CBaseObject *object, int id, const QString &value) {
                QString event =
                    QStringLiteral("object %1 changed %2").arg(serialOf(object)).arg(id);
                if (!value.isEmpty())
                    event += QStringLiteral(" with the value ") + value;
                hear(event);
            });
    connect(notifier, &Notifier::posted, this,
            [this](int id, int first, const QString &text, int last) {
                hear(QStringLiteral("posted %1 %2 ").arg(id).arg(first) + text +
                     QStringLiteral(" %1").arg(last));
            });
    connect(
        notifier, &Notifier::notified, this, [this](int code, int first, int second, int third) {
            hear(
                QStringLiteral("notified %1 %2 %3 %4").arg(code).arg(first).arg(second).arg(third));
        });
}

void HostEars::begin()
{
    m_serials.clear();
    m_otherHandler = qInstallMessageHandler(hearMessage);
}

void HostEars::end()
{
    m_events.clear();
    qInstallMessageHandler(m_otherHandler);
}

QStringList HostEars::takeEvents()
{
    QStringList events;
    events.swap(m_events);
    return events;
}
