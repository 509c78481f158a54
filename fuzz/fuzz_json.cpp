#include "fuzz/fuzzing.h"
#include "tests/support/stage.h"

#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

/// A frame folder with @p data as its config.json; the pictures that it may name are not there.
QString folder(const uint8_t *data, size_t size)
{
    const QString path = Fuzzing::folder().filePath(QStringLiteral("frames"));
    QDir().mkpath(path);
    Fuzzing::write(path + QStringLiteral("/config.json"), Fuzzing::bytes(data, size));
    return path;
}

} // namespace

/// Text that may be JSON: as a saved object, as a change in the settings panel, and as the
/// config.json of a frame folder.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text = Fuzzing::bytes(data, size);
    Stage stage;
    QJsonObject json = QJsonDocument::fromJson(text).object();
    Fuzzing::require(stage->loadJson(json), "loadJson() answered false");
    Fuzzing::use(*stage.image);
    stage->SetSettingJson(QString::fromUtf8(text), false, true);
    Fuzzing::use(*stage.image);

    Stage other;
    other->loadFromFile(folder(data, size));
    Fuzzing::use(*other.image);
    return 0;
}
