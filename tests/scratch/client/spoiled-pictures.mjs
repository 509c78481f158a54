// Pictures with one fault each, and how they get into a package.
import { createHash } from 'node:crypto';

/** Puts `bytes` in place of the first costume's picture, under their own digest. */
export function replacePicture({ sprites, files }, bytes) {
    const [costume] = sprites[0].costumes;
    files.delete(costume.md5ext);
    costume.assetId = createHash('md5').update(bytes).digest('hex');
    costume.md5ext = `${costume.assetId}.png`;
    files.set(costume.md5ext, bytes);
}

/** The PNG with a gamma chunk of 1.0 behind its header. */
export function withGamma(png) {
    const chunk = Buffer.from('00000004' + '67414d41' + '000186a0' + '31e8965f', 'hex');
    return Buffer.concat([png.subarray(0, 33), chunk, png.subarray(33)]);
}
