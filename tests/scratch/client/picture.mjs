// Pictures as { width, height, data }: four bytes a pixel, red, green, blue and opacity, not
// premultiplied.
import { readFile, writeFile } from 'node:fs/promises';
import { installed } from './installed.mjs';

const signature = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);

/** A picture whose pixels are `colourAt(x, y)`, an array of four numbers from 0 to 255. */
export function drawPicture(width, height, colourAt) {
    const data = Buffer.alloc(width * height * 4);
    for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x) {
            data.set(colourAt(x, y), (y * width + x) * 4);
        }
    }
    return { width, height, data };
}

/** The PNG file's bytes. */
export function encodePng(picture) {
    const { PNG } = installed('pngjs');
    const png = new PNG({ width: picture.width, height: picture.height });
    png.data = picture.data;
    return PNG.sync.write(png);
}

/** The picture in a PNG file's bytes; throws when they are none. */
export function decodePng(bytes) {
    if (!bytes.subarray(0, 8).equals(signature)) {
        throw new Error('it does not begin as a PNG does');
    }
    const { width, height, data } = installed('pngjs').PNG.sync.read(bytes);
    return { width, height, data };
}

export async function readPicture(path) {
    return decodePng(await readFile(path));
}

export async function writePicture(path, picture) {
    await writeFile(path, encodePng(picture));
}

/**
 * How far two pictures of one size are apart: { largest, mean, at }, `largest` and `mean` in levels
 * of 255 for red, green, blue and opacity, `at` the pixel with the largest difference. Throws when
 * the sizes differ.
 */
export function comparePictures(a, b) {
    if (a.width !== b.width || a.height !== b.height) {
        throw new Error(`sizes differ: ${a.width} x ${a.height} and ${b.width} x ${b.height}`);
    }
    const largest = [0, 0, 0, 0];
    const sum = [0, 0, 0, 0];
    let worst = 0;
    let at = [0, 0];
    for (let index = 0; index < a.data.length; ++index) {
        const difference = Math.abs(a.data[index] - b.data[index]);
        if (difference === 0) {
            continue;
        }
        sum[index % 4] += difference;
        largest[index % 4] = Math.max(largest[index % 4], difference);
        if (difference > worst) {
            worst = difference;
            const pixel = Math.floor(index / 4);
            at = [pixel % a.width, Math.floor(pixel / a.width)];
        }
    }
    const pixels = Math.max(1, a.width * a.height);
    return { largest, mean: sum.map(total => total / pixels), worst, at };
}
