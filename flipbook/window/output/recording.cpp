#include "flipbook/window/output/recording.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/object/steppedplayback.h"
#include "framework/page.h"

#include <algorithm>
#include <cmath>

void recordPage(Document &document, Page &page, OutputFolder &folder, double seconds,
                const std::function<void(int done, int all)> &progress)
{
    constexpr int digits = 5;
    const int all = std::max(1, int(std::floor(seconds * 1000.0 / SteppedPlayback::StepMs + 1e-9)));
    SteppedPlayback playback(document, page);
    for (int i = 0; i < all; ++i) {
        playback.advanceTo(qint64(i) * SteppedPlayback::StepMs);
        const QImage picture = page.rendered();
        if (picture.isNull())
            throw Failure{folder.path(), QStringLiteral("the page is too large for pictures")};
        const QString name =
            QStringLiteral("frame-%1.png")
                .arg(QString::number(i + 1).rightJustified(digits, QLatin1Char('0')));
        folder.write(name, pngOf(picture, folder.path() + QLatin1Char('/') + name));
        progress(i + 1, all);
    }
}
