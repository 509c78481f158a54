#include "tests/animatedimage/walks/modelhost.h"

void ModelHost::addToPage(int serial, int page)
{
    if (layerOf(serial, page) != NoPage)
        return;
    removeFromPages(serial);
    layers[page][0].append(serial);
}

void ModelHost::removeFromPages(int serial)
{
    for (auto &page : layers) {
        for (QList<int> &layer : page)
            layer.removeAll(serial);
    }
}

int ModelHost::layerOf(int serial, int page) const
{
    for (int layer = 0; layer < Layers; ++layer) {
        if (layers[page][layer].contains(serial))
            return layer;
    }
    return NoPage;
}

QList<int> ModelHost::objectsOf(int page) const
{
    return layers[page][1] + layers[page][0];
}

/// Puts an object on top of the new layer, or back to its place in the old one. One that has left
/// the page stays where it is.
void ModelHost::move(ModelEdit &edit, bool redo)
{
    const int layer = layerOf(edit.serial, edit.page);
    if (layer == NoPage)
        return;
    if (redo) {
        edit.before = layer;
        edit.placeBefore = layers[edit.page][layer].indexOf(edit.serial);
    }
    removeFromPages(edit.serial);
    QList<int> &target = layers[edit.page][redo ? edit.after : edit.before];
    target.insert(redo ? target.size() : qMin(edit.placeBefore, target.size()), edit.serial);
}
