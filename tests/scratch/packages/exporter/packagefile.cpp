#include "tests/scratch/packages/exporter/packagefile.h"

#include "flipbook/base/failure.h"

#include <KZip>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

PackageFile readPackage(const QString &path)
{
    KZip zip(path);
    if (!zip.open(QIODevice::ReadOnly))
        throw Failure{path, QStringLiteral("is no package")};
    PackageFile package;
    const QStringList names = zip.directory()->entries();
    for (const QString &name : names)
        package.files.insert(name, zip.directory()->file(name)->data());

    const QByteArray sprite = package.files.value(QStringLiteral("sprite.json"));
    if (!sprite.isEmpty()) {
        package.sprites.append(QJsonDocument::fromJson(sprite).object());
        return package;
    }
    const QByteArray project = package.files.value(QStringLiteral("project.json"));
    const QJsonArray targets =
        QJsonDocument::fromJson(project).object().value(QLatin1String("targets")).toArray();
    for (const QJsonValue &target : targets) {
        if (!target.toObject().value(QLatin1String("isStage")).toBool())
            package.sprites.append(target);
    }
    return package;
}
