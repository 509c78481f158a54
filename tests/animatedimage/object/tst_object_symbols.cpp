#include "program.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtTest/QTest>

namespace
{

const QString plugin = QStringLiteral(PLUGIN_FILE);

/// The values of one kind of entry of the dynamic section.
QStringList dynamicEntries(const QString &kind)
{
    const QRegularExpression entry(QStringLiteral("\\(%1\\).*\\[(.+)\\]").arg(kind));
    QStringList values;
    const auto lines = linesOf(QStringLiteral("readelf"), {QStringLiteral("-d"), plugin});
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = entry.match(line);
        if (match.hasMatch())
            values.append(match.captured(1));
    }
    return values;
}

bool isSanitizerRuntime(const QString &library)
{
    return library.startsWith(QLatin1String("libasan.")) ||
           library.startsWith(QLatin1String("libubsan."));
}

bool isAllowed(const QString &library)
{
    const QStringList allowed{
        QStringLiteral("libframework.so.1"), QStringLiteral("libQt5Core.so.5"),
        QStringLiteral("libQt5Gui.so.5"),    QStringLiteral("libQt5Widgets.so.5"),
        QStringLiteral("libGL.so.1"),        QStringLiteral("libstdc++.so.6"),
        QStringLiteral("libgcc_s.so.1"),     QStringLiteral("libm.so.6"),
        QStringLiteral("libc.so.6"),         QStringLiteral("ld-linux-x86-64.so.2")};
    return allowed.contains(library) || isSanitizerRuntime(library);
}

/// Where the loader finds the libraries that the plug-in needs, by their names.
QMap<QString, QString> libraryPaths()
{
    const QRegularExpression line(QStringLiteral("^(?:(\\S+) => )?(/\\S+) \\(0x"));
    QMap<QString, QString> paths;
    const auto lines = linesOf(QStringLiteral("ldd"), {plugin});
    for (const QString &text : lines) {
        const QRegularExpressionMatch match = line.match(text);
        if (match.hasMatch())
            paths.insert(QFileInfo(match.captured(2)).fileName(), match.captured(2));
        if (match.hasMatch() && !match.captured(1).isEmpty())
            paths.insert(match.captured(1), match.captured(2));
    }
    return paths;
}

/// The names in a listing of symbols, without their versions, and of one type where one is given.
QStringList symbols(const QStringList &options, const QString &library, const QString &type = {})
{
    const QRegularExpression line(QStringLiteral("^(?:[0-9a-f]+ )?(\\w) (.+)$"));
    QStringList names;
    const auto lines = linesOf(QStringLiteral("nm"), options + QStringList({library}));
    for (const QString &text : lines) {
        const QRegularExpressionMatch match = line.match(text);
        if (match.hasMatch() && (type.isEmpty() || match.captured(1) == type))
            names.append(match.captured(2).section(QLatin1Char('@'), 0, 0));
    }
    names.removeDuplicates(); // constructors and destructors have several forms of one name
    names.sort();
    return names;
}

QStringList defined(const QString &library)
{
    return symbols({QStringLiteral("-D"), QStringLiteral("--defined-only")}, library);
}

