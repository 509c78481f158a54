// The pictures of a package: each there once under the digest of its bytes, no other, and each a
// PNG whose colours no browser shifts.
import { createHash } from 'node:crypto';
import { decodePng } from './picture.mjs';

// Chunks by which a browser would convert the colours.
const colourChunks = new Set(['gAMA', 'cHRM', 'sRGB', 'iCCP', 'cICP']);

function chunkNames(png) {
    const names = [];
    for (let at = 8; at + 8 <= png.length; at += 12 + png.readUInt32BE(at)) {
        names.push(png.toString('latin1', at + 4, at + 8));
    }
    return names;
}

function checkPicture(report, fileName, bytes) {
    const digest = createHash('md5').update(bytes).digest('hex');
    report.compare(`digest of ${fileName}`, fileName, `${digest}.png`);
    try {
        decodePng(bytes);
    } catch (error) {
        report.check(`${fileName} is a PNG`, false, error.message);
        return;
    }
    report.check(`${fileName} is a PNG`, true);
    const shifting = chunkNames(bytes).filter(name => colourChunks.has(name));
    report.compare(`colour chunks of ${fileName}`, shifting, []);
}

function checkReference(report, owner, costume, entries) {
    const what = `${owner}, costume ${JSON.stringify(costume.name)}`;
    report.check(`${what}: assetId`, /^[0-9a-f]{32}$/.test(costume.assetId),
        `${costume.assetId} is not 32 lower-case hexadecimal digits`);
    const { dataFormat, md5ext, bitmapResolution } = costume;
    report.compare(`${what}: format`, { dataFormat, md5ext, bitmapResolution },
        { dataFormat: 'png', md5ext: `${costume.assetId}.png`, bitmapResolution: 2 });
    report.check(`${what}: picture`, entries.has(md5ext), `the zip has no picture ${md5ext}`);
}

/** Checks every picture of an opened package into `report`. */
export function checkPictures(report, { names, entries, targets, description }) {
    const used = new Set([description]);
    for (const target of targets) {
        for (const costume of target.costumes ?? []) {
            checkReference(report, target.name, costume, entries);
            used.add(costume.md5ext);
        }
    }
    const repeated = names.filter((name, index) => names.indexOf(name) !== index);
    report.compare('files that the zip holds more than once', repeated, []);
    report.compare('files that nothing uses', names.filter(name => !used.has(name)), []);
    for (const [name, bytes] of entries) {
        if (name !== description && used.has(name)) {
            checkPicture(report, name, bytes);
        }
    }
}
