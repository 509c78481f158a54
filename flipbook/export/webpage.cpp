#include "flipbook/export/webpage.h"

#include "flipbook/base/compactpng.h"
#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/export/filmscale.h"
#include "flipbook/object/objectprotocol.h"
#include "framework/page.h"
#include "host/specialpropertyids.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

// Resources of a static library are not found by themselves.
static void initializeTemplate()
{
    Q_INIT_RESOURCE(webpage);
}

namespace
{

constexpr qint32 BackgroundType = 1;
constexpr int NoPicture = -1;

QByteArray templateFile(const QString &name)
{
    initializeTemplate();
    QFile file(QStringLiteral(":/webpage/") + name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

/// By this the browser knows the script and the style that it may use.
QByteArray digestOf(const QByteArray &text)
{
    return "sha256-" + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64();
}

/// Puts values in place of the @NAME@s of @p text, once: what a value holds is not looked at.
QByteArray filled(const QByteArray &text, const QHash<QByteArray, QByteArray> &values)
{
    QByteArray result;
    int done = 0;
    while (true) {
        const int begin = text.indexOf('@', done);
        const int end = begin < 0 ? -1 : text.indexOf('@', begin + 1);
        if (end < 0)
            return result + text.mid(done);
        result += text.mid(done, begin - done);
        result += values.value(text.mid(begin + 1, end - begin - 1));
        done = end + 1;
    }
}

/// JSON in which nothing ends the element that it is in.
QByteArray embedded(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact).replace('<', "\\u003c");
}

class WebPageMaker
{
public:
    WebPageMaker(const Plugin &plugin, const WebPageSource &source, MemoryAccount &memory,
                 const std::function<void(int, int)> &progress)
        : m_plugin(plugin)
        , m_source(source)
        , m_memory(memory)
        , m_progress(progress)
    {
    }

    QByteArray page(Page &page);

private:
    QJsonObject objectJson(CBaseObject &object);
    QJsonArray framesOf(const Plugin::Frames &frames);
    QJsonArray delaysOf(const AnimatedObject &object) const;
    int pictureOf(const QImage &image);
    int encoded(const QImage &image);

    const Plugin &m_plugin;
    const WebPageSource &m_source;
    MemoryAccount &m_memory;
    const std::function<void(int, int)> &m_progress;
    QJsonArray m_pictures; ///< PNG files as base64 text
    QHash<qint64, int> m_byKey;
    QHash<QByteArray, int> m_byDigest;
    int m_done = 0;
    int m_all = 0;
};

int WebPageMaker::encoded(const QImage &image)
{
    // The picture in another format, and its PNG file, before they are compressed.
    m_memory.require(2 * qint64(image.width()) * image.height() * qint64(sizeof(QRgb)),
                     m_source.title, QStringLiteral("a picture of the page"));
    const QByteArray png = compactPng(image);
    if (png.isEmpty())
        throw Failure{m_source.title, QStringLiteral("its pictures cannot be written")};
    const QByteArray digest = QCryptographicHash::hash(png, QCryptographicHash::Sha256);
    const auto known = m_byDigest.constFind(digest);
    if (known != m_byDigest.constEnd())
        return known.value();

    // As text, in UTF-16, and twice in the page while it is put together.
    constexpr qint64 copies = 4;
    const QByteArray text = png.toBase64();
    m_memory.require(copies * text.size(), m_source.title, QStringLiteral("the page"));
    m_memory.take(copies * text.size());
    const int number = m_pictures.size();
    m_pictures.append(QString::fromLatin1(text));
    m_byDigest.insert(digest, number);
    return number;
}

/// The number of a picture, which is encoded when it is new.
int WebPageMaker::pictureOf(const QImage &image)
{
    if (image.isNull())
        return NoPicture;
    const auto known = m_byKey.constFind(image.cacheKey());
    if (known != m_byKey.constEnd())
        return known.value();
    if (m_source.scale != 1.0) {
        const QSize size = FilmScale::scaled(image.size(), m_source.scale);
        m_memory.require(MemoryBudget::neededForFilm(size, 2, 0), m_source.title,
                         QStringLiteral("a scaled picture"));
    }
    const int number = encoded(FilmScale::scaled(image, m_source.scale));
    m_byKey.insert(image.cacheKey(), number);
    return number;
}

QJsonArray WebPageMaker::framesOf(const Plugin::Frames &frames)
{
    QJsonArray numbers;
    for (const auto &frame : frames) {
        numbers.append(pictureOf(frame.second));
        ++m_done;
        if (m_progress)
            m_progress(m_done, m_all);
    }
    return numbers;
}

QJsonArray WebPageMaker::delaysOf(const AnimatedObject &object) const
{
    const int count = object.frameCount();
    const bool hasOwn = m_source.delaysMs.size() == count;
    QJsonArray delays;
    for (int i = 0; i < count; ++i)
        delays.append(hasOwn ? m_source.delaysMs.at(i) : object.intervalMs());
    return delays;
}

QJsonObject WebPageMaker::objectJson(CBaseObject &object)
{
    const AnimatedObject animated(object);
    const Plugin::Frames frames = m_plugin.frames(object);
    const int shown = qBound(0, animated.shownIndex(), frames.size() - 1);
    const QPointF place = object.CGDRootObject::getPos();
    const QSizeF size = object.getSize();
    const QSize pixels = FilmScale::scaled(frames.at(shown).second.size(), m_source.scale);
    const bool isBackground =
        ObjectProtocol::ask<qint32>(object, SpecialPropertyId::AnimatedType) == BackgroundType;
    return {
        {QStringLiteral("name"), animated.name().isEmpty() ? m_source.title : animated.name()},
        {QStringLiteral("x"), place.x()},
        {QStringLiteral("y"), place.y()},
        {QStringLiteral("width"), size.width()},
        {QStringLiteral("height"), size.height()},
        {QStringLiteral("scaleX"), pixels.isEmpty() ? 1.0 : size.width() / pixels.width()},
        {QStringLiteral("scaleY"), pixels.isEmpty() ? 1.0 : size.height() / pixels.height()},
        {QStringLiteral("rotation"), object.getRotate()},
        {QStringLiteral("isMirrored"), object.isMirrored()},
        {QStringLiteral("isFlipped"), object.isFlipped()},
        {QStringLiteral("isBackground"), isBackground},
        {QStringLiteral("shown"), shown},
        {QStringLiteral("loops"), animated.loopCount() == -1 ? -1 : qMax(0, animated.loopCount())},
        {QStringLiteral("delays"), delaysOf(animated)},
        {QStringLiteral("frames"), framesOf(frames)},
    };
}

QByteArray WebPageMaker::page(Page &page)
{
    const QList<CBaseObject *> objects = page.objects();
    for (CBaseObject *object : objects)
        m_all += AnimatedObject(*object).frameCount();
    QJsonArray list;
    for (CBaseObject *object : objects) {
        // Without frames there is nothing to see.
        if (AnimatedObject(*object).frameCount() > 0)
            list.append(objectJson(*object));
    }
    const QRectF rect = page.pageRect();
    const QJsonObject data{
        {QStringLiteral("page"), QJsonObject{{QStringLiteral("x"), rect.x()},
                                             {QStringLiteral("y"), rect.y()},
                                             {QStringLiteral("width"), rect.width()},
                                             {QStringLiteral("height"), rect.height()}}},
        {QStringLiteral("pictures"), m_pictures},
        {QStringLiteral("objects"), list},
    };
    const QByteArray style = templateFile(QStringLiteral("page.css"));
    const QByteArray script = templateFile(QStringLiteral("page.js"));
    return filled(templateFile(QStringLiteral("page.html")),
                  {{"TITLE", m_source.title.toHtmlEscaped().toUtf8()},
                   {"STYLE-DIGEST", digestOf(style)},
                   {"STYLE", style},
                   {"SCRIPT-DIGEST", digestOf(script)},
                   {"SCRIPT", script},
                   {"DATA", embedded(data)}});
}

} // namespace

QByteArray webPage(const Plugin &plugin, Page &page, const WebPageSource &source,
                   MemoryAccount &memory, const std::function<void(int, int)> &progress)
{
    return WebPageMaker(plugin, source, memory, progress).page(page);
}
