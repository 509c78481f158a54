#pragma once

#include "framework/document.h"
#include "framework/page.h"
#include "tests/support/probe.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QPointer>
#include <QtCore/QRandomGenerator>

#include <stdexcept>

/// What does not hold after a step.
class Violation : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A user and a host with one page of 50 animated images: edits, undoes, redoes, plays, presents,
/// saves, loads, copies and deletes, in an order that its seed determines. No timer of Qt runs, so
/// that a run can be repeated.
class RandomUser
{
public:
    static constexpr int Objects = 50;
    static constexpr int MostFrames = 10;
    static constexpr int MostCommands = 60;

    /// The files that it imports are written to @p folder.
    RandomUser(quint32 seed, const QDir &folder);
    ~RandomUser();
    Q_DISABLE_COPY(RandomUser)

    /// Does one thing, and checks what must hold. @throw Violation
    void step();

    /// What it does, or has done last.
    const char *deed() const { return m_deed; }

    /// A digest of all that it has saved and exported, in order.
    QByteArray savedDigest() const { return m_saved.result().toHex(); }

private:
    using Deed = void (RandomUser::*)();
    struct Chance {
        int weight;
        const char *name;
        Deed deed;
    };

    // randomuser.cpp
    void writeFiles();
    Chance chosen();
    void check(CAnimatedImage &image);
    void fill(CAnimatedImage &image);
    CAnimatedImage *added();
    CAnimatedImage *replaced(CAnimatedImage *image);
    CAnimatedImage *someImage();
    int frameCount() const;
    int someIndex() { return below(frameCount() + 2) - 1; }
    int below(int bound) { return int(m_random.bounded(quint32(bound))); }
    bool byChance() { return below(2) == 0; }
    QString file();
    QImage picture();

    // deeds.cpp
    QByteArray streamForm();
    QJsonObject jsonForm();
    void editFrames();
    void insertFrame();
    void replaceAll();
    void changeType();
    void settings();
    void place();
    void undo();
    void redo();
    void play();
    void tick();
    void present();
    void look();
    void import();
    void saveStream();
    void saveJson();
    void copy();
    void remove();
    void exportCostumes();
    void saveDocumentFile();

    QRandomGenerator m_random;
    QDir m_folder;
    Document m_document;
    Page *m_page;
    QPointer<CAnimatedImage> m_image; ///< the one that a step is about
    const char *m_deed = "the start";
    qint64 m_steps = 0;
    QCryptographicHash m_saved;
};
