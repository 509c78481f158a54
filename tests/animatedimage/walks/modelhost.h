#pragma once

#include "tests/animatedimage/walks/modelframe.h"

#include <QtCore/QRectF>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// The document that an object last belonged to.
enum class DocumentOf { Nobody, FirstPage, SecondPage, Framework };

/// An error made on purpose in the model, to see that the comparison notices it.
enum class Mistake {
    None,
    StopKeepsTheFrame,
    TickTellsNothing,
    LastPassEndsOnTheFirstFrame,
    CropForgetsTheTop,
    FlipMovesSideways,
    ScaleForgetsTheOldHeight,
    UndoKeepsTheIndex,
    NamesBeginAtTwo,
    LoadingKeepsItRunning,
    AnswerLacksTheIndex,
    SavedSizesAreForgotten,
    TileIsOneUnitWide,
};

/// One change that a step of the undo stack holds, of one object.
struct ModelEdit {
    enum Kind { Frames, Type, Layer, Interval, KeepRatio, LoopCount, Nothing };

    Kind kind = Nothing;
    int serial = 0; ///< whose
    QList<ModelFrame> framesBefore;
    QList<ModelFrame> framesAfter;
    int before = 0;
    int after = 0;
    int page = 0;        ///< on which the layer changes
    int placeBefore = 0; ///< among the objects of the old layer
};

/// One step of the undo stack: the edits of a macro, or one.
struct ModelCommand {
    QString text;
    QVector<ModelEdit> edits;
};

/// What the objects of a walk have around them, in plain values.
struct ModelHost {
    static constexpr int NoPage = -1;
    static constexpr int Pages = 2;
    static constexpr int Layers = 2; ///< the normal one, then the background

    int modes[Pages] = {0, 0}; ///< of the document of each page
    double handleSize = 8.0;
    QList<int> layers[Pages][Layers]; ///< objects by serial, from bottom to top

    QVector<ModelCommand> commands;
    int doneCommands = 0;
    bool isMacroOpen = false;

    QStringList events; ///< what was heard during this step
    Mistake mistake = Mistake::None;

    /// The rectangle of a page; the second begins away from (0, 0).
    static QRectF pageRect(int page)
    {
        return page == 0 ? QRectF(0.0, 0.0, 30.0, 20.0) : QRectF(-5.0, 4.5, 24.0, 40.0);
    }

    bool isAlternate(DocumentOf document) const
    {
        return (document == DocumentOf::FirstPage && modes[0] != 0) ||
               (document == DocumentOf::SecondPage && modes[1] != 0);
    }

    bool makes(Mistake which) const { return mistake == which; }

    // Pages, modelpages.cpp. An object on a page already stays where it is.
    void addToPage(int serial, int page);
    void removeFromPages(int serial);
    int layerOf(int serial, int page) const; ///< NoPage for none
    QList<int> objectsOf(int page) const;    ///< from bottom to top
    void move(ModelEdit &edit, bool redo);

    // The undo stack, modelundo.cpp: what was undone is forgotten with the next push.
    void push(const ModelEdit &edit, const QString &text);
    void openMacro(const QString &text);
    void closeMacro();
    void dropCommands();
};
