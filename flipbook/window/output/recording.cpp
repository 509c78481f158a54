#include "flipbook/window/output/recording.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/object/steppedplayback.h"
#include "framework/page.h"

#include <algorithm>
#include <cmath>

void recordPage(Document &document, Page &page, const QString &folder, double seconds,
                const std::function<void(int done, int all)> &progress)
{
    constexpr int digits = 5;
    const int all = std::max(1, int(std::floor(seconds * 1000.0 / SteppedPlayback::StepMs + 1e-9)));
    SteppedPlayback playback(document, page);
    for (int i = 0; i < all; ++i) {
        playback.advanceTo(qint64(i) * SteppedPlayback::StepMs);
        const QImage picture = page.rendered();
        if (picture.isNull())
            throw Failure{folder, QStringLiteral("the page is too large for pictures")};
        writePng(QStringLiteral("%1/frame-%2.png")
                     .arg(folder, QString::number(i + 1).rightJustified(digits, QLatin1Char('0'))),
                 picture);
        progress(i + 1, all);
    }
}
