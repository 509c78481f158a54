// negative-controls.mjs
//
// Proves that the checks notice: a good package passes, and each way to spoil it or its
// expectation fails with the reason that belongs to it.
import { mkdtemp, rm, writeFile } from 'node:fs/promises';
import os from 'node:os';
import path from 'node:path';
import { expectationOf, goodParts } from './make-package.mjs';
import { checkPackage } from './package-checks.mjs';
import { pack } from './package-parts.mjs';
import { replacePicture, withGamma } from './spoiled-pictures.mjs';

/** Files the first costume's picture under another digest. */
function renamePicture({ sprites, files }, assetId) {
    const [costume] = sprites[0].costumes;
    const bytes = files.get(costume.md5ext);
    files.delete(costume.md5ext);
    costume.assetId = assetId;
    costume.md5ext = `${assetId}.png`;
    files.set(costume.md5ext, bytes);
}

function firstPicture({ sprites, files }) {
    return files.get(sprites[0].costumes[0].md5ext);
}

const missingDigest = '0123456789abcdef0123456789abcdef';

// [what is spoiled, the reason that must be among the failures, how to spoil parts and expectation]
const controls = [
    ['a wrong digest', /^digest of 0123.*\.png: is .*, should be "[0-9a-f]{32}\.png"$/,
        parts => renamePicture(parts, missingDigest)],
    ['a digest in capitals', /assetId: [0-9A-F]{32} is not 32 lower-case/,
        parts => renamePicture(parts, parts.sprites[0].costumes[0].assetId.toUpperCase())],
    ['a missing picture', /picture: the zip has no picture [0-9a-f]{32}\.png$/,
        parts => parts.files.delete(parts.sprites[0].costumes[0].md5ext)],
    ['a missing picture, as the client sees it', /costume 0 is whole: the client marks .* broken/,
        parts => parts.files.delete(parts.sprites[0].costumes[0].md5ext)],
    ['a picture too many', /^files that nothing uses: is \["stray\.png"\]/,
        parts => parts.files.set('stray.png', firstPicture(parts))],
    ['an empty costume list', /official schema accepts it: .*minItems/,
        parts => { parts.sprites[0].costumes = []; }],
    ['two identical costume objects', /official schema accepts it: .*uniqueItems/,
        ({ sprites: [{ costumes }] }) => { costumes[1] = { ...costumes[0] }; }],
    ['a picture that is no PNG', /^[0-9a-f]{32}\.png is a PNG: it does not begin as a PNG/,
        parts => replacePicture(parts, Buffer.from('GIF89a, not what it says it is'))],
    ['a picture that is no PNG, as the client sees it', /costume 0 is whole: .* broken/,
        parts => replacePicture(parts, Buffer.from('GIF89a, not what it says it is'))],
    ['a PNG cut short', /^[0-9a-f]{32}\.png is a PNG: /,
        parts => replacePicture(parts, firstPicture(parts).subarray(0, 200))],
    ['a gamma chunk', /^colour chunks of [0-9a-f]{32}\.png: is \["gAMA"\]/,
        parts => replacePicture(parts, withGamma(firstPicture(parts)))],
    ['a resolution of 1', /format: is .*"bitmapResolution":1/,
        parts => { parts.sprites[0].costumes[0].bitmapResolution = 1; }],
    ['a sprite without blocks', /official schema accepts it: .*blocks/,
        parts => { delete parts.sprites[0].blocks; }],
    ['another name', /costume 0 arrives: is \{"name":"walk1".* should be \{"name":"run1"/,
        (_, { sprites: [{ costumes }] }) => { costumes[0].name = 'run1'; }],
    ['two costumes in the wrong order', /costume 1 arrives: /,
        ({ sprites: [{ costumes }] }) => { costumes.push(costumes.splice(1, 1)[0]); }],
    ['another width', /costume 2 arrives: is .*"width":64.* should be .*"width":63/,
        (_, { sprites: [{ costumes }] }) => { costumes[2].width = 63; }],
    ['a truncated rotation centre', /costume 1 arrives: is .*"rotationCenterX":10,/,
        ({ sprites: [{ costumes }] }) => { costumes[1].rotationCenterX = 10; }],
    ['another place', /^"Walker": x: is 12\.5, should be /,
        parts => { parts.sprites[0].x = 12.5; }],
    ['a costume too few', /number of costumes: is 3, should be 4/,
        (_, { sprites: [{ costumes }] }) => { costumes.push(costumes[0]); }],
    ['a play in another order', /costumes shown, then rest: is \[2,0,1/,
        ({ sprites: [{ blocks }] }) => { blocks.menu.fields.COSTUME[0] = 'walk3'; }],
    ['a play that is too short', /costumes shown, then rest: is \[0,1,2,0,1\]/,
        ({ sprites: [{ blocks }] }) => { blocks.loop.inputs.TIMES[1][1] = '4'; }],
    ['a play that is too long', /costumes shown, then rest: is \[0,1,2,0,1,2,0\]/,
        ({ sprites: [{ blocks }] }) => { blocks.loop.inputs.TIMES[1][1] = '6'; }],
    ['a play that does not end', /still playing: is true, should be false/,
        ({ sprites: [{ blocks }] }) => { blocks.loop.opcode = 'control_forever'; }],
    ['another interval', /follow the time: at (166\.7 ms costume 0|300\.0 ms costume 1) is shown, /,
        ({ sprites: [{ blocks }] }) => { blocks.set.inputs.VALUE[1][1] = String(0.184 / 86400); }],
    ['a play that loses time', /600 ms until the last change: it takes 666\.7 ms/,
        ({ sprites: [{ blocks }] }) => { blocks.more.inputs.VALUE[1][1] = String(0.14 / 86400); }],
    ['a script where none belongs', /^"Walker": scripts: is 1, should be 0/,
        (_, { sprites }) => { sprites[0].plays = null; }],
    ['no script', /costumes shown, then rest: is \[1\]/,
        parts => { parts.sprites[0].blocks = {}; }]
];

// [what is as it should be, how it differs from the good package]
const goodCases = [
    ['nothing spoiled', () => {}],
    ['a loop count below -1, which plays once',
        ({ sprites: [{ blocks }] }, { sprites: [{ plays }] }) => {
            plays.loopCount = -2;
            blocks.loop.inputs.TIMES[1][1] = '2';
        }],
    ['a single costume, which stands still', ({ sprites, files }, expectation) => {
        for (const [index, sprite] of sprites.entries()) {
            sprite.costumes.splice(1).forEach(costume => files.delete(costume.md5ext));
            sprite.currentCostume = 0;
            expectation.sprites[index].costumes.splice(1);
        }
    }]
];

async function check(folder, isSprite, spoil, rework = bytes => bytes) {
    const parts = goodParts(isSprite);
    const expectation = expectationOf(parts);
    spoil(parts, expectation);
    const file = path.join(folder, isSprite ? 'package.sprite3' : 'package.sb3');
    await writeFile(file, rework(await pack(parts)));
    return checkPackage(file, expectation);
}

/** The package with an entry called as the first one, of the same length, renamed to it. */
function checkDoubleEntry(folder) {
    let wanted = '';
    const spoil = parts => {
        wanted = parts.sprites[0].costumes[0].md5ext;
        parts.files.set('x'.repeat(wanted.length), firstPicture(parts));
    };
    const rework = bytes => {
        const text = bytes.toString('latin1').replaceAll('x'.repeat(wanted.length), wanted);
        return Buffer.from(text, 'latin1');
    };
    return check(folder, true, spoil, rework);
}

let allNoticed = true;
function tell(what, noticed, report) {
    console.log(noticed ? `ok    ${what}` : `FAIL  ${what}`);
    if (!noticed) {
        report.print(`what was said of ${what}`);
        allNoticed = false;
    }
}
function tellFailure(what, reason, report) {
    const said = report.failures.map(failure => `${failure.name}: ${failure.reason}`);
    tell(what, said.some(line => reason.test(line)), report);
}

const folder = await mkdtemp(path.join(os.tmpdir(), 'scratch-controls-'));
try {
    for (const isSprite of [true, false]) {
        const kind = isSprite ? 'a sprite' : 'a project';
        for (const [what, change] of goodCases) {
            const good = await check(folder, isSprite, change);
            tell(`${kind} with ${what} passes`, good.passed, good);
        }
        for (const [what, reason, spoil] of controls) {
            tellFailure(`${kind} with ${what} is noticed`, reason,
                await check(folder, isSprite, spoil));
        }
    }
    tellFailure('a picture twice in the zip is noticed',
        /more than once: is \["[0-9a-f]{32}\.png"\]/, await checkDoubleEntry(folder));
    await writeFile(path.join(folder, 'none.sb3'), 'no zip at all');
    tellFailure('a file that is no zip is noticed', /the package opens: this is no zip/,
        await checkPackage(path.join(folder, 'none.sb3'), { sprites: [] }));
} finally {
    await rm(folder, { recursive: true });
}
process.exit(allNoticed ? 0 : 1);
