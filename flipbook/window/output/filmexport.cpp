// The exports of an animation to one file.

#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/export/apngexport.h"
#include "flipbook/export/atlasfiles.h"
#include "flipbook/export/gif/gifexport.h"
#include "flipbook/export/outgoingfilm.h"
#include "flipbook/export/webpexport.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/output/exportcontroller.h"
#include "flipbook/window/progress.h"
#include "flipbook/window/replacing.h"
#include "flipbook/window/session.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QAction>
#include <QtWidgets/QMainWindow>

/// The forms in which one file holds an animation.
void ExportController::addFilmActions(ActionSet &actions)
{
    const auto add = [&](const char *id, const QString &text, const QString &toolTip,
                         const QString &suffix, const QVector<Way> &ways) {
        QAction *action =
            actions.add({QLatin1String(id), text, QStringLiteral("document-export"), {}, toolTip});
        const QString title = tr("Export animation");
        connect(action, &QAction::triggered, this,
                [this, title, suffix, ways] { chooseFile(title, suffix, ways); });
        m_needFilm << action;
    };
    add("export-gif", tr("Export &GIF…"), tr("The selected animation as a GIF"),
        QStringLiteral("gif"), waysOfGif());
    add("export-webp", tr("Export Web&P…"), tr("The selected animation as an animated WebP"),
        QStringLiteral("webp"), waysOfWebp());
    add("export-apng", tr("Export &animated PNG…"), tr("The selected animation as an animated PNG"),
        QStringLiteral("png"),
        {{tr("Animated PNG files (*.png)"), [this](const QString &path) { exportApng(path); }}});
    add("export-atlas", tr("Export sprite s&heet…"),
        tr("The frames of the selected animation packed on a sheet, with a JSON file that says "
           "where they are"),
        QStringLiteral("png"), waysOfAtlas());
}

QVector<ExportController::Way> ExportController::waysOfGif()
{
    return {{tr("GIF animations (*.gif)"), [this](const QString &path) { exportGif(path); }},
            {tr("GIF animations with dithered colours (*.gif)"),
             [this](const QString &path) { exportGif(path, Dithering::Diffused); }}};
}

QVector<ExportController::Way> ExportController::waysOfWebp()
{
    QVector<Way> ways = {{tr("WebP animations without loss (*.webp)"),
                          [this](const QString &path) { exportWebp(path); }}};
    for (const int quality : {90, 75, 50})
        ways.append({tr("WebP animations of quality %1 (*.webp)").arg(quality),
                     [this, quality](const QString &path) { exportWebp(path, quality); }});
    return ways;
}

QVector<ExportController::Way> ExportController::waysOfAtlas()
{
    return {{tr("PNG pictures (*.png)"), [this](const QString &path) { exportAtlas(path); }},
            {tr("PNG pictures with trimmed frames (*.png)"),
             [this](const QString &path) { exportAtlas(path, Trimming::Borders); }}};
}

void ExportController::exportFilm(const QString &path, const WriteFilm &write)
{
    CBaseObject *object = m_session.film();
    if (!object)
        return;
    run(path, [&](Progress &progress) {
        const MemoryAccount memory(MemoryBudget::Default);
        const OutgoingFilm film(m_session.plugin(), *object, {}, {}, path);
        const WrittenFilm written = write(film, memory, [&](int done, int all) {
            progress.step(tr("Writing frame %1 of %2")
                              .arg(int(qint64(done) * film.count() / all))
                              .arg(film.count()),
                          done, all);
        });
        writeFile(path, written.bytes);
        return written.remarks;
    });
}

void ExportController::exportGif(const QString &path, Dithering dithering)
{
    exportFilm(path, [&path, dithering](const OutgoingFilm &film, const MemoryAccount &memory,
                                        const FilmProgress &progress) {
        return gifOf(film, dithering, memory, path, progress);
    });
}

void ExportController::exportWebp(const QString &path, std::optional<double> quality)
{
    exportFilm(path, [&path, quality](const OutgoingFilm &film, const MemoryAccount &memory,
                                      const FilmProgress &progress) {
        return webpOf(film, quality, memory, path, progress);
    });
}

void ExportController::exportApng(const QString &path)
{
    exportFilm(path, [&path](const OutgoingFilm &film, const MemoryAccount &memory,
                             const FilmProgress &progress) {
        return apngOf(film, memory, path, progress);
    });
}

void ExportController::exportAtlas(const QString &path, Trimming trimming)
{
    CBaseObject *object = m_session.film();
    if (!object)
        return;
    const QFileInfo sheet(path);
    const AtlasFiles files{
        path, QStringLiteral("%1/%2.json").arg(sheet.path(), sheet.completeBaseName())};
    if (!mayReplace(m_window, files.description))
        return;
    run(path, [&](Progress &progress) {
        const MemoryAccount memory(MemoryBudget::Default);
        const OutgoingFilm film(m_session.plugin(), *object, {}, {}, path);
        const Atlas atlas = atlasOf(film, trimming, memory, path, [&](int done, int all) {
            progress.step(
                tr("Writing frame %1 of %2").arg(done * film.count() / all).arg(film.count()), done,
                all);
        });
        files.write(atlas, film);
        return QStringList();
    });
}
