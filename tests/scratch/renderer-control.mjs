// renderer-control.mjs
//
// Proves that the official renderer runs here and shows pictures pixel for pixel: the costumes of a
// good package are drawn as they are, and what differs by little is noticed. Status 77: no Chromium.
import { mkdtemp, rm, writeFile } from 'node:fs/promises';
import os from 'node:os';
import path from 'node:path';
import { goodParts, samplePictures } from './make-package.mjs';
import { pack } from './package-parts.mjs';
import { drawPicture } from './picture.mjs';
import { compareDrawn, drawCostumes } from './rendering-checks.mjs';
import { StageBrowser } from './stage-browser.mjs';

/** What the good package should look like, with pictures of its own to be spoiled. */
function wanted({ sprites }) {
    return sprites.map(({ name, x, y, costumes }) => ({
        name, x, y,
        costumes: costumes.map(({ rotationCenterX, rotationCenterY }, index) => ({
            rotationCenterX, rotationCenterY, picture: samplePictures()[index]
        }))
    }));
}

// [what is spoiled, how]: the package goes one way, what is wanted the other.
const controls = [
    ['a place one unit beside', sprites => { sprites[0].x += 1; }],
    ['a rotation centre one pixel beside', sprites => { sprites[0].costumes[0].rotationCenterY += 1; }],
    ['one pixel three levels off', ([{ costumes: [{ picture }] }]) => { picture.data[0] += 3; }],
    ['one transparent pixel of another opacity',
        ([{ costumes: [{ picture: { data, width } }] }]) => { data[(5 * width + 20) * 4 + 3] += 9; }],
    ['red and blue exchanged', ([{ costumes: [{ picture }] }]) => {
        picture.data = drawPicture(picture.width, picture.height, (x, y) => {
            const at = (y * picture.width + x) * 4;
            const [red, green, blue, opacity] = picture.data.subarray(at, at + 4);
            return [blue, green, red, opacity];
        }).data;
    }],
    ['costumes in another order', ([{ costumes }]) => { costumes.reverse(); }]
];

const stage = await StageBrowser.open();
const folder = await mkdtemp(path.join(os.tmpdir(), 'renderer-control-'));
try {
    for (const isSprite of [true, false]) {
        const parts = goodParts(isSprite);
        const file = path.join(folder, isSprite ? 'good.sprite3' : 'good.sb3');
        await writeFile(file, await pack(parts));
        const drawn = await drawCostumes(stage, file, wanted(parts));
        const good = compareDrawn(drawn, wanted(parts));
        good.print(path.basename(file));
        process.exitCode ||= good.passed ? 0 : 1;
        for (const [what, spoil] of controls) {
            const spoiled = wanted(parts);
            spoil(spoiled);
            const noticed = !compareDrawn(drawn, spoiled).passed;
            console.log(`${noticed ? 'ok   ' : 'FAIL '} ${what} is noticed`);
            process.exitCode ||= noticed ? 0 : 1;
        }
    }
} catch (error) {
    console.error(`renderer-control: ${error.message}`);
    process.exitCode = 1;
} finally {
    await stage.close();
    await rm(folder, { recursive: true });
}
