#include "tests/flipbook/pathscratch.h"

#include "flipbook/document/documentfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryFile>
#include <QtTest/QTest>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr uid_t nobodyId = 65534;

struct Contents {
    QByteArray document;
    QByteArray picture;
    QByteArray gif;
};

/// Files whose frames have @p size, or have these @p colours.
Contents contentsOf(const QSize &size, const QList<QColor> &colours)
{
    const DocumentFixture fixture;
    Contents contents;
    QImage picture = Pictures::solid(size.width(), size.height(), Qt::red);
    QBuffer buffer(&contents.picture);
    picture.save(&buffer, "PNG");
    const QString gif = fixture.path(QStringLiteral("film.gif"));
    GifBuilder(size.width(), size.height()).add(1, 10).add(2, 10).write(gif);
    contents.gif = bytesOf(gif);
    const QString document = fixture.path(QStringLiteral("doc.flipbook"));
    const auto made = fixture.document(colours);
    saveDocument(*made, document, MemoryAccount());
    contents.document = bytesOf(document);
    return contents;
}

const Contents &good()
{
    static const Contents contents = contentsOf(QSize(4, 3), {Qt::red, Qt::blue});
    return contents;
}

const Contents &secrets()
{
    static const Contents contents = contentsOf(QSize(77, 13), {Qt::green, Qt::black, Qt::white});
    return contents;
}

QByteArray bytesFor(Content content, const Contents &contents)
{
    switch (content) {
    case Content::Document:
        return contents.document;
    case Content::Picture:
        return contents.picture;
    case Content::Gif:
        return contents.gif;
    case Content::Library:
        break;
    }
    return "no library";
}

void require(bool isDone, const QByteArray &what)
{
    if (!isDone)
        qFatal("%s: %s", what.constData(), std::strerror(errno));
}

/// In memory where there is such a folder: each of thousands of small files is flushed.
QString templateOfFolders()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
           QStringLiteral("/paths-XXXXXX");
}

QByteArray described(const std::filesystem::directory_entry &entry)
{
    struct stat status = {};
    require(::lstat(entry.path().c_str(), &status) == 0, entry.path().c_str());
    QByteArray text = QByteArray::number(status.st_mode, 8) + ' ';
    if (S_ISDIR(status.st_mode))
        return text;
    text += QByteArray::number(quint64(status.st_ino)) + ' ' +
            QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' +
            QByteArray::number(qint64(status.st_mtim.tv_nsec)) + ' ';
    if (S_ISLNK(status.st_mode))
        return text + std::filesystem::read_symlink(entry.path()).c_str();
    if (!S_ISREG(status.st_mode))
        return text;
    QFile file;
    const int handle = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
    if (handle >= 0 && file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        text += QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5);
    return text;
}

} // namespace

WaitingWriter::WaitingWriter(const QByteArray &path)
    : m_path(path)
{
    require(::mkfifo(path.constData(), 0666) == 0, path);
    ::chmod(path.constData(), 0666);
    m_thread = std::thread([this] {
        const int handle = ::open(m_path.constData(), O_WRONLY | O_CLOEXEC);
        m_isOpened = true;
        if (handle >= 0)
            ::close(handle);
    });
}

