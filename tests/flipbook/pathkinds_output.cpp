#include "tests/flipbook/pathkinds.h"

#include <sys/stat.h>

namespace
{

using Make = std::function<QByteArray(PathScratch &, const QByteArray &, const QByteArray &)>;

const char isInput[] = "is an input; it is not overwritten";

Make named(const QByteArray &stem)
{
    return [stem](PathScratch & /*scratch*/, const QByteArray &ending,
                  const QByteArray & /*input*/) { return stem + ending; };
}

Make link(const QByteArray &target)
{
    return [target](PathScratch &scratch, const QByteArray &ending, const QByteArray & /*input*/) {
        return scratch.link(target, "link" + ending);
    };
}

QByteArray longest(const QByteArray &ending)
{
    return QByteArray(255 - ending.size(), 'n') + ending;
}

QVector<OutputKind> names()
{
    const auto longName = [](PathScratch &, const QByteArray &ending, const QByteArray &) {
        return longest(ending);
    };
    const auto fromRoot = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.absolute("out" + ending);
    };
    return {
        {"a plain name", named("out"), {}, {}},
        {"from the root", fromRoot, {}, "out*"},
        {"with ./", named("./out"), {}, "out*"},
        {"with // and /./", named("sub//./out"), {}, "sub/out*"},
        {"through ..", named("sub/../out"), {}, "out*"},
        {"through the process", named("/proc/self/cwd/out"), {}, "out*"},
        {"spaces", named(" a  b "), {}, {}},
        {"a line feed", named("a\nb"), {}, {}},
        {"control characters", named("a\tb\x1b[31m\x7f"), {}, {}},
        {"quotes", named("it's \"so\" `now`"), {}, {}},
        {"backslashes", named("a\\b\\\\n\\0"), {}, {}},
        {"what looks like a place in a text", named("%1%2%s%n"), {}, {}},
        {"wildcards", named("*[a]?"), {}, {}},
        {"what a shell would expand", named("~$HOME{a,b}!"), {}, {}},
        {"a dash after ./", named("./-o"), {}, "-o*"},
        {"a colon at the beginning", named(":icons"), {}, {}},
        {"a name like an address", named("qrc:x"), {}, {}},
        {"other letters", named("f\xc3\xa4hre-\xe5\x8a\xa8\xe7\x94\xbb-\xf0\x9f\x8e\x9e"), {}, {}},
        {"a hidden name", named("sub/.out"), {}, "sub/.out*"},
        {"255 bytes", longName, {}, {}},
        {"4,000 bytes", named(QByteArray("./").repeated(1990) + "out"), {}, "out*"},
    };
}

QVector<OutputKind> waysThroughLinks()
{
    const auto upwards = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        scratch.makeFolder("sub/deep");
        return scratch.link("sub/deep", "way") + "/../out" + ending;
    };
    const auto throughLink = [](PathScratch &scratch, const QByteArray &ending,
                                const QByteArray &) {
        return scratch.link("sub", "way") + "/out" + ending;
    };
    return {
        {"a link to its folder", throughLink, {}, "sub/out*"},
        {"up from a link to a folder", upwards, {}, "sub/out*"},
    };
}

QVector<OutputKind> refusedKinds()
{
    const auto tooLong = [](PathScratch &, const QByteArray &ending, const QByteArray &) {
        return 'n' + longest(ending);
    };
    const auto closedFolder = [](PathScratch &scratch, const QByteArray &ending,
                                 const QByteArray &) {
        return scratch.withMode("sub", S_IRUSR | S_IXUSR | S_IROTH | S_IXOTH) + "/out" + ending;
    };
    return {
        {"256 bytes", tooLong, "File name too long|its folder does not exist", {}},
        {"5,000 bytes",
         named(QByteArray("./").repeated(2500) + "out"),
         "File name too long|its folder does not exist",
         {}},
        {"no text", named("out\xff"), "is not valid UTF-8", {}},
        {"in a missing folder", named("nothing/out"), "its folder does not exist", {}},
        {"below a file", named("red.png/out"), "its folder does not exist", {}},
        {"back from a file", named("red.png/../out"), "its folder does not exist", {}},
        {"an address of a file", named("file:///out"), "its folder does not exist", {}},
        {"a file of the program", named(":/icons/out"), "its folder does not exist", {}},
        {"in a folder of the system", named("/proc/out"), "cannot be", {}},
        {"links in a loop",
         [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
             scratch.link("b" + ending, "a" + ending);
             return scratch.link("a" + ending, "b" + ending);
         },
         "Too many levels of symbolic links|is a link that leads to nothing",
         {}},
        {"a link to a missing folder",
         link("nothing/out"),
         "No such file or directory|is a link that leads to nothing",
         {}},
        {"a folder that nobody may write to", closedFolder, "Permission denied", {}, User::Nobody},
    };
}

/// For files and for folders.
QVector<OutputKind> commonKinds()
{
    return names() + waysThroughLinks() + refusedKinds();
}

