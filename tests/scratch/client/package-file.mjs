// A .sprite3 or .sb3 as a file: its entries, and the JSON inside.
import { readFile } from 'node:fs/promises';
import { installed } from './installed.mjs';

const endOfDirectory = 0x06054b50;
const directoryEntry = 0x02014b50;

/**
 * The names that the zip's central directory lists, in its order, repeated ones included (an
 * unpacker silently keeps the last of those).
 */
function listedNames(bytes) {
    let end = bytes.length - 22;
    while (end >= 0 && bytes.readUInt32LE(end) !== endOfDirectory) {
        --end;
    }
    if (end < 0) {
        throw new Error('this is no zip: it has no central directory');
    }
    const names = [];
    let at = bytes.readUInt32LE(end + 16);
    for (let left = bytes.readUInt16LE(end + 10); left > 0; --left) {
        if (bytes.readUInt32LE(at) !== directoryEntry) {
            throw new Error('the central directory of the zip is damaged');
        }
        const nameLength = bytes.readUInt16LE(at + 28);
        names.push(bytes.toString('utf8', at + 46, at + 46 + nameLength));
        at += 46 + nameLength + bytes.readUInt16LE(at + 30) + bytes.readUInt16LE(at + 32);
    }
    return names;
}

/** Whether a path names a single sprite; everything else is taken for a project. */
export function isSpritePath(path) {
    return path.endsWith('.sprite3');
}

/**
 * Opens a package: { bytes, isSprite, names, entries, json, targets }. `entries` maps a name to its
 * Buffer, `targets` are the JSON's targets (one for a sprite). Throws when it cannot be read.
 */
export async function openPackage(path) {
    const bytes = await readFile(path);
    const isSprite = isSpritePath(path);
    const names = listedNames(bytes);
    const zip = await installed('jszip').loadAsync(bytes, { checkCRC32: true });
    const entries = new Map();
    for (const name of new Set(names)) {
        entries.set(name, await zip.file(name).async('nodebuffer'));
    }
    const description = isSprite ? 'sprite.json' : 'project.json';
    if (!entries.has(description)) {
        throw new Error(`the zip has no ${description} in its root`);
    }
    const json = JSON.parse(entries.get(description).toString('utf8'));
    return {
        bytes, isSprite, names, entries, json, description,
        targets: isSprite ? [json] : json.targets ?? []
    };
}
