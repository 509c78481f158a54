#include "tests/flipbook/pathkinds.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace
{

using Make = std::function<QByteArray(PathScratch &)>;

/// A file with this name, and the ending that the content needs.
Make named(const QByteArray &stem)
{
    return [stem](PathScratch &scratch) { return scratch.file(stem + scratch.ending()); };
}

/// A file at @p place that is called @p typed. Both get the ending.
Make reached(const QByteArray &place, const QByteArray &typed)
{
    return [place, typed](PathScratch &scratch) {
        scratch.file(place + scratch.ending());
        return typed + scratch.ending();
    };
}

/// Something that is not there.
Make missing(const QByteArray &path)
{
    return [path](PathScratch & /*scratch*/) { return path; };
}

QVector<InputKind> plainKinds()
{
    return {
        {"a plain name", named("plain"), {}, {}},
        {"from the root",
         [](PathScratch &scratch) {
             return scratch.absolute(scratch.file("plain" + scratch.ending()));
         },
         {},
         {}},
        {"with ./", reached("plain", "./plain"), {}, {}},
        {"with // and /./", reached("sub/plain", "sub//./plain"), {}, {}},
        {"through ..", reached("plain", "sub/../plain"), {}, {}},
        {"through the process", reached("plain", "/proc/self/cwd/plain"), {}, {}},
        {"spaces", named(" a  b "), {}, {}},
        {"a line feed", named("a\nb"), {}, {}},
        {"a tab and other control characters",
         named("a\tb\x1b[31m\x7f"),
         {},
         "a\xef\xbf\xbd"
         "b\xef\xbf\xbd[31m\xef\xbf\xbd"},
        {"quotes", named("it's \"so\" `now`"), {}, {}},
        {"backslashes", named("a\\b\\\\n\\0"), {}, {}},
    };
}

QVector<InputKind> trickyKinds()
{
    return {
        {"what looks like a place in a text", named("%1%2%s%n"), {}, {}},
        {"what looks like an escaped zero byte", named("a%00b"), {}, {}},
        {"wildcards",
         [](PathScratch &scratch) {
             scratch.secret("ab" + scratch.ending());
             return scratch.file("*" + scratch.ending());
         },
         {},
         {}},
        {"brackets",
         [](PathScratch &scratch) {
             scratch.secret("a" + scratch.ending());
             return scratch.file("[a]" + scratch.ending());
         },
         {},
         {}},
        {"what a shell would expand", named("~$HOME{a,b}!"), {}, {}},
        {"a dash after ./", named("./-o"), {}, {}},
        {"an equals sign", named("a=b"), {}, {}},
        {"a colon at the beginning",
         [](PathScratch &scratch) { return scratch.file(":icons" + scratch.ending()); },
         {},
         {}},
        {"a name like an address", named("qrc:x"), {}, {}},
        {"other letters", named("f\xc3\xa4hre-\xe5\x8a\xa8\xe7\x94\xbb-\xf0\x9f\x8e\x9e"), {}, {}},
    };
}

QVector<InputKind> kindsBesideOthers()
{
    return {
        {"a letter in two parts, and the same in one",
         [](PathScratch &scratch) {
             scratch.secret("\xc3\xa9" + scratch.ending());
             return scratch.file("e\xcc\x81" + scratch.ending());
         },
         {},
         {}},
        {"a name beside one with other case",
         [](PathScratch &scratch) {
             scratch.secret("FILM-A" + scratch.ending());
             return scratch.file("film-a" + scratch.ending());
         },
         {},
         {}},
        {"a name beside one without its ending",
         [](PathScratch &scratch) {
             scratch.pipe("twin");
             scratch.secret("twin" + scratch.ending() + scratch.ending());
             return scratch.file("twin" + scratch.ending());
         },
         {},
         {}},
        {"a hidden file", named("sub/.hidden"), {}, {}},
        {"255 bytes",
         [](PathScratch &scratch) {
             return scratch.file(QByteArray(255 - scratch.ending().size(), 'n') + scratch.ending());
         },
         {},
         {}},
        {"4,000 bytes",
         [](PathScratch &scratch) {
             return QByteArray("./").repeated(1990) + scratch.file("plain" + scratch.ending());
         },
         {},
         {}},
        {"a file that only its owner reads",
         [](PathScratch &scratch) {
             return scratch.withMode(scratch.file("plain" + scratch.ending()), S_IRUSR | S_IWUSR);
         },
         {},
         {}},
    };
}

QVector<InputKind> linkKinds()
{
    const auto twoLinks = [](PathScratch &scratch) {
        scratch.file("sub/far" + scratch.ending());
        scratch.link("sub/far" + scratch.ending(), "one" + scratch.ending());
        return scratch.link("one" + scratch.ending(), "two" + scratch.ending());
    };
    const auto hardLink = [](PathScratch &scratch) {
        const QByteArray file = scratch.file("sub/far" + scratch.ending());
        return scratch.hardLink(file, "near" + scratch.ending());
    };
    const auto throughFolder = [](PathScratch &scratch) {
        scratch.file("sub/far" + scratch.ending());
        return scratch.link("sub", "way") + "/far" + scratch.ending();
    };
    const auto upwards = [](PathScratch &scratch) {
        // What the system finds, not what the text of the path says.
        scratch.makeFolder("sub/deep");
        scratch.secret("plain" + scratch.ending());
        scratch.file("sub/plain" + scratch.ending());
        return scratch.link("sub/deep", "way") + "/../plain" + scratch.ending();
    };
    const auto loop = [](PathScratch &scratch) {
        scratch.link("b" + scratch.ending(), "a" + scratch.ending());
        return scratch.link("a" + scratch.ending(), "b" + scratch.ending());
    };
    const auto nowhere = [](PathScratch &scratch) {
        return scratch.link("nothing" + scratch.ending(), "a" + scratch.ending());
    };
    return {{"a link to a link", twoLinks, {}, {}},
            {"a hard link", hardLink, {}, {}},
            {"a link to its folder", throughFolder, {}, {}},
            {"up from a link to a folder", upwards, {}, {}},
            {"links in a loop", loop, "Too many levels of symbolic links", {}},
            {"a link to nothing", nowhere, "not found", {}}};
}

QVector<InputKind> specialKinds()
{
    const QByteArray folder = "is a folder|has no config.json";
    const auto pipe = [](PathScratch &scratch) { return scratch.pipe("a" + scratch.ending()); };
    const auto linkToPipe = [](PathScratch &scratch) {
        return scratch.link(scratch.pipe("p"), "a" + scratch.ending());
    };
    const auto socket = [](PathScratch &scratch) { return scratch.socket("a" + scratch.ending()); };
    const auto linkToDevice = [](PathScratch &scratch) {
        return scratch.link("/dev/zero", "a" + scratch.ending());
    };
    const auto emptyFolder = [](PathScratch &scratch) {
        return scratch.makeFolder("empty" + scratch.ending());
    };
    return {
        {"a pipe", pipe, "is a pipe, not a file", {}},
        {"a link to a pipe", linkToPipe, "is a pipe, not a file", {}},
        {"a socket", socket, "is a socket, not a file", {}},
        {"/dev/null", missing("/dev/null"), "is a device, not a file", {}},
        {"/dev/zero", missing("/dev/zero"), "is a device, not a file", {}},
        {"/dev/full", missing("/dev/full"), "is a device, not a file", {}},
        {"/dev/tty", missing("/dev/tty"), "is a device, not a file", {}},
        {"a link to a device", linkToDevice, "is a device, not a file", {}},
        {"standard input as a device", missing("/dev/stdin"), "is a device, not a file", {}},
        {"standard input that is closed",
         missing("/dev/stdin"),
         "is a device, not a file",
         {},
         User::Self,
         Input::Closed},
        {"a descriptor that is not open", missing("/proc/self/fd/250"), "not found", {}},
        {"a folder", emptyFolder, folder, {}},
        {"a folder with /",
         [](PathScratch &scratch) { return scratch.makeFolder("empty" + scratch.ending()) + "//"; },
         folder,
         {}},
        {"a folder with /.", missing("sub/."), folder, {}},
        {"the root", missing("/"), folder, {}},
        {"a link to a folder",
         [](PathScratch &scratch) { return scratch.link("sub", "a" + scratch.ending()); },
         folder,
         {}}};
}

QVector<InputKind> missingKinds()
{
    const auto completed = [](PathScratch &scratch) {
        // Libraries try these names when the file is missing.
        for (const char *ending : {".png", ".gif", ".flipbook", ".so", ".json"})
            scratch.pipe(QByteArray("bomb") + ending);
        scratch.pipe("libbomb.so");
        return QByteArray("bomb");
    };
    const auto otherCase = [](PathScratch &scratch) {
        scratch.secret("FILM-A" + scratch.ending());
        return "film-a" + scratch.ending();
    };
    const auto slash = [](PathScratch &scratch) {
        return scratch.file("a" + scratch.ending()) + '/';
    };
    const auto below = [](PathScratch &scratch) {
        return scratch.file("a" + scratch.ending()) + "/b" + scratch.ending();
    };
    const auto back = [](PathScratch &scratch) {
        return scratch.file("a" + scratch.ending()) + "/../a" + scratch.ending();
    };
    const auto wild = [](PathScratch &scratch) {
        scratch.secret("ab" + scratch.ending());
        return "a?" + scratch.ending();
    };
    const auto noText = [](PathScratch &scratch) {
        // What the name becomes where bytes are made text and bytes again.
        scratch.secret("a\xef\xbf\xbd" + scratch.ending());
        return scratch.file("a\xff" + scratch.ending());
    };
    const auto address = [](PathScratch &scratch) {
        return "file://" + scratch.absolute(scratch.file("a" + scratch.ending()));
    };
    return {
        {"a missing name", missing("nothing.png"), "not found", {}},
        {"a missing name that libraries would complete", completed, "not found", {}},
        {"a name of other case", otherCase, "not found", {}},
        {"a file with /", slash, "Not a directory", {}},
        {"below a file", below, "Not a directory", {}},
        {"back from a file", back, "Not a directory", {}},
        {"in a missing folder", missing("nothing/red.png"), "not found", {}},
        {"wildcards of other names", wild, "not found", {}},
        {"a space", missing(" "), "not found", {}},
        {"a line feed alone", missing("\n"), "not found", {}},
        {"no text", noText, "is not valid UTF-8", "a\\xff"},
        {"an address of a file", address, "not found", {}},
        {"an address of a server", missing("http://127.0.0.1/red.png"), "not found", {}},
        {"a file of the program", missing(":/icons/play.svg"), "not found", {}},
        {"a file of the program as an address", missing("qrc:/icons/play.svg"), "not found", {}},
        {"256 bytes", missing(QByteArray(252, 'n') + ".png"), "File name too long", {}},
        {"5,000 bytes",
         missing(QByteArray("./").repeated(2500) + "red.png"),
         "File name too long",
         {}}};
}

QVector<InputKind> closedKinds()
{
    const auto unreadable = [](PathScratch &scratch) {
        return scratch.withMode(scratch.file("a" + scratch.ending()), 0);
    };
    const auto below = [](PathScratch &scratch) {
        scratch.file("sub/a" + scratch.ending());
        return scratch.withMode("sub", S_IRUSR) + "/a" + scratch.ending();
    };
    const auto folder = [](PathScratch &scratch) {
        scratch.file("sub/red.png");
        return scratch.withMode("sub", S_IXUSR | S_IXOTH);
    };
    const auto config = [](PathScratch &scratch) {
        scratch.withMode(scratch.file("sub/config.json", "{}"), 0);
        return QByteArray("sub");
    };
    return {
        {"a file that nobody may read", unreadable, "Permission denied", {}, User::Nobody},
        {"in a folder that nobody may enter", below, "Permission denied", {}, User::Nobody},
        {"a folder that nobody may list",
         folder,
         "is a folder|Permission denied",
         {},
         User::Nobody},
        {"a folder whose list nobody may read",
         config,
         "is a folder|Permission denied",
         {},
         User::Nobody},
        {"an empty file",
         [](PathScratch &scratch) { return scratch.file("a" + scratch.ending(), QByteArray()); },
         "the file is empty|not a picture that can be read|file too short",
         {}}};
}

} // namespace

QVector<InputKind> inputKinds()
{
    return plainKinds() + trickyKinds() + kindsBesideOthers() + linkKinds() + specialKinds() +
           missingKinds() + closedKinds();
}
