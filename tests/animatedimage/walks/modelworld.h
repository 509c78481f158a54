#pragma once

#include "tests/animatedimage/walks/modelobject.h"
#include "tests/animatedimage/walks/savedform.h"
#include "tests/animatedimage/walks/step.h"

#include <array>

/// What a step is expected to give back.
struct Outcome {
    bool result = true;
    QString text;
    ModelAnswer answer;
    SavedForm form;          ///< of a copy: what is written
    QStringList missingKeys; ///< of a copy by JSON: members that reading adds as null
};

/// Two animated images and what is around them, in plain values.
class ModelWorld
{
public:
    explicit ModelWorld(Mistake mistake = Mistake::None);
    ModelWorld(const ModelWorld &other) { *this = other; }
    ModelWorld &operator=(const ModelWorld &other);

    /// Does a step; the events of the host are those of this step.
    Outcome apply(const Step &step);

    /// Whether all sizes are such that painting and tiles take little time.
    bool isHandy() const;

    ModelHost host;
    std::array<ModelObject, 2> objects;

private:
    Outcome applyPlayback(const Step &step, ModelObject &object);
    Outcome applyGeometry(const Step &step, ModelObject &object);
    Outcome applyContent(const Step &step, ModelObject &object);
    Outcome applyRequest(const Step &step, ModelObject &object);
    Outcome applyToHost(const Step &step, ModelObject &object);

    void undo();
    void redo();
    void apply(ModelEdit &edit, bool redo);
    void pushChange(const Step &step, const ModelObject &object);
    void sendAttributes(int page, int id);
    Outcome copy(const Step &step);
    void readBack(const Step &step, SavedForm &form, QStringList &missingKeys) const;
    void replace(int slot, bool dropCommands);
    ModelObject *withSerial(int serial);

    int m_nextSerial = 1;
};
