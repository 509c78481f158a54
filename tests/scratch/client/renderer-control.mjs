// renderer-control.mjs
//
// Proves that the official renderer runs here and shows pictures pixel for pixel: the costumes of a
// good package are drawn as they are, and what differs by little is noticed. Status 77: there is no
// Chromium here.
import { mkdtemp, rm, writeFile } from 'node:fs/promises';
import os from 'node:os';
import path from 'node:path';
import { goodParts, samplePictures } from './make-package.mjs';
import { pack } from './package-parts.mjs';
import { drawPicture, encodePng } from './picture.mjs';
import { compareDrawn, drawCostumes } from './rendering-checks.mjs';
import { replacePicture, withGamma } from './spoiled-pictures.mjs';
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

// [what is wanted otherwise than the package has it, how]
const unwanted = [
    ['a place one unit beside', sprites => { sprites[0].x += 1; }],
    ['a rotation centre one pixel beside',
        ([{ costumes: [costume] }]) => { costume.rotationCenterY += 1; }],
    ['one pixel three levels off', ([{ costumes: [{ picture }] }]) => { picture.data[0] += 3; }],
    ['one transparent pixel of another opacity',
        ([{ costumes: [{ picture }] }]) => { picture.data[(5 * picture.width + 20) * 4 + 3] += 9; }],
    ['red and blue exchanged', ([{ costumes: [{ picture }] }]) => {
        picture.data = drawPicture(picture.width, picture.height, (x, y) => {
            const at = (y * picture.width + x) * 4;
            const [red, green, blue, opacity] = picture.data.subarray(at, at + 4);
            return [blue, green, red, opacity];
        }).data;
    }],
    ['costumes in another order', ([{ costumes }]) => { costumes.reverse(); }]
];

// [what is spoiled in the package, how]: such pictures arrive, but the client draws them otherwise.
const spoiledPackages = [
    ['a gamma chunk', parts => {
        const { md5ext } = parts.sprites[0].costumes[0];
        replacePicture(parts, withGamma(parts.files.get(md5ext)));
    }],
    ['a picture larger than a texture', parts => {
        const picture = drawPicture(8193, 30, () => [200, 100, 50, 255]);
        replacePicture(parts, encodePng(picture));
        Object.assign(parts.sprites[0].costumes[0], { rotationCenterX: 20, rotationCenterY: 15 });
        return picture;
    }]
];

let allWell = true;
function tell(what, noticed) {
    console.log(`${noticed ? 'ok   ' : 'FAIL '} ${what} is noticed`);
    allWell &&= noticed;
}

async function checkGood(stage, file, parts) {
    await writeFile(file, await pack(parts));
    const drawn = await drawCostumes(stage, file, wanted(parts));
    const good = compareDrawn(drawn, wanted(parts));
    good.print(path.basename(file));
    allWell &&= good.passed;
    for (const [what, spoil] of unwanted) {
        const spoiled = wanted(parts);
        spoil(spoiled);
        tell(what, !compareDrawn(drawn, spoiled).passed);
    }
}

async function checkSpoiled(stage, file) {
    for (const [what, spoil] of spoiledPackages) {
        const parts = goodParts(true);
        const picture = spoil(parts);
        await writeFile(file, await pack(parts));
        const sprites = wanted(parts);
        sprites[0].costumes[0].picture = picture ?? sprites[0].costumes[0].picture;
        tell(what, !compareDrawn(await drawCostumes(stage, file, sprites), sprites).passed);
    }
}

const stage = await StageBrowser.open();
const folder = await mkdtemp(path.join(os.tmpdir(), 'renderer-control-'));
try {
    await checkGood(stage, path.join(folder, 'good.sprite3'), goodParts(true));
    await checkGood(stage, path.join(folder, 'good.sb3'), goodParts(false));
    await checkSpoiled(stage, path.join(folder, 'spoiled.sprite3'));
    process.exitCode = allWell ? 0 : 1;
} catch (error) {
    console.error(`renderer-control: ${error.message}`);
    process.exitCode = 1;
} finally {
    await stage.close();
    await rm(folder, { recursive: true });
}