/// The lines of a list that is kept next to this test.
QStringList keptList(const QString &name)
{
    QFile file(QStringLiteral(LISTS_FOLDER "/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("(no list)")};
    QStringList lines =
        QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

/// What is in one list and not in the other, a line each; empty when they are the same.
QString difference(const QStringList &actual, const QStringList &kept)
{
    QStringList lines;
    for (const QString &name : actual) {
        if (!kept.contains(name))
            lines.append(QStringLiteral("only in the library: ") + name);
    }
    for (const QString &name : kept) {
        if (!actual.contains(name))
            lines.append(QStringLiteral("only in the list: ") + name);
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

/// What the built library offers and what it asks of others.
class TestObjectSymbols : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLibraryHasItsSharedObjectName();
    void itNeedsNoOtherLibraries();
    void itExportsWhatTheListSays();
    void whatItLacksIsProvidedByTheAllowedLibraries();
    void whatItTakesFromTheHostIsInTheList();
};

void TestObjectSymbols::theLibraryHasItsSharedObjectName()
{
    QCOMPARE(dynamicEntries(QStringLiteral("SONAME")),
             QStringList({QStringLiteral("libanimatedimage.so.1")}));
    // The link for development is next to it.
    const QFileInfo link(QFileInfo(plugin).path() + QStringLiteral("/libanimatedimage.so"));
    QVERIFY(link.isSymLink());
    QCOMPARE(link.canonicalFilePath(), QFileInfo(plugin).canonicalFilePath());
}

void TestObjectSymbols::itNeedsNoOtherLibraries()
{
    const QStringList needed = dynamicEntries(QStringLiteral("NEEDED"));
    for (const QString &library : needed)
        QVERIFY2(isAllowed(library), qPrintable(library));
    QVERIFY(needed.contains(QStringLiteral("libframework.so.1")));
    QVERIFY(needed.contains(QStringLiteral("libGL.so.1")));
}

void TestObjectSymbols::itExportsWhatTheListSays()
{
    const QStringList exported = symbols(
        {QStringLiteral("-D"), QStringLiteral("-C"), QStringLiteral("--defined-only")}, plugin);
    const QString different =
        difference(exported, keptList(QStringLiteral("exported-symbols.txt")));
    QVERIFY2(different.isEmpty(), qPrintable(different));

    // The three that a host looks up have C linkage: their names are there as they are.
    const QStringList raw = defined(plugin);
    QVERIFY(raw.contains(QStringLiteral("createObject_animatedImage")));
    QVERIFY(raw.contains(QStringLiteral("animatedImage_SetDefaultSpecialProperty")));
    QVERIFY(raw.contains(QStringLiteral("animatedImage_GetAllThumbnail")));
}

void TestObjectSymbols::whatItLacksIsProvidedByTheAllowedLibraries()
{
    QSet<QString> provided;
    const QMap<QString, QString> paths = libraryPaths();
    for (auto it = paths.cbegin(); it != paths.cend(); ++it) {
        if (!isAllowed(it.key()))
            continue;
        const auto names = defined(it.value());
        for (const QString &name : names)
            provided.insert(name);
    }
    QVERIFY(provided.size() > 1000);
    // Weak symbols, of type w, may be provided by nobody.
    const QStringList lacking = symbols({QStringLiteral("-D"), QStringLiteral("--undefined-only")},
                                        plugin, QStringLiteral("U"));
    QVERIFY(lacking.size() > 100);
    for (const QString &name : lacking)
        QVERIFY2(provided.contains(name), qPrintable(name));
}

void TestObjectSymbols::whatItTakesFromTheHostIsInTheList()
{
    const QMap<QString, QString> paths = libraryPaths();
    const QString framework = paths.value(QStringLiteral("libframework.so.1"));
    QVERIFY(!framework.isEmpty());
    const QStringList lacking =
        symbols({QStringLiteral("-D"), QStringLiteral("-C"), QStringLiteral("--undefined-only")},
                plugin, QStringLiteral("U"));
    QStringList taken;
    const auto names = symbols(
        {QStringLiteral("-D"), QStringLiteral("-C"), QStringLiteral("--defined-only")}, framework);
    for (const QString &name : names) {
        if (lacking.contains(name))
            taken.append(name);
    }

    QStringList kept = keptList(QStringLiteral("host-symbols.txt"));
    // Sanitizers check the type of every object, and so ask for one type more.
    if (std::any_of(paths.keyBegin(), paths.keyEnd(), isSanitizerRuntime))
        kept.append(QStringLiteral("typeinfo for CGDRootObject"));
    const QString different = difference(taken, kept);
    QVERIFY2(different.isEmpty(), qPrintable(different));
}

QTEST_GUILESS_MAIN(TestObjectSymbols)
#include "tst_object_symbols.moc"
