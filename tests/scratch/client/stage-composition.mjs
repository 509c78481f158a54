// What the stage should look like, computed from the pictures and the places of costumes alone.
import { drawPicture } from './picture.mjs';
import { pixelForPixel } from './stage-browser.mjs';

/** Draws `picture` over `stage`, its upper left pixel at (left, top); what is outside is cut. */
function drawOver(stage, picture, left, top) {
    for (let y = Math.max(0, -top); y < Math.min(picture.height, stage.height - top); ++y) {
        for (let x = Math.max(0, -left); x < Math.min(picture.width, stage.width - left); ++x) {
            const from = (y * picture.width + x) * 4;
            const to = ((y + top) * stage.width + x + left) * 4;
            const opacity = picture.data[from + 3] / 255;
            for (let channel = 0; channel < 3; ++channel) {
                const under = stage.data[to + channel];
                stage.data[to + channel] =
                    Math.round(picture.data[from + channel] * opacity + under * (1 - opacity));
            }
        }
    }
}

/** The picture with each pixel as a square of `zoom` by `zoom`. */
function enlarged(picture, zoom) {
    if (zoom === 1) {
        return picture;
    }
    return drawPicture(picture.width * zoom, picture.height * zoom, (x, y) => {
        const at = (Math.floor(y / zoom) * picture.width + Math.floor(x / zoom)) * 4;
        return picture.data.subarray(at, at + 4);
    });
}

/** Where the costume's corner lies, in its pixels. The client rounds the place of a sprite. */
function corner(costume, { x, y }) {
    return [
        pixelForPixel.width / 2 + 2 * Math.round(x) - costume.rotationCenterX,
        pixelForPixel.height / 2 - 2 * Math.round(y) - costume.rotationCenterY
    ];
}

/**
 * How many pixels of the stage, in a row, should stand for one of the costume: 2 where its pixels
 * would lie halfway between those of the stage, so that either neighbour may be drawn; 1 elsewhere.
 */
export function zoomFor(costume, sprite) {
    const isHalf = length => Math.abs(length - Math.floor(length) - 0.5) < 0.1;
    return corner(costume, sprite).some(isHalf) ? 2 : 1;
}

/** The stage on which one sprite is alone, at its own size, and shows a costume with `picture`. */
export function expectedStage(costume, sprite, zoom) {
    const [width, height] = [pixelForPixel.width * zoom, pixelForPixel.height * zoom];
    const stage = { width, height, data: Buffer.alloc(width * height * 4, 255) };
    const [left, top] = corner(costume, sprite).map(length => Math.round(length * zoom));
    drawOver(stage, enlarged(costume.picture, zoom), left, top);
    return stage;
}
