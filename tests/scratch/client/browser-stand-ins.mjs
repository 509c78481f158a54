// What the virtual machine expects of a browser, as little of it as loading and playing needs:
// pictures are decoded for real, canvases and skins only keep sizes.
import { decodePng } from './picture.mjs';

/** Decodes a Blob with a PNG; rejects anything else, as a browser does. */
async function decodePicture(blob) {
    const { width, height } = decodePng(Buffer.from(await blob.arrayBuffer()));
    return { width, height };
}

function makeCanvas() {
    return { width: 0, height: 0, getContext: () => ({ drawImage() {} }) };
}

/** Makes the globals that the virtual machine looks for in a browser. */
export function installBrowserGlobals() {
    globalThis.createImageBitmap = decodePicture;
    globalThis.document = { createElement: makeCanvas };
}

/**
 * Resizes nothing but the figures: a picture that the client wants to resize arrives with the
 * digest of no bytes at all, which no expectation names.
 */
export const bitmapAdapter = {
    resize: (_canvas, width, height) => ({ ...makeCanvas(), width, height, toDataURL: () => '' }),
    convertDataURIToBinary: () => new Uint8Array(0)
};

/** A renderer that draws nothing and knows the size of each skin in stage units. */
export class SizeKeepingRenderer {
    #sizes = [];
    #drawables = 0;

    createBitmapSkin(canvas, resolution) {
        return this.#sizes.push([canvas.width / resolution, canvas.height / resolution]) - 1;
    }
    getSkinSize(skin) {
        return this.#sizes[skin];
    }
    getSkinRotationCenter(skin) {
        return this.#sizes[skin].map(length => length / 2);
    }
    createDrawable() {
        return this.#drawables++;
    }
    getFencedPositionOfDrawable(_drawable, position) {
        return position;
    }
    getCurrentSkinSize() {
        return [0, 0];
    }
    getDrawableOrder() {
        return 0;
    }
    setDrawableOrder() {
        return 0;
    }
    draw() {}
    destroyDrawable() {}
    setLayerGroupOrdering() {}
    updateDrawableDirectionScale() {}
    updateDrawableEffect() {}
    updateDrawablePosition() {}
    updateDrawableSkinId() {}
    updateDrawableVisible() {}
}
