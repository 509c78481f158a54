#pragma once

#include "subject.h"

#include <QtCore/QTemporaryDir>

#include <functional>
#include <random>

/// Something that a host does to an object. All random choices are made already, so that it can be
/// done to two objects alike.
struct Step {
    QString name;
    std::function<void(Subject &)> apply;
};

/// A source of random steps.
class Steps
{
public:
    explicit Steps(unsigned seed);

    /// A step for an object of so many frames.
    Step next(int frameCount);
    int number(int low, int high); ///< both inclusive

private:
    Step playback();
    Step geometry();
    Step frameEdit();
    Step insertion();
    Step undoable();
    Step takingOver();
    Step newFrames();
    Step mode();

    bool chance(int percent) { return number(1, 100) <= percent; }
    qint32 index();
    QImage picture();
    QString pictureFile();
    QString folder();
    QString gif();

    std::mt19937 m_random;
    QTemporaryDir m_files;
    int m_frameCount = 0;
    int m_fileCount = 0;
    QImage m_lastPicture;
};
