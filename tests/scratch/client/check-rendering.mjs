// check-rendering.mjs PACKAGE...
//
// Draws every costume of each package with the official renderer and compares the stage with the
// pictures in the package: what would be shifted in colour, too large for a texture or misplaced is
// noticed. Sprites are drawn unturned and at their full size. Status 77: no Chromium here.
import { openPackage } from './package-file.mjs';
import { decodePng } from './picture.mjs';
import { compareDrawn, drawCostumes } from './rendering-checks.mjs';
import { StageBrowser } from './stage-browser.mjs';

const paths = process.argv.slice(2);
if (paths.length === 0) {
    console.error('usage: check-rendering.mjs PACKAGE...');
    process.exit(2);
}

/** The sprites of a package file, each costume with its picture. */
async function spritesOf(path) {
    const { targets, entries } = await openPackage(path);
    return targets.filter(target => !target.isStage).map(sprite => ({
        ...sprite,
        costumes: sprite.costumes.map(costume => ({
            ...costume, picture: decodePng(entries.get(costume.md5ext))
        }))
    }));
}

const stage = await StageBrowser.open();
try {
    for (const path of paths) {
        const wanted = await spritesOf(path);
        const report = compareDrawn(await drawCostumes(stage, path, wanted), wanted);
        report.print(path);
        process.exitCode ||= report.passed ? 0 : 1;
    }
} catch (error) {
    console.error(`check-rendering: ${error.message}`);
    process.exitCode = 1;
} finally {
    await stage.close();
}
