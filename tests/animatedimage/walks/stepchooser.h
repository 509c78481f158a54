#pragma once

#include "tests/animatedimage/walks/modelworld.h"

#include <QtCore/QRandomGenerator>

/// Chooses the steps of a walk by chance, and so that they mean something to the objects as the
/// model has them.
class StepChooser
{
public:
    explicit StepChooser(quint32 seed)
        : m_random(seed)
    {
    }

    /// The steps with which a walk begins: frames for both objects, and a type.
    QVector<Step> beginning();
    Step next(const ModelWorld &world);
    /// Sometimes: back to the beginning of the undo stack and forward again.
    QVector<Step> ending(const ModelWorld &world);

    /// True @p times out of @p of.
    bool chance(int times, int of) { return number(1, of) <= times; }
    /// From @p low to @p high, both inclusive.
    int number(int low, int high) { return m_random.bounded(high - low + 1) + low; }

private:
    template<typename Value>
    Value oneOf(std::initializer_list<Value> values)
    {
        return values.begin()[number(0, int(values.size()) - 1)];
    }
    template<typename List>
    auto oneOf(const List &list)
    {
        return list.at(number(0, list.size() - 1));
    }

    int picture();
    int frameIndex(const ModelObject &object);
    int anyIndex(const ModelObject &object);
    double length(double low, double high);
    QSizeF size();
    QPointF place();
    double angle();
    QString name(const ModelObject &object);
    int kind();

    void choosePlayback(Step &step, const ModelObject &object);
    void chooseGeometry(Step &step, const ModelObject &object);
    void chooseGeometryOfHost(Step &step);
    void chooseContent(Step &step, const ModelObject &object);
    void chooseRequest(Step &step, const ModelObject &object);
    void chooseSet(Step &step, const ModelObject &object);
    void chooseGet(Step &step, const ModelObject &object);
    void chooseAttribute(Step &step);
    void chooseUndo(Step &step, const ModelWorld &world);
    void chooseMode(Step &step, const ModelWorld &world);
    void chooseCopy(Step &step, const ModelWorld &world);
    void chooseSettings(Step &step);
    void disturb(Step &step);
    int missingBytes(const ModelObject &object, bool hasPictures);

    QRandomGenerator m_random;
};
