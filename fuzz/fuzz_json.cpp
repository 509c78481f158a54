#include "fuzz/fuzzing.h"
#include "tests/support/stage.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

/// Text that may be JSON: as a saved object, and as a change in the settings panel.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text = Fuzzing::bytes(data, size);
    Stage stage;
    QJsonObject json = QJsonDocument::fromJson(text).object();
    Fuzzing::require(stage->loadJson(json), "loadJson() answered false");
    Fuzzing::use(*stage.image);
    stage->SetSettingJson(QString::fromUtf8(text), false, true);
    Fuzzing::use(*stage.image);
    return 0;
}
