// make-package.mjs OUT.sprite3|OUT.sb3
//
// Writes a small package that is right in every respect, and its expectation to OUT.json: the
// material of the controls. The parts can be spoiled before they are packed.
import { writeFile } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { isSpritePath } from './package-file.mjs';
import { addCostume, makeProject, pack } from './package-parts.mjs';
import { drawPicture } from './picture.mjs';

const walkerPlays = { intervalMs: 120, loopCount: 1 };
const runnerPlays = { intervalMs: 100, loopCount: -1 };

/** Gradients with every opacity, a hard edge all around, and no symmetry; sizes even and odd. */
export function samplePictures() {
    const sizes = [[40, 30], [21, 33], [64, 48]];
    return sizes.map(([width, height], index) => drawPicture(width, height, (x, y) => {
        const onEdge = x === 0 || y === 0 || x === width - 1 || y === height - 1;
        const opacity = onEdge ? 255 : Math.round(255 * x / (width - 1));
        return [(x * 7 + index * 80) % 256, (y * 11) % 256, (x * y + index * 40) % 256, opacity];
    }));
}

function block(opcode, parent, next, inputs = {}, fields = {}) {
    const place = parent === null ? { x: 0, y: 0 } : {};
    return {
        opcode, parent, next, inputs, fields, shadow: false, topLevel: parent === null, ...place
    };
}

const empty = [4, ''];

function reporter(opcode, parent, first, second) {
    return block(opcode, parent, null, { NUM1: first, NUM2: second });
}

/**
 * The script that shows the costumes from the first one at the interval, for the loop count: before
 * each change it waits for what is missing until its time. With the change that takes two steps.
 */
function playScript(costumes, { intervalMs, loopCount }) {
    const changes = String(costumes.length * (loopCount + 1) - 1);
    const inside = { SUBSTACK: [2, 'wait'] };
    const menu = block('looks_costume', 'first', null, {}, { COSTUME: [costumes[0].name, null] });
    const days = seconds => [1, [4, String(seconds / 86400)]];
    const interval = days(intervalMs / 1000);
    // Half a step early, so that it ends with the nearest step.
    const first = days(intervalMs / 1000 - 0.016);
    const due = { VARIABLE: ['due', 'due'] };
    return {
        flag: block('event_whenflagclicked', null, 'first'),
        first: block('looks_switchcostumeto', 'flag', 'begin', { COSTUME: [1, 'menu'] }),
        menu: { ...menu, shadow: true },
        begin: block('data_setvariableto', 'first', 'set', { VALUE: [3, 'now', empty] }, due),
        now: block('sensing_dayssince2000', 'begin', null),
        set: block('data_changevariableby', 'begin', 'loop', { VALUE: first }, due),
        loop: loopCount === -1
            ? block('control_forever', 'set', null, inside)
            : block('control_repeat', 'set', null, { TIMES: [1, [6, changes]], ...inside }),
        wait: block('control_wait', 'loop', 'next', { DURATION: [3, 'missing', [5, '']] }),
        missing: reporter('operator_multiply', 'wait', [3, 'days', empty], [1, [4, '86400']]),
        days: reporter('operator_subtract', 'missing', [3, [12, 'due', 'due'], empty],
            [3, 'current', empty]),
        current: block('sensing_dayssince2000', 'days', null),
        next: block('looks_nextcostume', 'wait', 'more'),
        more: block('data_changevariableby', 'next', null, { VALUE: interval }, due)
    };
}

// The second costume is current, so that a script which forgets to begin with the first is noticed.
function makeSprite(files, name, [x, y], plays) {
    const costumes = samplePictures()
        .map((picture, index) => addCostume(files, `walk${index + 1}`, picture));
    return {
        name, isStage: false, variables: { due: ['due', 0] }, lists: {}, broadcasts: {}, comments: {},
        blocks: playScript(costumes, plays),
        costumes, sounds: [], currentCostume: 1, volume: 100, visible: true, x, y, size: 100,
        direction: 90, draggable: false, rotationStyle: 'all around'
    };
}

/** The JSON and the pictures of a good package: { isSprite, json, sprites, files }. */
export function goodParts(isSprite) {
    const files = new Map();
    if (isSprite) {
        const sprite = makeSprite(files, 'Walker', [0, 0], walkerPlays);
        return { isSprite, json: sprite, sprites: [sprite], files };
    }
    const sprites = [
        makeSprite(files, 'Walker', [-100, 50], walkerPlays),
        makeSprite(files, 'Runner', [90, -40], runnerPlays)
    ];
    sprites.forEach((sprite, index) => { sprite.layerOrder = index + 1; });
    return { isSprite, json: makeProject(files, sprites), sprites, files };
}

/** What should arrive of the good parts. */
export function expectationOf({ sprites }) {
    const pictures = samplePictures();
    const costumesOf = sprite => sprite.costumes.map(({ name, assetId }, index) => {
        const { width, height } = pictures[index];
        return {
            name, assetId, width, height, rotationCenterX: width / 2, rotationCenterY: height / 2
        };
    });
    return {
        sprites: sprites.map((sprite, index) => ({
            name: sprite.name, x: sprite.x, y: sprite.y, costumes: costumesOf(sprite),
            plays: { ...[walkerPlays, runnerPlays][index] }
        }))
    };
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
    const [path] = process.argv.slice(2);
    if (!path) {
        console.error('usage: make-package.mjs OUT.sprite3|OUT.sb3');
        process.exit(2);
    }
    const parts = goodParts(isSpritePath(path));
    await writeFile(path, await pack(parts));
    await writeFile(`${path}.json`, JSON.stringify(expectationOf(parts), null, 2));
}
