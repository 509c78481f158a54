#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/object/plugin.h"
#include "framework/page.h"
#include "fuzz/fuzzing.h"

/// A document file: it is read whole or refused, and what was read can be painted.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Plugin plugin;
    const QString path = Fuzzing::file(data, size, QStringLiteral(".flipbook"));
    try {
        Reading reading(Fuzzing::MaxMemory, false);
        const LoadedDocument loaded = loadDocument(plugin, path, reading);
        Fuzzing::require(loaded.document != nullptr, "neither a document nor a failure");
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
