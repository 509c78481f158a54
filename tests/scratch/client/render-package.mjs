// render-package.mjs [--size WxH] [--costume SPRITE:INDEX | --each] PACKAGE OUT.png [...]
//
// Draws each package with the official renderer and writes the stage as a PNG. --costume lets one
// sprite (by name) show one of its costumes (from 0). --each draws every costume of every sprite by
// itself, unturned and at full size, and writes OUT-001.png, OUT-002.png and so on. Status 77: there
// is no Chromium here.
import { parseArgs } from 'node:util';
import { writePicture } from './picture.mjs';
import { pixelForPixel, StageBrowser } from './stage-browser.mjs';

function usage(message) {
    console.error(`render-package: ${message}`);
    console.error('usage: render-package.mjs [--size WxH] [--costume SPRITE:INDEX | --each] ' +
        'PACKAGE OUT.png [PACKAGE OUT.png]...');
    process.exit(2);
}

function readArguments() {
    const { values, positionals } = parseArgs({
        allowPositionals: true,
        options: {
            size: { type: 'string' }, costume: { type: 'string' }, each: { type: 'boolean' }
        }
    });
    const size = values.size?.match(/^([1-9]\d*)x([1-9]\d*)$/);
    const costume = values.costume?.match(/^(.*):(\d+)$/s);
    if (positionals.length === 0 || positionals.length % 2 !== 0) {
        usage('a package and a picture belong together');
    }
    if ((values.size && !size) || (values.costume && !costume)) {
        usage('the size is such as 960x720, the costume such as Walker:0');
    }
    return {
        files: positionals,
        each: values.each,
        size: size ? { width: Number(size[1]), height: Number(size[2]) } : pixelForPixel,
        costume: costume && { sprite: costume[1], index: Number(costume[2]) }
    };
}

async function renderEach(stage, sprites, out) {
    let number = 0;
    for (const [index, sprite] of sprites.entries()) {
        await stage.showAlone(index);
        for (let costume = 0; costume < sprite.costumes; ++costume) {
            await stage.showCostume(index, costume);
            const suffix = String(++number).padStart(3, '0');
            await writePicture(out.replace(/(\.png)?$/, `-${suffix}.png`), await stage.picture());
        }
    }
}

async function showWanted(stage, sprites, { sprite, index }) {
    const found = sprites.findIndex(({ name }) => name === sprite);
    if (found < 0 || index >= sprites[found].costumes) {
        throw new Error(`there is no costume ${index} of a sprite ${JSON.stringify(sprite)}`);
    }
    await stage.showCostume(found, index);
}

const { files, each, size, costume } = readArguments();
const stage = await StageBrowser.open(size);
try {
    for (let index = 0; index < files.length; index += 2) {
        const [path, out] = files.slice(index, index + 2);
        const sprites = await stage.load(path);
        if (each) {
            await renderEach(stage, sprites, out);
        } else {
            if (costume) {
                await showWanted(stage, sprites, costume);
            }
            await writePicture(out, await stage.picture());
        }
        console.log(`${path}: ${sprites.length} sprites`);
    }
} catch (error) {
    console.error(`render-package: ${error.message}`);
    process.exitCode = 1;
} finally {
    await stage.close();
}
