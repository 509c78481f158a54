// The parts of a package, and how they are packed.
import { createHash } from 'node:crypto';
import { installed } from './installed.mjs';
import { drawPicture, encodePng } from './picture.mjs';

/** A costume object; its picture goes into `files`. The centre is the middle, halves included. */
export function addCostume(files, name, picture) {
    const bytes = encodePng(picture);
    const assetId = createHash('md5').update(bytes).digest('hex');
    files.set(`${assetId}.png`, bytes);
    return {
        name, assetId, md5ext: `${assetId}.png`, dataFormat: 'png', bitmapResolution: 2,
        rotationCenterX: picture.width / 2, rotationCenterY: picture.height / 2
    };
}

/** A project of a stage with an empty backdrop and these sprites, as JSON. */
export function makeProject(files, sprites) {
    const empty = drawPicture(2, 2, () => [0, 0, 0, 0]);
    const stage = {
        name: 'Stage', isStage: true, variables: {}, lists: {}, broadcasts: {}, comments: {},
        blocks: {}, costumes: [addCostume(files, 'backdrop1', empty)], sounds: [],
        currentCostume: 0, volume: 100, layerOrder: 0, tempo: 60
    };
    return {
        targets: [stage, ...sprites], monitors: [], extensions: [],
        meta: { semver: '3.0.0', vm: '0.2.0', agent: '' }
    };
}

/** Zips the parts. Gives the file's bytes. */
export function pack({ isSprite, json, files }) {
    const zip = new (installed('jszip'))();
    zip.file(isSprite ? 'sprite.json' : 'project.json', JSON.stringify(json));
    for (const [name, bytes] of files) {
        zip.file(name, bytes);
    }
    return zip.generateAsync({ type: 'nodebuffer', compression: 'DEFLATE' });
}

/** The bytes of a project without sprites: what a .sprite3 is uploaded into. */
export function emptyProject() {
    const files = new Map();
    return pack({ isSprite: false, json: makeProject(files, []), files });
}