QVector<OutputKind> thingsThatAreThere()
{
    const auto existing = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.file("out" + ending, "old");
    };
    const auto linkToFile = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.link(scratch.file("sub/old", "old"), "link" + ending);
    };
    const auto folder = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.makeFolder("out" + ending);
    };
    const auto closedFile = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.withMode(scratch.file("out" + ending, "old"), S_IRUSR | S_IROTH);
    };
    return {
        {"a file that is there", existing, {}, {}},
        {"a link to a file", linkToFile, {}, "sub/old"},
        {"a link to nothing yet", link("sub/new"), {}, "sub/new"},
        {"a folder", folder, "is a folder", {}},
        {"a link to a folder", link("sub"), "is a folder", {}},
        {"a file that nobody may write", closedFile, "Permission denied", {}, User::Nobody},
    };
}

QVector<OutputKind> wrongUsage()
{
    return {
        {"a folder with /",
         [](PathScratch &, const QByteArray &, const QByteArray &) { return QByteArray("sub/"); },
         "does not end in",
         {}},
        {"a name without ending",
         [](PathScratch &, const QByteArray &, const QByteArray &) { return QByteArray("out"); },
         "does not end in",
         {}},
        {"standard output",
         [](PathScratch &, const QByteArray &, const QByteArray &) { return QByteArray("-"); },
         "does not end in",
         {}},
        {"a device",
         [](PathScratch &, const QByteArray &, const QByteArray &) {
             return QByteArray("/dev/full");
         },
         "does not end in",
         {}},
        {"no name",
         [](PathScratch &, const QByteArray &, const QByteArray &) { return QByteArray(); },
         "needs a value|a file is missing",
         {}},
    };
}

QVector<OutputKind> specialFiles()
{
    const auto pipe = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.pipe("out" + ending);
    };
    const auto linkToPipe = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.link(scratch.pipe("p"), "out" + ending);
    };
    const auto socket = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &) {
        return scratch.socket("out" + ending);
    };
    return {
        {"a pipe", pipe, "is not a regular file", {}},
        {"a link to a pipe", linkToPipe, "is not a regular file", {}},
        {"a socket", socket, "is not a regular file", {}},
        {"a link to /dev/null", link("/dev/null"), "is not a regular file", {}},
        {"a link to /dev/full", link("/dev/full"), "is not a regular file", {}},
    };
}

QVector<OutputKind> waysToTheInput()
{
    const auto input = [](PathScratch &scratch, const QByteArray &ending, const QByteArray &input) {
        return scratch.link(input, "link" + ending);
    };
    const auto inputFromRoot = [](PathScratch &scratch, const QByteArray &ending,
                                  const QByteArray &input) {
        return scratch.link(scratch.absolute(input), "link" + ending);
    };
    const auto inputThroughTwo = [](PathScratch &scratch, const QByteArray &ending,
                                    const QByteArray &input) {
        scratch.link("../" + input, "sub/one");
        return scratch.link("sub/../sub/one", "two" + ending);
    };
    const auto hardLink = [](PathScratch &scratch, const QByteArray &ending,
                             const QByteArray &input) {
        return scratch.hardLink(input, "sub/hard" + ending);
    };
    return {
        {"a link to the input", input, isInput, {}},
        {"a link to the input from the root", inputFromRoot, isInput, {}},
        {"two links to the input", inputThroughTwo, isInput, {}},
        {"a hard link to the input", hardLink, isInput, {}},
    };
}

} // namespace

QVector<OutputKind> fileOutputKinds()
{
    return commonKinds() + thingsThatAreThere() + wrongUsage() + specialFiles() + waysToTheInput();
}

QVector<OutputKind> folderOutputKinds()
{
    const auto empty = [](PathScratch &scratch, const QByteArray &, const QByteArray &) {
        return scratch.makeFolder("out");
    };
    const auto full = [](PathScratch &scratch, const QByteArray &, const QByteArray &) {
        scratch.file("sub/old", "old");
        return QByteArray("sub");
    };
    const auto hidden = [](PathScratch &scratch, const QByteArray &, const QByteArray &) {
        scratch.file("sub/.old", "old");
        return QByteArray("sub");
    };
    const auto pipe = [](PathScratch &scratch, const QByteArray &, const QByteArray &) {
        return scratch.pipe("out");
    };
    const auto socket = [](PathScratch &scratch, const QByteArray &, const QByteArray &) {
        return scratch.socket("out");
    };
    const auto input = [](PathScratch &, const QByteArray &, const QByteArray &input) {
        return input;
    };
    return commonKinds() +
           QVector<OutputKind>{
               {"a new folder with /", named("out/"), {}, "out"},
               {"an empty folder", empty, {}, {}},
               {"a link to an empty folder", link("sub"), {}, "sub"},
               {"a folder with a file", full, "is a folder that is not empty", {}},
               {"a folder with a hidden file", hidden, "is a folder that is not empty", {}},
               {"the folder of the input", named("."), "is a folder that is not empty", {}},
               {"above it", named(".."), "is a folder that is not empty", {}},
               {"the root", named("/"), "is a folder that is not empty", {}},
               {"a link to nothing yet", link("new"), "is a link that leads to nothing", {}},
               {"a pipe", pipe, "is not a folder", {}},
               {"a socket", socket, "is not a folder", {}},
               {"/dev/null", named("/dev/null"), "is not a folder", {}},
               {"the input", input, "is not a folder", {}},
               {"no name", named(""), "needs a value", {}},
           };
}
