// check-page.mjs [--tolerance N] [--mean N] PACKAGE PAGE.png [PACKAGE PAGE.png]...
//
// Draws the stage of each package with the official renderer, as large as the picture of its page,
// and compares every pixel. --tolerance allows differences in levels of 255, --mean such a mean over
// all pixels of a channel (default: both 0). However rough edges are drawn, the page must not fit
// better when it is moved by a pixel. Status 77: there is no Chromium here.
import { parseArgs } from 'node:util';
import { comparePictures, readPicture } from './picture.mjs';
import { Report } from './report.mjs';
import { StageBrowser } from './stage-browser.mjs';

const { values, positionals } = parseArgs({
    allowPositionals: true,
    options: {
        tolerance: { type: 'string', default: '0' }, mean: { type: 'string', default: '0' }
    }
});
const [tolerance, allowedMean] = [Number(values.tolerance), Number(values.mean)];
if (positionals.length === 0 || positionals.length % 2 !== 0 ||
    !(tolerance >= 0) || !(allowedMean >= 0)) {
    console.error('usage: check-page.mjs [--tolerance N] [--mean N] PACKAGE PAGE.png [...]');
    process.exit(2);
}

/** The picture with everything moved; white comes in. */
function moved({ width, height, data }, right, down) {
    const result = { width, height, data: Buffer.alloc(data.length, 255) };
    const columns = width - Math.abs(right);
    for (let y = Math.max(0, -down); y < Math.min(height, height - down); ++y) {
        const from = (y * width + Math.max(0, -right)) * 4;
        const to = ((y + down) * width + Math.max(0, right)) * 4;
        data.copy(result.data, to, from, from + columns * 4);
    }
    return result;
}

function meanDifference(a, b) {
    return comparePictures(a, b).mean.reduce((sum, mean) => sum + mean, 0);
}

function compare(report, stage, page) {
    const { largest, mean, worst, at } = comparePictures(stage, page);
    const figures = `largest difference ${largest.slice(0, 3).join(', ')}, ` +
        `mean ${mean.slice(0, 3).map(level => level.toFixed(3)).join(', ')}`;
    report.check(figures, worst <= tolerance && Math.max(...mean) <= allowedMean,
        `worst at ${at.join(', ')}; allowed are ${tolerance}, in the mean ${allowedMean}`);
    const here = meanDifference(stage, page);
    for (const [right, down] of [[1, 0], [-1, 0], [0, 1], [0, -1]]) {
        report.check(`not nearer when moved by ${right}, ${down}`,
            here < meanDifference(stage, moved(page, right, down)), 'the page is out of place');
    }
}

const stage = await StageBrowser.open();
try {
    for (let index = 0; index < positionals.length; index += 2) {
        const [path, picturePath] = positionals.slice(index, index + 2);
        const page = await readPicture(picturePath);
        await stage.resize(page);
        await stage.load(path);
        const report = new Report();
        compare(report, await stage.picture(), page);
        report.print(path);
        process.exitCode ||= report.passed ? 0 : 1;
    }
} catch (error) {
    console.error(`check-page: ${error.message}`);
    process.exitCode = 1;
} finally {
    await stage.close();
}
