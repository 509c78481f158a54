// Compares what the official renderer draws with the pictures that were exported.
import { comparePictures } from './picture.mjs';
import { Report } from './report.mjs';
import { pixelForPixel } from './stage-browser.mjs';
import { expectedStage, zoomFor } from './stage-composition.mjs';

/**
 * Loads a package and lets each costume of each sprite stand on the stage alone. `wanted` lists the
 * sprites: x, y, and costumes with their rotation centre and `picture`. Gives for each sprite the
 * list of { zoom, picture } drawn; throws when the client has other sprites.
 */
export async function drawCostumes(stage, path, wanted) {
    const sprites = await stage.load(path);
    const counts = list => JSON.stringify(list);
    if (counts(sprites.map(sprite => sprite.costumes)) !==
        counts(wanted.map(sprite => sprite.costumes.length))) {
        throw new Error(`${path}: the client has other sprites or costumes: ${counts(sprites)}`);
    }
    const drawn = [];
    for (const [index, sprite] of wanted.entries()) {
        await stage.showAlone(index);
        drawn.push([]);
        for (const [number, costume] of sprite.costumes.entries()) {
            const zoom = zoomFor(costume, sprite);
            const { width, height } = pixelForPixel;
            await stage.resize({ width: width * zoom, height: height * zoom });
            await stage.showCostume(index, number);
            drawn.at(-1).push({ zoom, picture: await stage.picture() });
        }
    }
    return drawn;
}

/**
 * Compares every pixel of what drawCostumes() gave with what is wanted; `tolerance` in levels of
 * 255. Gives a Report.
 */
export function compareDrawn(drawn, wanted, tolerance = 1) {
    const report = new Report();
    for (const [index, sprite] of wanted.entries()) {
        for (const [number, costume] of sprite.costumes.entries()) {
            const { zoom, picture } = drawn[index][number];
            const { worst, at } = comparePictures(picture, expectedStage(costume, sprite, zoom));
            const name = `${JSON.stringify(sprite.name)}, costume ${number}`;
            report.check(`${name} is drawn within ${worst} levels`, worst <= tolerance,
                `at ${at.join(', ')}; allowed are ${tolerance}`);
        }
    }
    return report;
}