WaitingWriter::~WaitingWriter()
{
    // One of the two sides opens first, and the other one then need not wait.
    while (!m_isOpened) {
        const int handle = ::open(m_path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        std::this_thread::yield();
        if (handle >= 0)
            ::close(handle);
    }
    m_thread.join();
}

PathScratch::PathScratch(Content content)
    : m_root(templateOfFolders())
    , m_folder(QFile::encodeName(m_root.path()) + "/files/")
    , m_temporary(QFile::encodeName(m_root.path()) + "/tmp/")
    , m_content(content)
{
    constexpr unsigned open = 0777;
    require(m_root.isValid(), "a temporary folder");
    ::chmod(QFile::encodeName(m_root.path()).constData(), open);
    makeFolder(QByteArray());
    makeFolder("../tmp");
    // Qt makes one where there is none.
    withMode(makeFolder("../tmp/run"), S_IRWXU);
    makeFolder("sub");
    file("doc.flipbook", good().document);
    file("red.png", good().picture);
    file("film.gif", good().gif);
    file("../secret.png", secrets().picture);
}

PathScratch::~PathScratch()
{
    // They wait at files that are removed then.
    m_writers.clear();
    // Qt could not remove it otherwise, since its name is not valid text.
    ::chmod(absolute("sub").constData(), S_IRWXU);
    std::error_code ignored;
    std::filesystem::remove_all(m_folder.toStdString(), ignored);
}

QByteArray PathScratch::content() const
{
    return bytesFor(m_content, good());
}

QByteArray PathScratch::ending() const
{
    switch (m_content) {
    case Content::Document:
        return ".flipbook";
    case Content::Picture:
        return ".png";
    case Content::Gif:
        return ".gif";
    case Content::Library:
        break;
    }
    return ".so";
}

QByteArray PathScratch::absolute(const QByteArray &path) const
{
    return path.startsWith('/') ? path : m_folder + path;
}

QByteArray PathScratch::file(const QByteArray &path, const QByteArray &bytes) const
{
    const QByteArray place = absolute(path);
    const int handle = ::open(place.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    require(handle >= 0 && ::write(handle, bytes.constData(), std::size_t(bytes.size())) ==
                               ssize_t(bytes.size()),
            place);
    ::close(handle);
    ::chmod(place.constData(), 0666);
    return path;
}

QByteArray PathScratch::secret(const QByteArray &path) const
{
    return file(path, bytesFor(m_content, secrets()));
}

QByteArray PathScratch::link(const QByteArray &target, const QByteArray &path) const
{
    require(::symlink(target.constData(), absolute(path).constData()) == 0, path);
    return path;
}

QByteArray PathScratch::hardLink(const QByteArray &target, const QByteArray &path) const
{
    require(::link(absolute(target).constData(), absolute(path).constData()) == 0, path);
    return path;
}

QByteArray PathScratch::makeFolder(const QByteArray &path) const
{
    constexpr unsigned open = 0777;
    require(::mkdir(absolute(path).constData(), open) == 0, path);
    return withMode(path, open);
}

QByteArray PathScratch::pipe(const QByteArray &path)
{
    m_writers.push_back(std::make_unique<WaitingWriter>(absolute(path)));
    return path;
}

QByteArray PathScratch::socket(const QByteArray &path) const
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray place = absolute(path);
    require(std::size_t(place.size()) < sizeof address.sun_path, place);
    std::copy(place.begin(), place.end(), address.sun_path);
    const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    require(::bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0,
            place);
    ::close(handle);
    ::chmod(place.constData(), 0666);
    return path;
}

QByteArray PathScratch::withMode(const QByteArray &path, unsigned mode) const
{
    require(::chmod(absolute(path).constData(), mode) == 0, path);
    return path;
}

bool PathScratch::arePipesUntouched() const
{
    return std::all_of(m_writers.begin(), m_writers.end(),
                       [](const auto &writer) { return writer->stillWaits(); });
}

QMap<QByteArray, QByteArray> PathScratch::listing() const
{
    namespace fs = std::filesystem;
    QMap<QByteArray, QByteArray> listing;
    const fs::path root = QFile::encodeName(m_root.path()).toStdString();
    for (const auto &entry :
         fs::recursive_directory_iterator(root, fs::directory_options::skip_permission_denied))
        listing.insert(
            QByteArray::fromStdString(entry.path().lexically_relative(root / "files").string()),
            described(entry));
    return listing;
}

QList<QByteArray> PathScratch::changesSince(const QMap<QByteArray, QByteArray> &before) const
{
    const QMap<QByteArray, QByteArray> after = listing();
    QList<QByteArray> changes;
    for (auto entry = before.begin(); entry != before.end(); ++entry) {
        if (after.value(entry.key()) != entry.value())
            changes.append(entry.key());
    }
    for (auto entry = after.begin(); entry != after.end(); ++entry) {
        if (!before.contains(entry.key()))
            changes.append(entry.key());
    }
    return changes;
}

namespace
{

/// The end of the new process that is this one's child. Never returns.
[[noreturn]] void become(const PathScratch &scratch, char *const *arguments, char *const *variables,
                         User user, Input input, const int *outputs)
{
    ::dup2(outputs[0], STDOUT_FILENO);
    ::dup2(outputs[1], STDERR_FILENO);
    if (input == Input::AllClosed) {
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
    }
    if (input != Input::Nothing)
        ::close(STDIN_FILENO);
    else
        ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    bool isReady = ::chdir(scratch.folder().constData()) == 0;
    if (user == User::Nobody && ::geteuid() == 0)
        isReady = isReady && ::setgroups(0, nullptr) == 0 && ::setgid(nobodyId) == 0 &&
                  ::setuid(nobodyId) == 0;
    if (isReady)
        ::execve(FLIPBOOK_PROGRAM, arguments, variables);
    ::_exit(127);
}

/// The status with which @p process ends; -1 if it crashes or hangs.
int ended(pid_t process)
{
    constexpr useconds_t pauseUs = 500;
    int status = 0;
    QElapsedTimer waiting;
    waiting.start();
    while (::waitpid(process, &status, WNOHANG) == 0) {
        if (waiting.hasExpired(longestRunMs())) {
            ::kill(process, SIGKILL);
            ::waitpid(process, &status, 0);
            return -1;
        }
        ::usleep(pauseUs);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<char *> pointers(QList<QByteArray> &words)
{
    std::vector<char *> pointers;
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

PathRun runIn(const PathScratch &scratch, const QList<QByteArray> &arguments, User user,
              Input input)
{
    QList<QByteArray> words = arguments;
    words.prepend("flipbook");
    QList<QByteArray> variables{"TMPDIR=" + scratch.temporary(),
                                "XDG_RUNTIME_DIR=" + scratch.temporary() + "run", "LC_ALL=C.UTF-8",
                                "HOME=/", "PATH=/usr/bin:/bin"};
    for (const char *kept :
         {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "QT_ENABLE_REGEXP_JIT"})
        variables << QByteArray(kept) + '=' + qgetenv(kept);
    const std::vector<char *> argumentList = pointers(words);
    const std::vector<char *> variableList = pointers(variables);
    if (user == User::Nobody && ::geteuid() == 0)
        require(::chown((scratch.temporary() + "run").constData(), nobodyId, nobodyId) == 0, "run");
    QTemporaryFile out;
    QTemporaryFile err;
    require(out.open() && err.open(), "files for the output");
    const int outputs[] = {out.handle(), err.handle()};
    const pid_t process = ::fork();
    if (process == 0)
        become(scratch, argumentList.data(), variableList.data(), user, input, outputs);
    PathRun run;
    run.status = ended(process);
    run.out = bytesOf(out.fileName());
    run.err = bytesOf(err.fileName());
    return run;
}

bool canRunAs(User user)
{
    return runIn(PathScratch(Content::Picture), {"--version"}, user).status == 0;
}
